// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include "kor_gatr_switch.h"
#include "ovk_eth_hw/vlan_membership.h"

namespace {

using namespace test;
using std::string;

constexpr u32 trunk = OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK, routed = OVK_ETHERNET_FWD_MODE_HIGHER_LAYER;

class VlanMembership : public ModuleTest {
  protected:
    VlanMembership() { port_->stats_ns_id = 0x5abcd; }

    u32 add(handle intf, u32 vlan, u32 bg) { return ovk_ethernet_vlan_id_add(module(), intf, vlan, bg); }
    u32 del(handle intf, u32 vlan, u32 bg) { return ovk_ethernet_vlan_id_del(module(), intf, vlan, bg); }
    u32 leave(handle intf, u32 bg, u32 tag, u32 vlan, u8 rewrite = 0)
    {
        return ovk_ethernet_port_egress_vlan_config(module(), intf, bg, tag, static_cast<u16>(vlan),
                                                    rewrite);
    }
    u32 stay(handle intf, u32 bg) { return ovk_ethernet_port_egress_vlan_config_del(module(), intf, bg); }
    ovk_eth_vlan_entry &entry(handle port, u32 vlan)
    {
        return ovk::object_of(module()).hsw_port_vlan_table[port->hsw_if_id][vlan];
    }
    // What is done with a VLAN that comes in, and what with a bridge group on its way out.
    string in(u32 port, u32 vlan) { return answer("Validate_VLAN_ID", {{port, 8}, {vlan, 12}}); }
    string out(u32 if_id, u32 bg) { return answer("OUT_VLAN_Look_up", {{if_id, 8}, {bg, 12}}); }

    const handle port_ = make_port(module(), 0x11, trunk); // 6 in the switch
    const handle member_ = make_port(module(), 0x12, trunk);
    const handle routed_ = make_port(module(), 0x13, routed);
};

TEST_F(VlanMembership, PortGetsRuleEntryAndRegistersAndOnceForEachGroupItsSet)
{
    const auto parsing = [](u8 discard) {
        return "parsing_options = " + numbered(16, {{3, 1}, {4, 1}, {12, discard}}) + ' ';
    };
    const string map = "cvlan[0x64] = 0x5 ", rule = "rule 0x06064/20 -> data 0x5 0xabcd ";
    const string map_0 = "cvlan[0x0] = 0x3f ", rule_0 = "rule 0x06000/20 -> data 0x3f 0xa2abcd ";
    const string map_4095 = "cvlan[0xfff] = 0x5 ", rule_4095 = "rule 0x06fff/20 -> data 0x5 0x83abcd ";
    // `policy` stands above bit 18 of the ingress flags; `count` is that of the group's bindings.
    const auto step = [&](bool adds, u32 vlan, u32 bg, u32 policy, u32 encoded_if, int count,
                          const string &expected) {
        const auto call = [&] { return adds ? add(port_, vlan, bg) : del(port_, vlan, bg); };
        port_->inif_flags = (port_->inif_flags & 0x7ffff) | policy << 19;
        EXPECT_EQ(changes(host(), call), expected);
        EXPECT_EQ(entry(port_, vlan).encoded_if, encoded_if) << expected;
        EXPECT_EQ(entry(port_, vlan).id, adds ? bg : 0) << expected;
        EXPECT_EQ(port_->bg_ref_count[bg], count) << expected;
    };
    step(true, 100, 5, 0, 0x505abcd, 1,
         "+ " + map + "+ vlan[0x5] = 0x0 + " + rule + "+ vlan_vps[0x5] = 0x40 ");
    step(true, 4095, 5, 3, 0x705abcd, 2, "+ " + map_4095 + "+ " + rule_4095);
    step(true, 0, 63, 0x22, 0x705abcd, 1, // a policy, and a bit above it
         "- " + parsing(1) + "+ " + map_0 + "+ default_vlan = 0x3f + " + parsing(0) +
             "+ vlan[0x3f] = 0x0 + " + rule_0 + "+ vlan_vps[0x3f] = 0x40 ");
    step(true, 100, 5, 0, 0x505abcd, 3, ""); // again, and it counts
    // The port stays in the group and in its set; to which group the VLAN was bound isn't asked.
    step(false, 100, 5, 3, 0, 2, "- " + map + "- " + rule);
    step(false, 4095, 7, 0, 0, -1, "- " + map_4095 + "- " + rule_4095);
    step(false, 0, 63, 0, 0, 0, "- " + map_0 + "- " + parsing(0) + "- " + rule_0 + "+ " + parsing(1));
    step(false, 9, 8, 0, 0, -1, "");  // there was none
    step(true, 1, 8, 0, 0x505abcd, 0, // -1 isn't the first
         "+ cvlan[0x1] = 0x8 + vlan[0x8] = 0x0 + rule 0x06001/20 -> data 0x8 0xabcd ");
    EXPECT_EQ(ovk_eth_vlan_id(module(), 1, 6, 9, 0x1234, 0xabcd, 0, 3), 0u); // a last word, for others
    EXPECT_EQ(in(6, 9), "data 0x1234 0x60abcd");
    EXPECT_EQ(in(6, 1) + in(6, 100), "data 0x8 0xabcdfunction ovk_ethernet.Invalid_VLAN_tag");
    port_->bg_ref_count[5] = INT16_MIN;
    EXPECT_EQ(del(port_, 1, 5), 0u);
    EXPECT_EQ(port_->bg_ref_count[5], INT16_MAX);
}

TEST_F(VlanMembership, MembersOfAnAggregateAreDoneInAnotherOrderAndCountedOnIt)
{
    const Lines rule = {"kor_ptn_learn"}, set = {"kor_gatr_switch_bridge_vlan_vps_set"};
    const Lines gone = {"kor_gatr_port_ingress_qinq_cvlan_map_rem", "kor_ptn_unlearn"};
    const Lines registers = {"kor_gatr_port_ingress_vlan_set", "kor_gatr_port_ingress_qinq_cvlan_map_set",
                             "kor_gatr_port_default_vlan_set", "kor_gatr_port_ingress_parsing_options_set"};
    HandMadeAggregate aggregate(module(), 1, routed, {port_, member_}), empty(module(), 0, trunk, {});
    const handle aggr = aggregate.handle();
    aggr->stats_ns_id = empty.handle()->stats_ns_id = 0x61234;
    aggr->inif_flags |= 3U << 19; // its own policy, not the members'
    const auto told = [](const ovk_eth_aggr_vlan_entry &at) {
        return printed("%u %x %u, ", at.id, at.stats_ns_id, at.kind);
    };
    // The aggregate's entry and count, then the members' entries.
    const auto state = [&](u32 vlan, u32 bg) {
        const ovk_eth_vlan_entry &a = entry(port_, vlan), &b = entry(member_, vlan);
        return told(aggregate.vlan(vlan)) +
               printed("%d, %u %x, %u %x", aggr->bg_ref_count[bg], a.id, a.encoded_if, b.id, b.encoded_if);
    };
    sim::journal_on(true);
    EXPECT_EQ(add(routed_, 0, 4), 0u);
    EXPECT_EQ(sim::journal::writes(), rule + set + registers);
    sim::journal::clear();
    EXPECT_EQ(add(aggr, 0, 5), 0u);
    EXPECT_EQ(sim::journal::writes(), registers + rule + set + registers + rule);
    EXPECT_EQ(sim::vlan_vps(host().rte(), 5), 0x40u); // the first member alone
    EXPECT_EQ(state(0, 5), "5 61234 2, 2, 5 7061234, 5 7061234");
    EXPECT_EQ(in(6, 0) + in(7, 0), "data 0x5 0x831234data 0x5 0x831234");
    sim::faults::fail("kor_ptn_unlearn", 2);
    EXPECT_EQ(del(aggr, 0, 5), 65u);
    EXPECT_EQ(state(0, 5), "5 61234 2, 1, 0 0, 5 7061234");
    EXPECT_EQ(add(aggr, 7, 6), 0u);
    for (const u32 channel : {KOR_GMAC17, KOR_GMAC18})
        EXPECT_EQ(sim::port(host().rte(), channel).cvlans[7], 6u);
    sim::faults::fail("kor_gatr_switch_bridge_vlan_vps_set");
    EXPECT_EQ(add(aggr, 8, 9), 141u);
    EXPECT_EQ(state(8, 9), "0 0 0, 0, 0 0, 0 0"); // only then are there entries
    sim::journal::clear();
    EXPECT_EQ(del(aggr, 7, 6), 0u);
    EXPECT_EQ(sim::journal::writes(), gone + gone);
    EXPECT_EQ(state(7, 6), "0 0 0, 0, 0 0, 0 0");
    // Without members there is the entry alone, for those that join.
    EXPECT_EQ(changes(host(), [&] { return add(empty.handle(), 9, 3); }), "");
    EXPECT_EQ(told(empty.vlan(9)), "3 61234 2, ");
    EXPECT_EQ(del(empty.handle(), 9, 3), 0u);
    EXPECT_EQ(told(empty.vlan(9)), "0 0 0, ");
}

TEST_F(VlanMembership, EgressRuleOfGroupZeroIsThePortsCatchAll)
{
    HandMadeAggregate aggregate(module(), 0, trunk, {member_});
    const string none = "function ovk_ethernet.Invalid_VLAN_id";
    EXPECT_EQ(leave(port_, 63, 2, 4095, 1) + leave(port_, 7, 1, 0), 0u);
    EXPECT_EQ(out(0x11, 8), none);
    EXPECT_EQ(leave(port_, 0, 2, 9), 0u);
    EXPECT_EQ(out(0x11, 63), "data 0x3fff 0x0");
    EXPECT_EQ(out(0x11, 7), "data 0x0 0x0");
    EXPECT_EQ(out(0x11, 8), "data 0x1009 0x0");
    EXPECT_EQ(changes(host(), [&] { return leave(aggregate.handle(), 7, 1, 0, 1); }),
              "+ rule 0x80007/20 -> data 0x2000 0x0 "); // one for all members
    EXPECT_EQ(stay(port_, 7), 0u);
    EXPECT_EQ(out(0x11, 7), none); // the catch-all doesn't come back there
    EXPECT_EQ(stay(port_, 0), 0u);
    EXPECT_EQ(out(0x11, 8), none);
    EXPECT_EQ(std::regex_replace(told(15,
                                      [&] {
                                          return add(port_, 9, 5) + del(port_, 9, 6) +
                                                 leave(port_, 3, 2, 9) + stay(port_, 3);
                                      }),
                                 std::regex(hex(port_)), "@"),
              "info] Added BG_ID 0x0005 for Interface @ and VLAN 0x0009\n"
              "info] Removed VLAN ID 0x0009 for Interface @\n"
              "info] Added VLAN 0x0009 for Interface @ and BG_ID 0x0003\n"
              "info] Removed VLAN config for Interface @ and BGID 0x0003\n");
}

TEST_F(VlanMembership, SetOfVirtualPortsKeepsItsArithmetic)
{
    constexpr u64 all = ~u64{0}, high = all << 32;
    const auto check = [&](u64 before, u32 op, u32 port, u8 fixed, u64 after) {
        const u32 low = static_cast<u32>(before), top = static_cast<u32>(before >> 32);
        EXPECT_EQ(kor_gatr_switch_bridge_vlan_vps_set(host().rte(), 9, low, top), 0u);
        EXPECT_EQ(ovk_eth_hsw_vlan_filter(module(), op, port, 9, fixed), 0u);
        EXPECT_EQ(sim::vlan_vps(host().rte(), 9), after) << op << ' ' << port;
    };
    check(0, 1, 0, 0, 1);
    check(high | 0x100, 1, 30, 0, high | 0x40000100);
    check(0, 1, 31, 0, high | 0x80000000); // with its sign
    check(0x100, 1, 32, 0, 0x100);         // has no bit
    check(0x100, 1, 0x103, 0, 0x108);      // the low byte counts
    check(all, 1, 3, 1, 0x400000);
    check(all, 2, 30, 0, all - 0x40000000);
    check(all, 2, 31, 0, 0x7fffffff);
    check(all, 3, 3, 0, all - 8);
    check(all, 2, 3, 1, all - 0x400000);
}

TEST_F(VlanMembership, RefusesTheFirstWrongArgumentInItsOrder)
{
    HandMadeAggregate aggregate(module(), 0, OVK_ETHERNET_FWD_MODE_STATIC, {member_});
    ovk_eth_intf subif = live_record(INTERFACE_TYPE_VLAN), access = *port_;
    access.phy.attrs.fwd_mode = member_->phy.attrs.fwd_mode = OVK_ETHERNET_FWD_MODE_SWITCH_ACCESS;
    constexpr u32 ingress = 3, config = 4, egress = 12, all = 15; // the calls for which it is so
    const auto refused = [&](u32 calls, handle intf, u32 vlan, u32 bg, u32 tag, u32 status,
                             const string &cause) {
        const string on = " for Interface " + hex(intf), v = printed("0x%04x", vlan),
                     b = printed("0x%04x", bg);
        const auto check = [&](u32 call, const string &operation, auto make) {
            if ((calls & call) != 0)
                expect(make, status, cause + "|Failed to " + operation);
        };
        check(1, "add BG_ID " + (b + on) + " and VLAN " + v, [&] { return add(intf, vlan, bg); });
        check(2, "remove VLAN ID " + v + on, [&] { return del(intf, vlan, bg); });
        check(4, "add VLAN " + (v + on) + " and BG_ID " + b, [&] { return leave(intf, bg, tag, vlan); });
        check(8, "remove VLAN config" + on + " and BGID " + b, [&] { return stay(intf, bg); });
    };
    const string before = host().image(), mode = "Incompatible Intf forwarding mode OVK_ETHERNET_FWD_MODE_";
    refused(all, nullptr, 0x1000, 4095, 3, 0x2000003, "Invalid Interface handle 0x00000000");
    refused(ingress, member_, 0x1000, 4095, 0, 0x2000009, "Invalid VLAN ID 0x1000");
    refused(ingress, member_, 4095, 4095, 0, 0x200000a,
            "BG_ID  0x0fff is reserved as OVK_ETH_ROUTER_VLAN_ID");
    refused(egress, member_, 0, 4095, 3, 0x200000a, "Invalid BG_ID 0x0fff");
    refused(all, member_, 0, 64, 3, 0x200000a, "Invalid BG_ID 0x0040");
    refused(config, member_, 0x1000, 63, 3, 0x200000b, "Invalid port tag type 0x0003");
    refused(config, member_, 4096, 63, 1, 0x2000009,
            "Vlan id can not be non zero if port type is untagged");
    refused(config, member_, 0x1000, 63, 2, 0x2000009, "Invalid VLAN ID 0x1000");
    refused(all, member_, 0, 63, 1, 0x2000003,
            "Invalid Uasge: Interface handle is a part of Aggregated link " + hex(member_));
    refused(all, &access, 0, 63, 1, 0x2000022, mode + "SWITCH_ACCESS");
    refused(all, aggregate.handle(), 0, 63, 1, 0x2000022, mode + "STATIC");
    refused(egress, routed_, 0, 63, 1, 0x2000022, mode + "HIGHER_LAYER");
    refused(all, &subif, 0, 63, 1, 0x200001e, "Incompatible Interface type INTERFACE_TYPE_VLAN");
    EXPECT_EQ(host().image(), before);
}

TEST_F(VlanMembership, WhatStandsBeforeAFailureStays)
{
    const auto after = [&] { return printed(": %u, %d", entry(port_, 0).id, port_->bg_ref_count[5]); };
    const auto bound = [&](u32 id, i16 count) { entry(port_, 0).id = id, port_->bg_ref_count[5] = count; };
    const string no_mac = "32522 ovk_sys_mac_channel_id_get failed for port 17";
    EXPECT_EQ(
        faults_of([&] { return add(port_, 0, 5); }, [&] { bound(0, 0); }, after),
        "32522 Could not build the input pattern: 0, 0|64 RTE, Failed to learn the input pattern: 0, 0|"
        "139 HSW Ingress VLAN VPS Get failed. RTE : 5, 0|141 HSW Ingress VLAN VPS Set failed. RTE : 5, 0|" +
            no_mac +
            ": 5, 1|139 GATR HSW Ingress VLAN Set failed. RTE : 5, 1|"
            "141 GATR HSW CVLAN to SVLAN Map failed. RTE : 5, 1|" +
            no_mac +
            ": 5, 1|145 RTE, Failed to get parsing options for port 17: 5, 1|"
            "138 RTE, Failed to Set default vlan id: 5, 1|"
            "146 RTE, Failed to set parsing options for port 17: 5, 1|");
    EXPECT_EQ(
        faults_of([&] { return del(port_, 0, 5); }, [&] { bound(5, 1); }, after),
        "32522 Could not build the input pattern: 5, 1|65 RTE, Failed to unlearn the input pattern: 5, 1|" +
            no_mac + ": 0, 1|142 GATR HSW CVLAN to SVLAN Map removal failed. RTE : 0, 1|" + no_mac +
            ": 0, 1|145 RTE, Failed to get parsing options for port 17: 0, 1|"
            "146 RTE, Failed to set parsing options for port 17: 0, 1|");
}

} // namespace
