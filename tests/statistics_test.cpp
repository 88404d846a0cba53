// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <cstring>
#include <random>
#include <thread>

#include "kor_time.h"
#include "ovk_eth_hw/statistics.h"

namespace {

using handle = ovk_ethernet_if_handle;
using test::hex;
using test::Lines;
using test::printed;

// In the record's order; of interface counters with their offsets.
constexpr char port_names[] = "tx_octets:|tx_bad_octets|tx_frm|tx_bad_frm|tx_mcast|tx_bcast|tx_pause|tx_"
                              "fcs|tx_defer|tx_xsdfr|tx_1col|tx_mcol|"
                              "tx_lcol|tx_xscol|tx_frag|tx_usize|tx_64|tx_65|tx_128|tx_256|tx_512|tx_1024|"
                              "tx_1519|tx_osize|tx_jab|tx_urun|"
                              "tx_stat_ovfl|rx_octets|rx_bad_octets|rx_frm|rx_bad_frm|rx_mcast|rx_bcast|rx_"
                              "ctl|rx_pause|rx_unk_op|rx_fcs|"
                              "rx_align|rx_length|rx_code|rx_frag|rx_usize|rx_64|rx_65|rx_128|rx_256|rx_"
                              "512|rx_1024|rx_1519|rx_osize|rx_jab|"
                              "rx_drop|rx_carrier|rx_urun|rx_stat_ovfl|";
constexpr char interface_names[] =
    "28 Rx No Fwd Setup|32 Tx Encap Packets|40 Tx Invalid VLAN|44 Rx No Stag Mapping|48 Tx No Configured "
    "Port|"
    "52 Tx No Multicast Group|56 Rx Invalid VLAN|60 Rx Unsupported 802.3|64 Rx Unknown Association|"
    "68 Rx Assocation Rule Drop|72 Rx Unknown DMAC|80 Tx MTU Failed|84 Tx Unresolved ARP|88 Tx No Output "
    "QoS Policy|"
    "96 Tx No Binding Available|100 Rx Invalid Num tags|104 No Flow ID defined|112 Rx/Tx PDUs Discarded|"
    "120 Tx Policing Red Color|124 Source MAC Timer Expiries|128 Link Aggr Timer Expiries|"
    "132 STP State Port Disabled|136 STP Filtered (non-fwding)|140 Invalid Source MAC|144 Unknown Virtual "
    "Intf|"
    "148 HSW MAC Learn Msgs|152 HSW MAC Age Out Msgs|156 HSW MAC Evicted Msgs|160 No BVI Encap SMAC|"
    "164 No BVI Encap Proto|168 Loop Back Failure|172 Rx Unexpected Dest MAC|176 Rx Error UCAST|184 Rx "
    "Error MCAST|"
    "192 Rx Error BCAST|200 Bad Length Pkts|204 Rx 802.3 Pkts Not Supported|208 IEEE 802.3 Dropped bytes|"
    "216 Rx 802.3 Pkts Exception|220 BVI SRC MAC|224 No Mirror Port|228 HSW Error Pkts|";
constexpr char global_names[] =
    "0 Packets On Unknown Interface|4 Invalid Encap Type|8 Static MAC Entry Unknown|12 CPU Path Params "
    "Unknown|"
    "16 hash Operation Failures|20 Stopping Expired Timers|24 Number of Hash Entries Added|"
    "28 Number of Packets sent to PH|32 Number of Packets sent to BDL|36 Packets On Unknown Port|"
    "40 Number of Packets recd from BDL|44 Unknown DMAC for encap flow|48 No link found in aggregate|"
    "52 Unknown Interface Namespace ID|56 CPU Flow Pkts bound to IPv4|60 Egress time index allocation "
    "failure|"
    "64 Tx No Encap Flow found|68 Tx time stamp capture not configured|72 Port Mirroring halted due to BP|"
    "76 Time Stamp allocation requests|80 Time Stamp free requests|84 Time Stamp successful replies|"
    "88 Pakcet capture count|";

Lines split(const char *text)
{
    Lines out;
    std::istringstream rest(text);
    for (std::string part; std::getline(rest, part, '|');)
        out.push_back(part);
    return out;
}

// Of the interface record: counters of 8 bytes, of 4, and words that stay as they are.
u32 size_at(size_t offset)
{
    return offset == 176 || offset == 184 || offset == 192 || offset == 208 ? 8 : 4;
}
bool is_raw(size_t offset)
{
    return offset == 76 || offset == 92 || offset == 116;
}

// The counter as the classifier has it, of bytes that are all different.
constexpr u8 byte_at(size_t offset)
{
    return static_cast<u8>(offset * 7 + 1);
}
unsigned long long counted(size_t offset, u32 size)
{
    return size == 0 ? 0 : counted(offset, size - 1) << 8 | byte_at(offset + size - 1);
}

Lines printed_counters(const char *title, const char *names)
{
    Lines out = {"", title};
    for (const std::string &row : split(names)) {
        const size_t offset = std::stoul(row);
        const std::string name = row.substr(row.find(' ') + 1) + ':';
        out.push_back(printed("\t%-27s\t%10llu", name.c_str(), counted(offset, size_at(offset))));
    }
    return out;
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

class Statistics : public test::InterfaceTest {
  protected:
    Statistics() { seen = {0, 0, nullptr, nullptr, 0, host().lock()}; }

    u32 get(handle intf, ovk_eth_port_stats *to, u32 clear = 0)
    {
        return ovk_ethernet_port_statistics_get(module(), intf, to, clear);
    }
    u32 get(handle intf, ovk_eth_l2_stats *to)
    {
        return ovk_ethernet_l2_interface_statistics_get(module(), intf, to);
    }
    u32 get(handle intf, ovk_eth_if_stats *to)
    {
        return ovk_ethernet_interface_statistics_get(module(), intf, to);
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
    void count(u32 ns_id, u32 size)
    {
        std::vector<u8> bytes;
        while (bytes.size() < size)
            bytes.push_back(byte_at(bytes.size()));
        sim::state_put(host().rte(), ns_id, 0, bytes);
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
    for (u32 at = 0; const std::string &name : split(port_names)) {
        (at < 27 ? tx[at] : rx[at - 27]) = expected[at] = (u64{at} + 1) << 32 | (0x100 + at);
        lines.push_back(
            printed("\t%-22s\t%20llu", name.c_str(), static_cast<unsigned long long>(expected[at++])));
    }
    sim::mac_counters_set(host().rte(), KOR_GMAC17, tx, rx);
    const auto print = [&] { EXPECT_EQ(ovk_ethernet_port_stats_print(module(), port_), 0u); };
    EXPECT_EQ(test::lines_of(print), lines);
    for (const u32 clear : {2u, 1u, 0u}) { // 1 alone clears
        ovk_eth_port_stats stats;
        EXPECT_EQ(get(port_, &stats, clear), 0u);
        std::memcpy(found.data(), &stats, sizeof stats);
        EXPECT_EQ(found, clear == 0 ? decltype(found){} : expected);
    }
    EXPECT_EQ(test::lines_of(print), (Lines{lines[0], lines[1], printed("\ttx_frm%16s\t%20u", "", 0),
                                            printed("\trx_frm%16s\t%20u", "", 0)}));
}

TEST_F(Statistics, InterfaceAndGlobalCountersComeOutOfNetworkOrder)
{
    const Lines lines = printed_counters(
        "Ethernet Interface Stats (Drop counters with zero count not shown):", interface_names);
    Lines global =
        printed_counters("Ethernet Globbal Stats (Drop counters with zero count not shown):", global_names);
    const u32 ns_id = port_->stats_ns_id, global_id = ovk::object_of(module()).global_stats_ns_id;
    const auto print = [&] { return ovk_ethernet_if_stats_print(module(), port_); };
    const auto print_global = [&] { return ovk_ethernet_global_stats_print(module()); };
    count(ns_id, 232);
    count(global_id, 92);
    ovk_eth_if_stats stats;
    EXPECT_EQ(get(port_, &stats), 0u);
    for (size_t offset = 0; offset < sizeof stats; offset += size_at(offset)) {
        u64 value = 0;
        std::memcpy(&value, reinterpret_cast<const u8 *>(&stats) + offset, size_at(offset));
        const u64 host_order = counted(offset, size_at(offset));
        EXPECT_EQ(value, is_raw(offset) ? __builtin_bswap32(static_cast<u32>(host_order)) : host_order)
            << offset;
    }
    EXPECT_EQ(test::lines_of(print), lines);
    for (const u32 offset : {60, 68}) // whose names are wider than the column
        EXPECT_EQ(global[2 + offset / 4].find('\t', 1), global[2 + offset / 4].rfind(':') + 1);
    EXPECT_EQ(test::lines_of(print_global), global);
    module()->log_mask = OVK_ETHERNET_LOG_STATE;
    sim::state_put(host().rte(), ns_id, 0, std::vector<u8>(232));
    sim::state_put(host().rte(), global_id, 0, std::vector<u8>(92));
    const std::string read =
        "[ovk_ethernet_log: se_read] NS ID " + printed("0x%08x idx 0: ", ns_id) + std::string(464, '0');
    EXPECT_EQ(test::messages_of(print),
              (Lines{read, "", lines[1], printed("\tTx Encap Packets:%10s\t%10u", "", 0)}));
    module()->log_mask = 0;
    for (std::string &line : global)
        line.resize(std::min(line.size(), line.find(':') + 1));
    Lines shown = test::lines_of(print_global);
    for (std::string &line : shown)
        line.resize(std::min(line.size(), line.find(':') + 1));
    EXPECT_EQ(shown, (Lines{"", global[1], global[9], global[10], global[12], global[16]}));
}

TEST_F(Statistics, LayerTwoCountersAreWhatTheClassifierDidntDrop)
{
    test::HandMadeAggregate aggregate(module(), 0, 2, {});
    std::mt19937_64 random(7);
    for (const auto &[intf, channel] :
         {std::pair<handle, u32>{port_, KOR_GMAC17}, {aggregate.handle(), 128}}) {
        sim::TxCounters tx;
        sim::RxCounters rx;
        std::generate(tx.begin(), tx.end(), std::ref(random)); // differences and sums wrap
        std::generate(rx.begin(), rx.end(), std::ref(random));
        sim::mac_counters_set(host().rte(), channel, tx, rx);
        count(intf->stats_ns_id, 232);
        ovk_eth_port_stats p;
        ovk_eth_if_stats i;
        ovk_eth_l2_stats l;
        EXPECT_EQ(ovk_eth_port_stats_get(module(), intf->if_id, &p, 0) + get(intf, &i) + get(intf, &l), 0u);
        const u32 mac_errors = i.bad_length_pkts + i.rx_802_3_pkts_not_supported;
        const auto low = [](u64 value) { return static_cast<u32>(value); };
        const std::pair<u64, u64> counters[] = {
            {l.rx_bytes, p.rx_octets - i.ieee_802_3_dropped_bytes - p.rx_bad_octets},
            {l.rx_ucast,
             p.rx_frm - p.rx_bad_frm - p.rx_mcast - p.rx_bcast - i.rx_error_ucast - p.rx_ctl - p.rx_pause},
            {l.rx_mcast_pkts, p.rx_mcast - i.rx_error_mcast},
            {l.rx_bcast_pkts, p.rx_bcast - i.rx_error_bcast},
            {l.rx_errors, low(p.rx_align + p.rx_fcs + p.rx_osize + p.rx_code + mac_errors + p.rx_usize)},
            {l.rx_unknown_proto, i.no_flow_id_defined},
            {l.rx_alignment, low(p.rx_align)},
            {l.rx_fcs_errors, low(p.rx_fcs)},
            {l.rx_too_long, low(p.rx_osize)},
            {l.rx_mac_control, low(p.rx_ctl + p.rx_pause)},
            {l.rx_invalid_symbol, low(p.rx_code)},
            {l.rx_mac_errors, mac_errors},
            {l.rx_unknown_vlan, i.rx_invalid_vlan},
            {l.rx_discards, low(u64{i.rx_unexpected_dest_mac} + i.bvi_src_mac)},
            {l.tx_bytes, p.tx_octets},
            {l.tx_pkts, p.tx_frm - p.tx_bad_frm - p.tx_mcast - p.tx_bcast},
            {l.tx_mcast_pkts, p.tx_mcast},
            {l.tx_bcast_pkts, p.tx_bcast}};
        for (const auto &[found, expected] : counters)
            EXPECT_EQ(found, expected) << &found - &counters[0].first;
        EXPECT_EQ(sim::port(host().rte(), channel).tx_counters, tx); // not cleared
    }
    EXPECT_EQ(test::lines_of([&] { ovk_ethernet_l2_interface_statistics_print(module(), port_); }).at(1),
              "Ethernet L2 Interface Stats: (Drop counters with zero count not shown):");
}

TEST_F(Statistics, RefusalsAndFailedReadsAreReported)
{
    ovk_eth_intf subif = *port_, no_kind = *port_;
    subif.if_type = INTERFACE_TYPE_VLAN, no_kind.if_type = INTERFACE_TYPE_MAX;
    ovk_eth_port_stats port;
    ovk_eth_l2_stats l2;
    ovk_eth_if_stats stats;
    ovk_eth_global_stats global;
    ovk_eth_port_counter_regs regs;
    const auto refused = [&](const std::string &what, auto *to, handle wrong_kind, u32 status) {
        const auto operation = [&](handle intf) {
            return "|Failed to get " + what + " stats for interface " + hex(intf);
        };
        const auto none = static_cast<decltype(to)>(nullptr);
        expect([&] { return get(nullptr, none); }, 0x2000003,
               "Invalid Interface handle 0x00000000" + operation(nullptr));
        expect([&] { return get(wrong_kind, none); }, 8,
               "Null stats pointer parameter" + operation(wrong_kind));
        EXPECT_EQ(get(wrong_kind, to), status);
    };
    refused("port", &port, &subif, 0x200001e);
    refused("L2 interface", &l2, &subif, 0x200001e);
    refused("interface", &stats, &no_kind, 0x2000005);
    EXPECT_EQ(get(&subif, &stats), 0u);
    expect([&] { return ovk_ethernet_global_statistics_get(module(), nullptr); }, 8,
           "Null stats pointer parameter|Failed to get global stats for Ethernet module");
    const std::string no_mac = "32522 ovk_sys_mac_channel_id_get failed for port 17|";
    const std::string no_read = "43 RTE, Failed to read counters from SE memory|";
    const std::string mac = "108 RTE, Failed to get the port MAC stats with Clear-On-Read flag ",
                      on = " for mac channel KOR_GMAC17|";
    EXPECT_EQ(faults_of([&] { return get(port_, &port, 1); }), no_mac + mac + "Set" + on);
    EXPECT_EQ(faults_of([&] { return get(port_, &l2); }), no_read + no_mac + mac + "Reset" + on);
    EXPECT_EQ(faults_of([&] { return get(port_, &stats); }), no_read);
    EXPECT_EQ(faults_of([&] { return ovk_ethernet_global_statistics_get(module(), &global); }), no_read);
    sim::counter_regs_set(host().rte(), KOR_GMAC17, {3, 4, 5});
    EXPECT_EQ(faults_of([&] { return ovk_eth_port_counter_reg_stats_get(module(), 0x11, &regs); }),
              no_mac + "132 RTE, Failed to set clear on read register for HSW counters KOR_GMAC17|"
                       "133 RTE, Failed to get the port MAC stats KOR_GMAC17|");
    EXPECT_EQ((std::array{regs.a, regs.b, regs.c}), (std::array{3u, 4u, 5u}));
}

TEST_F(Statistics, CrcErrorsArePolledUnderTheLockUntilTheThresholdIsReached)
{
    count_crc(0xffffffff, 1);
    sim::journal_on(true);
    EXPECT_EQ(poll(0x100000000), 0u);
    const std::string post = "kor_sem_post", wait = "ovk_sys_sem_lock_wait",
                      read = "kor_gatr_mac_statistics_get";
    Lines calls = sim::journal::ops();
    std::erase_if(calls, [&](const std::string &op) { return op != post && op != wait && op != read; });
    EXPECT_EQ(calls, (Lines{wait, wait, read, post, post}));
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

    const std::string failed = "|Failed to poll for CRC errors for interface " + hex(port_);
    sim::faults::fail(read, 4); // after three waits
    expect([&] { return poll(1); }, 108,
           "RTE Error: injected fault, Failed to get the port MAC stats with Clear-On-Read flag Reset for "
           "mac channel "
           "KOR_GMAC17|Failed to get port stats from RTE|Failed to get port stats for interface " +
               hex(port_) + failed);
    EXPECT_EQ(sim::journal::entries("kor_usleep"), Lines(3, "kor_usleep(0x3d090)"));
    expect([&] { return poll(0, nullptr, 0); }, 8, "Null stats pointer parameter" + failed);
    expect([&] { return poll(0, report, 0); }, 8, "Polling frequency must be greater than 0" + failed);
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
    kor_time now;
    EXPECT_EQ(kor_gettime(&now), 0u);
    EXPECT_EQ(now.seconds, sim::journal::count("kor_usleep"));
    EXPECT_EQ(seen.calls, 1u);
    EXPECT_EQ(seen.sum, 9u);
}

} // namespace
