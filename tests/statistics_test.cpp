// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <cstring>
#include <functional>
#include <random>
#include <thread>

#include "kor_time.h"
#include "ovk_eth_hw/statistics.h"

namespace {

using handle = ovk_ethernet_if_handle;
using test::failures;
using test::hex;
using test::Lines;
using test::printed;
using test::operator+;

// In the record's order. An offset before each interface counter.
constexpr char port_names[] = "tx_octets: tx_bad_octets tx_frm tx_bad_frm tx_mcast tx_bcast tx_pause "
                              "tx_fcs tx_defer tx_xsdfr tx_1col tx_mcol "
                              "tx_lcol tx_xscol tx_frag tx_usize tx_64 tx_65 tx_128 tx_256 tx_512 tx_1024 "
                              "tx_1519 tx_osize tx_jab tx_urun "
                              "tx_stat_ovfl rx_octets rx_bad_octets rx_frm rx_bad_frm rx_mcast rx_bcast "
                              "rx_ctl rx_pause rx_unk_op rx_fcs "
                              "rx_align rx_length rx_code rx_frag rx_usize rx_64 rx_65 rx_128 rx_256 "
                              "rx_512 rx_1024 rx_1519 rx_osize rx_jab "
                              "rx_drop rx_carrier rx_urun rx_stat_ovfl ";
constexpr char interface_names[] =
    "28 Rx No Fwd Setup|32 Tx Encap Packets|40 Tx Invalid VLAN|44 Rx No Stag Mapping|48 Tx No Configured "
    "Port|52 Tx No "
    "Multicast Group|56 Rx Invalid VLAN|60 Rx Unsupported 802.3|64 Rx Unknown Association|68 Rx Assocation "
    "Rule "
    "Drop|72 Rx Unknown DMAC|80 Tx MTU Failed|84 Tx Unresolved ARP|88 Tx No Output QoS Policy|96 Tx No "
    "Binding "
    "Available|100 Rx Invalid Num tags|104 No Flow ID defined|112 Rx/Tx PDUs Discarded|120 Tx Policing Red "
    "Color|124 "
    "Source MAC Timer Expiries|128 Link Aggr Timer Expiries|132 STP State Port Disabled|136 STP Filtered "
    "(non-fwding)|140 Invalid Source MAC|144 Unknown Virtual Intf|148 HSW MAC Learn Msgs|152 HSW MAC Age "
    "Out Msgs|156 "
    "HSW MAC Evicted Msgs|160 No BVI Encap SMAC|164 No BVI Encap Proto|168 Loop Back Failure|172 Rx "
    "Unexpected Dest "
    "MAC|176 Rx Error UCAST|184 Rx Error MCAST|192 Rx Error BCAST|200 Bad Length Pkts|204 Rx 802.3 Pkts "
    "Not "
    "Supported|208 IEEE 802.3 Dropped bytes|216 Rx 802.3 Pkts Exception|220 BVI SRC MAC|224 No Mirror "
    "Port|228 HSW "
    "Error Pkts|";
constexpr char global_names[] =
    "Packets On Unknown Interface|Invalid Encap Type|Static MAC Entry Unknown|CPU Path Params Unknown|hash "
    "Operation "
    "Failures|Stopping Expired Timers|Number of Hash Entries Added|Number of Packets sent to PH|Number of "
    "Packets sent "
    "to BDL|Packets On Unknown Port|Number of Packets recd from BDL|Unknown DMAC for encap flow|No link "
    "found in "
    "aggregate|Unknown Interface Namespace ID|CPU Flow Pkts bound to IPv4|Egress time index allocation "
    "failure|Tx No "
    "Encap Flow found|Tx time stamp capture not configured|Port Mirroring halted due to BP|Time Stamp "
    "allocation "
    "requests|Time Stamp free requests|Time Stamp successful replies|Pakcet capture count|";

Lines split(const char *text, char at)
{
    Lines out;
    std::istringstream rest(text);
    for (std::string part; std::getline(rest, part, at);)
        out.push_back(part);
    return out;
}

u64 big_endian(const std::vector<u8> &bytes, size_t offset, u32 size)
{
    u64 value = 0;
    for (size_t at = offset; at < offset + size; at++)
        value = value << 8 | bytes[at];
    return value;
}

// Of the interface record: 4 bytes that stay as they are, 8, or 4.
bool is_raw(size_t offset)
{
    return offset == 76 || offset == 92 || offset == 116;
}
u32 size_at(size_t offset)
{
    return offset == 176 || offset == 184 || offset == 192 || offset == 208 ? 8 : 4;
}

struct {
    u32 calls, depth;
    handle intf;
    void *callback;
    u64 sum;
    const kor_sem *lock;
} seen;

void report(handle intf, void *callback, u64 sum)
{
    seen = {seen.calls + 1, sim::lock_depth(seen.lock).value_or(99), intf, callback, sum, seen.lock};
}

class Statistics : public test::ModuleTest {
  protected:
    Statistics() { seen = {0, 0, nullptr, nullptr, 0, host().lock()}; }

    u32 port_stats(handle intf, ovk_eth_port_stats *out, u32 clear = 0)
    {
        return ovk_ethernet_port_statistics_get(module(), intf, out, clear);
    }
    u32 poll(u64 threshold, ovk_ethernet_crcerror_callback to = report, u32 interval = 250)
    {
        return ovk_ethernet_report_crcerror(module(), port_, threshold, to, interval);
    }
    void count_crc(u64 tx, u64 rx)
    {
        sim::TxCounters sent{};
        sim::RxCounters received{};
        sent[7] = tx, received[9] = rx;
        sim::mac_counters_set(host().rte(), KOR_GMAC17, sent, received);
    }
    // Distinct bytes, as the classifier would have counted.
    std::vector<u8> count(u32 ns_id, u32 size)
    {
        std::vector<u8> bytes(size);
        for (u32 at = 0; at < size; at++)
            bytes[at] = static_cast<u8>(at * 7 + 1);
        sim::state_put(host().rte(), ns_id, 0, bytes);
        return bytes;
    }

    const handle port_ = test::make_port(module(), 0x11, 2);
};

TEST_F(Statistics, EachCounterOfAPortStandsAndPrintsUnderItsName)
{
    sim::TxCounters tx{};
    sim::RxCounters rx{};
    std::array<u64, 55> expected, found;
    Lines lines = {"",
                   "Ethernet Port Stats (Counters with non-zero count only except for tx_frm and rx_frm):"};
    for (u32 index = 0; const std::string &name : split(port_names, ' ')) {
        expected[index] = (u64{index} + 1) << 32 | (0x100 + index);
        (index < 27 ? tx[index] : rx[index - 27]) = expected[index];
        lines.push_back(
            printed("\t%-22s\t%20llu", name.c_str(), static_cast<unsigned long long>(expected[index++])));
    }
    sim::mac_counters_set(host().rte(), KOR_GMAC17, tx, rx);
    EXPECT_EQ(test::lines_of([&] { EXPECT_EQ(ovk_ethernet_port_stats_print(module(), port_), 0u); }),
              lines);
    ovk_eth_port_stats stats;
    for (const u32 clear : {2u, 1u, 0u}) { // 1 alone clears
        EXPECT_EQ(port_stats(port_, &stats, clear), 0u);
        std::memcpy(found.data(), &stats, sizeof stats);
        EXPECT_EQ(found, clear == 0 ? decltype(found){} : expected);
    }
    const std::string none = std::string(15, ' ') + '\t' + std::string(19, ' ') + '0';
    EXPECT_EQ(test::lines_of([&] { EXPECT_EQ(ovk_ethernet_port_stats_print(module(), port_), 0u); }),
              (Lines{lines[0], lines[1], "\ttx_frm " + none, "\trx_frm " + none}));
}

TEST_F(Statistics, InterfaceAndGlobalCountersComeOutOfNetworkOrder)
{
    const u32 ns_id = port_->stats_ns_id, global_id = ovk::object_of(module()).global_stats_ns_id;
    const std::vector<u8> bytes = count(ns_id, 232), global_bytes = count(global_id, 92);
    ovk_eth_if_stats stats;
    EXPECT_EQ(ovk_ethernet_interface_statistics_get(module(), port_, &stats), 0u);
    for (size_t offset = 0; offset < sizeof stats; offset += size_at(offset)) {
        u64 value = 0; // as the host reads it
        std::memcpy(&value, reinterpret_cast<const u8 *>(&stats) + offset, size_at(offset));
        u32 raw = 0;
        std::memcpy(&raw, bytes.data() + offset, sizeof raw);
        EXPECT_EQ(value, is_raw(offset) ? raw : big_endian(bytes, offset, size_at(offset))) << offset;
    }
    Lines lines = {"", "Ethernet Interface Stats (Drop counters with zero count not shown):"};
    Lines global = {"", "Ethernet Globbal Stats (Drop counters with zero count not shown):"};
    const auto line = [](const std::string &name, u64 value) {
        return printed("\t%-27s\t%10llu", (name + ':').c_str(), static_cast<unsigned long long>(value));
    };
    for (const std::string &row : split(interface_names, '|')) {
        const size_t offset = std::stoul(row);
        lines.push_back(line(row.substr(row.find(' ') + 1), big_endian(bytes, offset, size_at(offset))));
    }
    for (size_t offset = 0; const std::string &name : split(global_names, '|')) {
        global.push_back(line(name, big_endian(global_bytes, offset, 4)));
        offset += 4;
    }
    const auto print = [&] { return ovk_ethernet_if_stats_print(module(), port_); };
    const auto print_global = [&] { return ovk_ethernet_global_stats_print(module()); };
    EXPECT_EQ(test::lines_of(print), lines);
    EXPECT_EQ(test::lines_of(print_global), global);
    module()->log_mask = OVK_ETHERNET_LOG_STATE;
    sim::state_put(host().rte(), ns_id, 0, std::vector<u8>(232));
    sim::state_put(host().rte(), global_id, 0, std::vector<u8>(92));
    const std::string read = "[ovk_ethernet_log: se_read] NS ID " + printed("0x%08x idx 0: ", ns_id);
    EXPECT_EQ(test::messages_of(print),
              (Lines{read + std::string(2 * 232, '0'), lines[0], lines[1], line("Tx Encap Packets", 0)}));
    module()->log_mask = 0;
    EXPECT_EQ(test::lines_of(print_global),
              (Lines{global[0], global[1], line("Number of Packets sent to PH", 0),
                     line("Number of Packets sent to BDL", 0), line("Number of Packets recd from BDL", 0),
                     line("CPU Flow Pkts bound to IPv4", 0)}));
}

TEST_F(Statistics, LayerTwoCountersAreWhatTheClassifierDidntDrop)
{
    test::HandMadeAggregate aggregate(module(), 0, 2, {});
    std::mt19937_64 random(7);
    const struct {
        handle intf;
        u32 channel;
    } cases[] = {{port_, KOR_GMAC17}, {aggregate.handle(), 128}};
    for (const auto &at : cases) {
        sim::TxCounters tx;
        sim::RxCounters rx;
        std::generate(tx.begin(), tx.end(), std::ref(random)); // differences and sums wrap
        std::generate(rx.begin(), rx.end(), std::ref(random));
        sim::mac_counters_set(host().rte(), at.channel, tx, rx);
        count(at.intf->stats_ns_id, 232);
        ovk_eth_port_stats p;
        ovk_eth_if_stats i;
        ovk_eth_l2_stats l2;
        EXPECT_EQ(ovk_eth_port_stats_get(module(), at.intf->if_id, &p, 0), 0u);
        EXPECT_EQ(ovk_ethernet_interface_statistics_get(module(), at.intf, &i), 0u);
        EXPECT_EQ(ovk_ethernet_l2_interface_statistics_get(module(), at.intf, &l2), 0u);
        const u64 found[] = {
            l2.rx_bytes,          l2.rx_ucast,      l2.rx_mcast_pkts,   l2.rx_bcast_pkts, l2.rx_errors,
            l2.rx_unknown_proto,  l2.rx_alignment,  l2.rx_fcs_errors,   l2.rx_too_long,   l2.rx_mac_control,
            l2.rx_invalid_symbol, l2.rx_mac_errors, l2.rx_unknown_vlan, l2.rx_discards,   l2.tx_bytes,
            l2.tx_pkts,           l2.tx_mcast_pkts, l2.tx_bcast_pkts};
        const u32 mac_errors = i.bad_length_pkts + i.rx_802_3_pkts_not_supported;
        const auto low = [](u64 value) { return static_cast<u32>(value); };
        const u64 expected[] = {
            p.rx_octets - i.ieee_802_3_dropped_bytes - p.rx_bad_octets,
            p.rx_frm - p.rx_bad_frm - p.rx_mcast - p.rx_bcast - i.rx_error_ucast - (p.rx_ctl + p.rx_pause),
            p.rx_mcast - i.rx_error_mcast,
            p.rx_bcast - i.rx_error_bcast,
            low(p.rx_align + p.rx_fcs + p.rx_osize + p.rx_code + mac_errors + p.rx_usize),
            i.no_flow_id_defined,
            low(p.rx_align),
            low(p.rx_fcs),
            low(p.rx_osize),
            low(p.rx_ctl + p.rx_pause),
            low(p.rx_code),
            mac_errors,
            i.rx_invalid_vlan,
            low(u64{i.rx_unexpected_dest_mac} + i.bvi_src_mac),
            p.tx_octets,
            p.tx_frm - p.tx_bad_frm - p.tx_mcast - p.tx_bcast,
            p.tx_mcast,
            p.tx_bcast};
        for (u32 field = 0; field < std::size(expected); field++)
            EXPECT_EQ(found[field], expected[field]) << field;
    }
    EXPECT_EQ(sim::port(host().rte(), KOR_GMAC17).tx_counters[0] != 0, true); // not cleared
    EXPECT_EQ(test::lines_of([&] { ovk_ethernet_l2_interface_statistics_print(module(), port_); })[1],
              "Ethernet L2 Interface Stats: (Drop counters with zero count not shown):");
}

TEST_F(Statistics, RefusalsAndFailedReadsAreReported)
{
    ovk_eth_intf subif = *port_, no_kind = *port_;
    subif.if_type = INTERFACE_TYPE_VLAN;
    no_kind.if_type = INTERFACE_TYPE_MAX;
    ovk_eth_port_stats port;
    ovk_eth_l2_stats l2;
    ovk_eth_if_stats stats;
    ovk_eth_global_stats global;
    ovk_eth_port_counter_regs regs;
    const auto get = [&](handle intf, ovk_eth_port_stats *to, u32 clear) {
        return [=, this] { return port_stats(intf, to, clear); };
    };
    const auto get_l2 = [&](handle intf, ovk_eth_l2_stats *to) {
        return [=, this] { return ovk_ethernet_l2_interface_statistics_get(module(), intf, to); };
    };
    const auto get_if = [&](handle intf, ovk_eth_if_stats *to) {
        return [=, this] { return ovk_ethernet_interface_statistics_get(module(), intf, to); };
    };
    const auto get_global = [&](ovk_eth_global_stats *to) {
        return [=, this] { return ovk_ethernet_global_statistics_get(module(), to); };
    };
    const auto get_regs = [&] { return ovk_eth_port_counter_reg_stats_get(module(), 0x11, &regs); };
    const std::string no_handle = "Invalid Interface handle 0x00000000",
                      null = "Null stats pointer parameter";
    const std::string no_port = "|Failed to get port stats for interface ",
                      no_l2 = "|Failed to get L2 interface stats for interface ";
    const std::string no_if = "|Failed to get interface stats for interface ",
                      no_global = "|Failed to get global stats for Ethernet module";
    const std::string vlan = "Incompatible Interface type INTERFACE_TYPE_VLAN", zero = "0x00000000";
    const std::string no_read = "RTE Error: injected fault, Failed to read counters from SE memory";
    const std::string mac =
        "RTE Error: injected fault, Failed to get the port MAC stats with Clear-On-Read flag ";
    const std::string on_mac = " for mac channel KOR_GMAC17", se = "kor_se_state_get",
                      counters = "kor_gatr_mac_statistics_get";
    const struct {
        std::string fault;
        std::function<u32()> call;
        u32 status;
        std::string messages;
    } cases[] = {
        {"", get(nullptr, nullptr, 0), 0x2000003, no_handle + no_port + zero},
        {"", get(&subif, nullptr, 0), 8, null + no_port + hex(&subif)},
        {"", get(&subif, &port, 0), 0x200001e, vlan + no_port + hex(&subif)},
        {"", get_l2(nullptr, nullptr), 0x2000003, no_handle + no_l2 + zero},
        {"", get_l2(&subif, nullptr), 8, null + no_l2 + hex(&subif)},
        {"", get_l2(&subif, &l2), 0x200001e, vlan + no_l2 + hex(&subif)},
        {"", get_if(nullptr, nullptr), 0x2000003, no_handle + no_if + zero},
        {"", get_if(&no_kind, nullptr), 8, null + no_if + hex(&no_kind)},
        {"", get_global(nullptr), 8, null + no_global},
        {counters, get(port_, &port, 1), 108,
         mac + "Set" + on_mac + "|Failed to get port stats from RTE" + no_port + hex(port_)},
        {counters, get_l2(port_, &l2), 108, mac + "Reset" + on_mac + no_l2 + hex(port_)},
        {se, get_l2(port_, &l2), 43, no_read + no_l2 + hex(port_)},
        {se, get_if(port_, &stats), 43, no_read + no_if + hex(port_)},
        {se, get_global(&global), 43, no_read + no_global},
        {"ovk_sys_mac_channel_id_get", get_regs, 0x7f0a, "ovk_sys_mac_channel_id_get failed for port 17"},
        {"kor_gatr_port_counter_reg_mode_set", get_regs, 132,
         "RTE Error: injected fault, Failed to set clear on read register for HSW counters KOR_GMAC17"},
        {"kor_gatr_port_counter_reg_get", get_regs, 133,
         "RTE Error: injected fault, Failed to get the port MAC stats KOR_GMAC17"},
    };
    module()->log_mask = 3;
    for (const auto &at : cases) {
        EXPECT_EQ(sim::faults::fail(at.fault), !at.fault.empty());
        EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(at.call(), at.status); }),
                  failures(at.messages, at.status));
    }
    test::lines_of([&] { EXPECT_EQ(get_if(&no_kind, &stats)(), 0x2000005u); });
    sim::counter_regs_set(host().rte(), KOR_GMAC17, {3, 4, 5});
    EXPECT_EQ(get_regs() + get_regs(), 0u); // which clears nothing
    EXPECT_EQ((std::array{regs.a, regs.b, regs.c}), (std::array{3u, 4u, 5u}));
}

TEST_F(Statistics, CrcErrorsArePolledUnderTheLockUntilTheThresholdIsReached)
{
    count_crc(0xffffffff, 1);
    sim::journal_on(true);
    EXPECT_EQ(poll(0x100000000), 0u);
    const Lines locks = {"ovk_sys_sem_lock_wait", "ovk_sys_sem_lock_wait"},
                posts = {"kor_sem_post", "kor_sem_post"};
    EXPECT_EQ(sim::journal::ops("ovk_sys_sem") + sim::journal::ops("kor_sem_post"), locks + posts);
    EXPECT_EQ(sim::journal::entries("kor_gatr_mac_statistics_get").size(), 1u);
    EXPECT_EQ(seen.calls, 1u);
    EXPECT_EQ(seen.depth, 1u); // the poll's own is given back
    EXPECT_EQ(seen.intf, port_);
    EXPECT_EQ(seen.callback, reinterpret_cast<void *>(report));
    EXPECT_EQ(seen.sum, 0x100000000u);
    count_crc(0, 0);
    module()->log_mask = 15;
    const auto info = [&](const std::string &text) {
        return "[ovk_ethernet_log: info] " + text + " for interface " + hex(port_);
    };
    EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(poll(0), 0u); }),
              (Lines{info("Retrieved the port stats"), info("CRC Error threshold exceeded"),
                     info("Ending polling for CRC errors")}));
    EXPECT_EQ(seen.calls, 2u);

    // The fourth poll fails: three waits have passed.
    const std::string failed = "|Failed to poll for CRC errors for interface " + hex(port_);
    module()->log_mask = 3;
    sim::faults::fail("kor_gatr_mac_statistics_get", 4);
    sim::journal::counts_clear();
    Lines lines = test::messages_of([&] { EXPECT_EQ(poll(1), 108u); });
    EXPECT_EQ(Lines(lines.end() - 4, lines.end()),
              failures("Failed to get port stats for interface " + hex(port_) + failed, 108));
    EXPECT_EQ(sim::journal::entries("kor_usleep"), Lines(3, "kor_usleep(0x3d090)"));
    EXPECT_EQ(sim::journal::count("kor_gatr_mac_statistics_get"), 4u);
    EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(poll(0, nullptr, 0), 8u); }),
              failures("Null stats pointer parameter" + failed, 8));
    EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(poll(0, report, 0), 8u); }),
              failures("Polling frequency must be greater than 0" + failed, 8));
    EXPECT_EQ(seen.calls, 2u);
}

TEST_F(Statistics, PollingSeesErrorsThatComeLater)
{
    std::thread line([this] {
        while (sim::journal::count("kor_usleep") < 3)
            std::this_thread::yield();
        count_crc(4, 5);
    });
    EXPECT_EQ(poll(9, report, 1000), 0u);
    line.join();
    EXPECT_EQ(seen.calls, 1u);
    EXPECT_EQ(seen.sum, 9u);
    kor_time now;
    EXPECT_EQ(kor_gettime(&now), 0u);
    EXPECT_GE(now.seconds, 3u);
    EXPECT_EQ(now.seconds, sim::journal::count("kor_usleep"));
}

} // namespace
