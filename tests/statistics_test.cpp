// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <cstring>
#include <random>

#include "ovk_eth_hw/statistics.h"

namespace {

using namespace test;
using std::string;

// Names in the records' order; words without a name are left empty.
// clang-format off
constexpr char port_names[] =
    "tx_octets:|tx_bad_octets|tx_frm|tx_bad_frm|tx_mcast|tx_bcast|tx_pause|tx_fcs|tx_defer|tx_xsdfr|tx_1col|tx_mcol|tx_lcol|"
    "tx_xscol|tx_frag|tx_usize|tx_64|tx_65|tx_128|tx_256|tx_512|tx_1024|tx_1519|tx_osize|tx_jab|tx_urun|tx_stat_ovfl|"
    "rx_octets|rx_bad_octets|rx_frm|rx_bad_frm|rx_mcast|rx_bcast|rx_ctl|rx_pause|rx_unk_op|rx_fcs|rx_align|rx_length|rx_code|"
    "rx_frag|rx_usize|rx_64|rx_65|rx_128|rx_256|rx_512|rx_1024|rx_1519|rx_osize|rx_jab|rx_drop|rx_carrier|rx_urun|rx_stat_ovfl|";
constexpr char interface_names[] =
    "|||||||Rx No Fwd Setup|Tx Encap Packets||Tx Invalid VLAN|Rx No Stag Mapping|Tx No Configured Port|Tx No Multicast Group|"
    "Rx Invalid VLAN|Rx Unsupported 802.3|Rx Unknown Association|Rx Assocation Rule Drop|Rx Unknown DMAC||Tx MTU Failed|"
    "Tx Unresolved ARP|Tx No Output QoS Policy||Tx No Binding Available|Rx Invalid Num tags|No Flow ID defined||"
    "Rx/Tx PDUs Discarded||Tx Policing Red Color|Source MAC Timer Expiries|Link Aggr Timer Expiries|STP State Port Disabled|"
    "STP Filtered (non-fwding)|Invalid Source MAC|Unknown Virtual Intf|HSW MAC Learn Msgs|HSW MAC Age Out Msgs|"
    "HSW MAC Evicted Msgs|No BVI Encap SMAC|No BVI Encap Proto|Loop Back Failure|Rx Unexpected Dest MAC|Rx Error UCAST|"
    "Rx Error MCAST|Rx Error BCAST|Bad Length Pkts|Rx 802.3 Pkts Not Supported|IEEE 802.3 Dropped bytes|"
    "Rx 802.3 Pkts Exception|BVI SRC MAC|No Mirror Port|HSW Error Pkts|";
constexpr char l2_names[] =
    "rx_bytes|rx_ucast|rx_mcast_pkts|rx_bcast_pkts|rx_errors|rx_unknown_proto|rx_alignment|rx_fcs_errors|rx_too_long|"
    "rx_mac_control|rx_invalid_symbol|rx_mac_errors|rx_unknown_vlan|rx_discards|tx_bytes|tx_pkts|tx_mcast_pkts|"
    "tx_bcast_pkts|";
constexpr char global_names[] =
    "Packets On Unknown Interface|Invalid Encap Type|Static MAC Entry Unknown|CPU Path Params Unknown|hash Operation Failures|"
    "Stopping Expired Timers|Number of Hash Entries Added|Number of Packets sent to PH|Number of Packets sent to BDL|"
    "Packets On Unknown Port|Number of Packets recd from BDL|Unknown DMAC for encap flow|No link found in aggregate|"
    "Unknown Interface Namespace ID|CPU Flow Pkts bound to IPv4|Egress time index allocation failure|Tx No Encap Flow found|"
    "Tx time stamp capture not configured|Port Mirroring halted due to BP|Time Stamp allocation requests|"
    "Time Stamp free requests|Time Stamp successful replies|Pakcet capture count|";
// clang-format on

// Of the interface record: counters of 8 bytes, the others of 4, and words that stay as they are.
u32 size_at(size_t offset)
{
    return offset == 176 || offset == 184 || offset == 192 || offset == 208 ? 8 : 4;
}
bool is_raw(size_t offset)
{
    return offset == 76 || offset == 92 || offset == 116;
}

// What the classifier has counted, in bytes that are all different.
constexpr u8 byte_at(size_t offset)
{
    return static_cast<u8>(offset * 7 + 1);
}
u64 counted(size_t offset, u32 size)
{
    return size == 0 ? 0 : counted(offset, size - 1) << 8 | byte_at(offset + size - 1);
}

string line(const string &name, const char *value_format, int width, unsigned long long value)
{
    return printed("\t%-*s\t", width, name.c_str()) + printed(value_format, value);
}

Lines counter_lines(const char *title, const char *names)
{
    Lines out = {"", title};
    std::istringstream rest(names);
    size_t offset = 0;
    for (string name; std::getline(rest, name, '|'); offset += size_at(offset))
        if (!name.empty())
            out.push_back(line(name + ':', "%10llu", 27, counted(offset, size_at(offset))));
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

class Statistics : public ModuleTest {
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
        sim::mac_counters_set(host().rte(), KOR_GMAC17, {0, 0, 0, 0, 0, 0, 0, tx},
                              {0, 0, 0, 0, 0, 0, 0, 0, 0, rx});
    }
    void count(u32 ns_id, u32 size, bool zeros = false)
    {
        std::vector<u8> bytes(size);
        for (size_t at = 0; at < size && !zeros; at++)
            bytes[at] = byte_at(at);
        sim::state_put(host().rte(), ns_id, 0, bytes);
    }

    const handle port_ = make_port(module(), 0x11, 2);
};

TEST_F(Statistics, EachCounterOfAPortStandsAndPrintsUnderItsName)
{
    sim::TxCounters tx{};
    sim::RxCounters rx{};
    std::array<u64, 55> expected, found;
    Lines lines = {"",
                   "Ethernet Port Stats (Counters with non-zero count only except for tx_frm and rx_frm):"};
    std::istringstream names(port_names);
    string name;
    for (u32 at = 0; std::getline(names, name, '|'); at++) {
        (at < 27 ? tx[at] : rx[at - 27]) = expected[at] = (u64{at} + 1) << 32 | (0x100 + at);
        lines.push_back(line(name, "%20llu", 22, expected[at]));
    }
    sim::mac_counters_set(host().rte(), KOR_GMAC17, tx, rx);
    const auto print = [&] { EXPECT_EQ(ovk_ethernet_port_stats_print(module(), port_), 0u); };
    EXPECT_EQ(lines_of(print), lines);
    for (const u32 clear : {2u, 1u, 0u}) { // 1 alone clears
        ovk_eth_port_stats stats;
        EXPECT_EQ(get(port_, &stats, clear), 0u);
        std::memcpy(found.data(), &stats, sizeof stats);
        EXPECT_EQ(found, clear == 0 ? decltype(found){} : expected);
    }
    EXPECT_EQ(lines_of(print),
              (Lines{"", lines[1], line("tx_frm", "%20llu", 22, 0), line("rx_frm", "%20llu", 22, 0)}));
}

TEST_F(Statistics, InterfaceAndGlobalCountersComeOutOfNetworkOrder)
{
    const Lines lines = counter_lines("Ethernet Interface Stats (Drop counters with zero count not shown):",
                                      interface_names);
    const Lines global =
        counter_lines("Ethernet Globbal Stats (Drop counters with zero count not shown):", global_names);
    const u32 ns_id = port_->stats_ns_id, global_id = ovk::object_of(module()).global_stats_ns_id;
    const auto print = [&] { EXPECT_EQ(ovk_ethernet_if_stats_print(module(), port_), 0u); };
    const auto print_global = [&] { EXPECT_EQ(ovk_ethernet_global_stats_print(module()), 0u); };
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
    EXPECT_EQ(lines_of(print), lines);
    EXPECT_EQ(lines_of(print_global), global);
    const auto raw = [](u32 id, u32 size) {
        string bytes = printed("se_read] NS ID 0x%08x idx 0: ", id);
        for (u32 at = 0; at < size; at++)
            bytes += printed("%02x", byte_at(at));
        return bytes + '\n';
    };
    ovk_eth_global_stats all;
    EXPECT_EQ(told(OVK_ETHERNET_LOG_STATE, [&] { return get(port_, &stats); }), raw(ns_id, 232));
    EXPECT_EQ(
        told(OVK_ETHERNET_LOG_STATE, [&] { return ovk_ethernet_global_statistics_get(module(), &all); }),
        raw(global_id, 92));
    for (const u32 kind : {INTERFACE_TYPE_VLAN, INTERFACE_TYPE_SWITCH_VIRTUAL}) {
        ovk_eth_intf other = *port_;
        other.if_type = kind;
        EXPECT_EQ(told(15, [&] { return get(&other, &stats); }), "");
    }
    count(ns_id, 232, true);
    count(global_id, 92, true);
    const auto zero = [](const char *name) { return line(name, "%10llu", 27, 0); };
    EXPECT_EQ(
        lines_of(print_global),
        (Lines{"", global[1], zero("Number of Packets sent to PH:"), zero("Number of Packets sent to BDL:"),
               zero("Number of Packets recd from BDL:"), zero("CPU Flow Pkts bound to IPv4:")}));
    EXPECT_EQ(lines_of(print), (Lines{"", lines[1], zero("Tx Encap Packets:")}));
}

TEST_F(Statistics, LayerTwoCountersAreWhatTheClassifierDidntDrop)
{
    HandMadeAggregate aggregate(module(), 0, 2, {});
    std::mt19937_64 random(7);
    for (const handle intf : {port_, aggregate.handle()}) {
        sim::TxCounters tx;
        sim::RxCounters rx;
        std::generate(tx.begin(), tx.end(), std::ref(random)); // differences and sums wrap
        std::generate(rx.begin(), rx.end(), std::ref(random));
        sim::mac_counters_set(host().rte(), *sim::channel_of(intf->if_id), tx, rx);
        count(intf->stats_ns_id, 232);
        ovk_eth_port_stats p;
        ovk_eth_if_stats i;
        ovk_eth_l2_stats l;
        EXPECT_EQ(get(intf, &l) + get(intf, &i) + ovk_eth_port_stats_get(module(), intf->if_id, &p, 0), 0u);
        EXPECT_EQ(p.tx_octets, tx[0]); // the first read cleared nothing
        const u32 mac_errors = i.bad_length_pkts + i.rx_802_3_pkts_not_supported;
        const auto low = [](u64 value) { return static_cast<u32>(value); };
        // clang-format off
        const std::pair<u64, u64> counters[] = {
            {l.rx_bytes, p.rx_octets - i.ieee_802_3_dropped_bytes - p.rx_bad_octets},
            {l.rx_ucast, p.rx_frm - p.rx_bad_frm - p.rx_mcast - p.rx_bcast - i.rx_error_ucast - p.rx_ctl - p.rx_pause},
            {l.rx_mcast_pkts, p.rx_mcast - i.rx_error_mcast}, {l.rx_bcast_pkts, p.rx_bcast - i.rx_error_bcast},
            {l.rx_errors, low(p.rx_align + p.rx_fcs + p.rx_osize + p.rx_code + mac_errors + p.rx_usize)},
            {l.rx_unknown_proto, i.no_flow_id_defined}, {l.rx_alignment, low(p.rx_align)}, {l.rx_fcs_errors, low(p.rx_fcs)},
            {l.rx_too_long, low(p.rx_osize)}, {l.rx_mac_control, low(p.rx_ctl + p.rx_pause)},
            {l.rx_invalid_symbol, low(p.rx_code)}, {l.rx_mac_errors, mac_errors}, {l.rx_unknown_vlan, i.rx_invalid_vlan},
            {l.rx_discards, low(u64{i.rx_unexpected_dest_mac} + i.bvi_src_mac)}, {l.tx_bytes, p.tx_octets},
            {l.tx_pkts, p.tx_frm - p.tx_bad_frm - p.tx_mcast - p.tx_bcast}, {l.tx_mcast_pkts, p.tx_mcast},
            {l.tx_bcast_pkts, p.tx_bcast}};
        // clang-format on
        for (const auto &[found, expected] : counters)
            EXPECT_EQ(found, expected);
    }
    for (const bool zeros : {false, true}) {
        if (zeros) {
            sim::mac_counters_set(host().rte(), KOR_GMAC17, {}, {});
            count(port_->stats_ns_id, 232, true);
        }
        ovk_eth_l2_stats l2;
        EXPECT_EQ(get(port_, &l2), 0u);
        Lines expected = {"", "Ethernet L2 Interface Stats: (Drop counters with zero count not shown):"};
        std::istringstream names(l2_names);
        size_t offset = 0;
        for (string name; std::getline(names, name, '|');) {
            const size_t size = offset < 32 || offset >= 72 ? 8 : 4; // traffic, and what was dropped
            u64 value = 0;
            std::memcpy(&value, reinterpret_cast<const u8 *>(&l2) + offset, size);
            if (value != 0 || size == 8)
                expected.push_back(line(name + ':', "%10llu", 27, value));
            offset += size;
        }
        EXPECT_EQ(
            lines_of([&] { EXPECT_EQ(ovk_ethernet_l2_interface_statistics_print(module(), port_), 0u); }),
            expected);
        EXPECT_EQ(expected.size(), zeros ? 10u : 20u);
    }
}

TEST_F(Statistics, RefusalsAndFailedReadsAreReported)
{
    ovk_eth_intf subif = *port_, no_kind = *port_;
    subif.if_type = INTERFACE_TYPE_VLAN, no_kind.if_type = INTERFACE_TYPE_MAX;
    const string no_mac = "32522 ovk_sys_mac_channel_id_get failed for port 17|", rte = " RTE, Failed to ";
    const string no_read = "43" + rte + "read counters from SE memory|",
                 on = " for mac channel KOR_GMAC17|";
    const string mac = "108" + rte + "get the port MAC stats with Clear-On-Read flag ",
                 null = "Null stats pointer parameter";
    const auto check = [&](const string &what, auto to, handle wrong_kind, u32 status,
                           const string &failures) {
        const auto of = [&](handle intf) {
            return "|Failed to get " + what + " stats for interface " + hex(intf);
        };
        const decltype(&to) none = nullptr;
        expect([&] { return get(nullptr, none); }, 0x2000003,
               "Invalid Interface handle 0x00000000" + of(nullptr));
        expect([&] { return get(wrong_kind, none); }, 8, null + of(wrong_kind));
        EXPECT_EQ(get(wrong_kind, &to), status);
        EXPECT_EQ(faults_of([&] { return get(port_, &to); }), failures);
    };
    ovk_eth_l2_stats l2 = {.rx_bytes = 7};
    sim::faults::fail("kor_gatr_mac_statistics_get");
    EXPECT_EQ(get(port_, &l2), 108u);
    EXPECT_EQ(l2.rx_bytes, 7u); // nothing is derived
    EXPECT_EQ(told(15, [&] { return get(port_, &l2); }),
              "info] Retrieved the L2 interface stats for interface " + hex(port_) + '\n');
    check("port", ovk_eth_port_stats{}, &subif, 0x200001e, no_mac + mac + "Reset" + on);
    check("L2 interface", ovk_eth_l2_stats{}, &subif, 0x200001e, no_read + no_mac + mac + "Reset" + on);
    check("interface", ovk_eth_if_stats{}, &no_kind, 0x2000005, no_read);
    ovk_eth_port_stats port;
    ovk_eth_global_stats global;
    ovk_eth_port_counter_regs regs;
    EXPECT_EQ(faults_of([&] { return get(port_, &port, 1); }), no_mac + mac + "Set" + on);
    EXPECT_EQ(faults_of([&] { return ovk_ethernet_global_statistics_get(module(), &global); }), no_read);
    EXPECT_EQ(told(15, [&] { return ovk_ethernet_global_statistics_get(module(), &global); }),
              "info] Retrieved the global stats for Ethernet module\n");
    expect([&] { return ovk_ethernet_global_statistics_get(module(), nullptr); }, 8,
           null + "|Failed to get global stats for Ethernet module");
    sim::counter_regs_set(host().rte(), KOR_GMAC17, {3, 4, 5}); // which a read leaves
    EXPECT_EQ(faults_of([&] { return ovk_eth_port_counter_reg_stats_get(module(), 0x11, &regs); }),
              no_mac + "132" + rte + "set clear on read register for HSW counters KOR_GMAC17|133" + rte +
                  "get the port MAC stats KOR_GMAC17|");
    EXPECT_EQ(sim::port(host().rte(), KOR_GMAC17).counter_regs, (sim::CounterRegs{3, 4, 5}));
    EXPECT_EQ((std::array{regs.a, regs.b, regs.c}), (std::array{3u, 4u, 5u}));
}

TEST_F(Statistics, CrcErrorsArePolledUnderTheLockUntilTheThresholdIsReached)
{
    const string post = "kor_sem_post", wait = "ovk_sys_sem_lock_wait",
                 read = "kor_gatr_mac_statistics_get";
    const string of = " for interface " + hex(port_), failed = "|Failed to poll for CRC errors" + of;
    count_crc(0xffffffff, 1);
    sim::journal_on(true);
    EXPECT_EQ(poll(0x100000000), 0u);
    Lines calls = sim::journal::ops();
    std::erase_if(calls, [&](const string &op) { return op != post && op != wait && op != read; });
    EXPECT_EQ(calls, (Lines{wait, wait, read, post, post}));
    EXPECT_EQ(seen.depth, 1u); // the poll's own is given back
    EXPECT_EQ(seen.intf, port_);
    EXPECT_EQ(seen.callback, reinterpret_cast<void *>(report));
    EXPECT_EQ(seen.sum, 0x100000000u);
    count_crc(0, 0);
    sim::faults::fail(read, 4); // after three waits
    expect([&] { return poll(1); }, 108,
           "RTE Error: injected fault, Failed to get the port MAC stats with Clear-On-Read flag Reset for "
           "mac channel KOR_GMAC17|Failed to get port stats from RTE|Failed to get port stats" +
               of + failed);
    EXPECT_EQ(sim::journal::entries("kor_usleep"), Lines(3, "kor_usleep(0x3d090)"));
    expect([&] { return poll(0, nullptr, 0); }, 8, "Null stats pointer parameter" + failed);
    expect([&] { return poll(0, report, 0); }, 8, "Polling frequency must be greater than 0" + failed);
    EXPECT_EQ(seen.calls, 1u);
    EXPECT_EQ(told(15, [&] { return poll(0); }), "info] Retrieved the port stats" + of +
                                                     "\ninfo] CRC Error threshold exceeded" + of +
                                                     "\ninfo] Ending polling for CRC errors" + of + '\n');
    EXPECT_EQ(seen.calls, 2u);
}

} // namespace
