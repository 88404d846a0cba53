// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <functional>

#include "kor_gatr_switch.h"
#include "ovk_eth_hw/vlan_membership.h"

namespace {

using handle = ovk_ethernet_if_handle;
using test::changes;
using test::HandMadeAggregate;
using test::hex;
using test::Lines;
using test::printed;
using test::operator+;

constexpr u32 trunk = OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK, routed = OVK_ETHERNET_FWD_MODE_HIGHER_LAYER;

class VlanMembership : public test::ModuleTest {
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
    std::string in(u32 hsw_if_id, u32 vlan) { return found("Validate_VLAN_ID", hsw_if_id, vlan); }
    std::string out(u32 if_id, u32 bg) { return found("OUT_VLAN_Look_up", if_id, bg); }
    std::string found(const char *tree, u32 port, u32 number)
    {
        const sim::Answer answer = sim::lookup(host().rte(), tree, {{port, 8}, {number, 12}});
        return sim::action_text(host().rte(), answer.action);
    }

    const handle port_ = test::make_port(module(), 0x11, trunk); // 6 in the switch
    const handle member_ = test::make_port(module(), 0x12, trunk);
    const handle routed_ = test::make_port(module(), 0x13, routed);
};

TEST_F(VlanMembership, PortGetsRuleEntryAndRegistersAndOnceForEachGroupItsSet)
{
    const auto parsing = [](u8 discard) {
        return "parsing_options = " + test::numbered(16, {{3, 1}, {4, 1}, {12, discard}}) + ' ';
    };
    const struct {
        u32 op, vlan, bg, policy; // the last stands above bit 18 of the ingress flags
        std::string changes;
        u32 encoded_if;
        int count; // of the group's bindings
    } steps[] = {
        {1, 0x64, 5, 0,
         "+ cvlan[0x64] = 0x5 + vlan[0x5] = 0x0 + rule 0x06064/20 -> data 0x5 0xabcd + vlan_vps[0x5] = "
         "0x40 ",
         0x505abcd, 1},
        {1, 0xfff, 5, 3, "+ cvlan[0xfff] = 0x5 + rule 0x06fff/20 -> data 0x5 0x83abcd ", 0x705abcd, 2},
        {1, 0, 63, 0x22, // a policy, and a bit above it
         "- " + parsing(1) + "+ cvlan[0x0] = 0x3f + default_vlan = 0x3f + " + parsing(0) +
             "+ vlan[0x3f] = 0x0 + rule 0x06000/20 -> data 0x3f 0xa2abcd + vlan_vps[0x3f] = 0x40 ",
         0x705abcd, 1},
        {1, 0x64, 5, 0, "", 0x505abcd, 3}, // again, and it counts
        // The port stays in the group and in its set; to which group the VLAN was bound isn't asked.
        {2, 0x64, 5, 3, "- cvlan[0x64] = 0x5 - rule 0x06064/20 -> data 0x5 0xabcd ", 0, 2},
        {2, 0xfff, 7, 0, "- cvlan[0xfff] = 0x5 - rule 0x06fff/20 -> data 0x5 0x83abcd ", 0, -1},
        {2, 0, 63, 0,
         "- cvlan[0x0] = 0x3f - " + parsing(0) + "- rule 0x06000/20 -> data 0x3f 0xa2abcd + " + parsing(1),
         0, 0},
        {1, 1, 7, 0, "+ cvlan[0x1] = 0x7 + vlan[0x7] = 0x0 + rule 0x06001/20 -> data 0x7 0xabcd ",
         0x505abcd, 0},
        {2, 9, 8, 0, "", 0, -1}, // there was none
    };
    for (const auto &at : steps) {
        const auto call = [&] {
            return at.op == 1 ? add(port_, at.vlan, at.bg) : del(port_, at.vlan, at.bg);
        };
        port_->inif_flags = (port_->inif_flags & 0x7ffff) | at.policy << 19;
        EXPECT_EQ(changes(host(), call), at.changes);
        EXPECT_EQ(entry(port_, at.vlan).encoded_if, at.encoded_if) << at.changes;
        EXPECT_EQ(entry(port_, at.vlan).id, at.op == 1 ? at.bg : 0) << at.changes;
        EXPECT_EQ(port_->bg_ref_count[at.bg], at.count) << at.changes;
    }
    port_->bg_ref_count[5] = INT16_MIN;
    EXPECT_EQ(in(6, 1), "data 0x7 0xabcd");
    EXPECT_EQ(del(port_, 1, 5), 0u);
    EXPECT_EQ(in(6, 1), "function ovk_ethernet.Invalid_VLAN_tag");
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
    const auto told = [](const ovk_eth_aggr_vlan_entry &at) {
        return printed("%u of 0x%x, kind %u", at.id, at.stats_ns_id, at.kind);
    };
    aggr->stats_ns_id = empty.handle()->stats_ns_id = 0x61234;
    sim::journal_on(true);
    EXPECT_EQ(add(routed_, 0, 4), 0u);
    EXPECT_EQ(sim::journal::writes(), rule + set + registers);
    sim::journal::clear();
    EXPECT_EQ(add(aggr, 0, 5), 0u);
    EXPECT_EQ(sim::journal::writes(), registers + rule + set + registers + rule);
    EXPECT_EQ(sim::vlan_vps(host().rte(), 5), 0x40u); // the first member alone
    EXPECT_EQ(aggr->bg_ref_count[5], 2);
    EXPECT_EQ(told(aggregate.vlan(0)), "5 of 0x61234, kind 2");
    for (const handle member : {port_, member_}) {
        EXPECT_EQ(in(member->hsw_if_id, 0), "data 0x5 0x1234");
        EXPECT_EQ(entry(member, 0).id, 5u);
        EXPECT_EQ(entry(member, 0).encoded_if, 0x5061234u);
        EXPECT_EQ(member->bg_ref_count[5], 0);
    }
    sim::faults::fail("kor_ptn_unlearn", 2);
    EXPECT_EQ(del(aggr, 0, 5), 65u);
    EXPECT_EQ(aggr->bg_ref_count[5], 1);
    EXPECT_EQ(entry(port_, 0).encoded_if, 0u);
    EXPECT_EQ(entry(member_, 0).id, 5u);
    EXPECT_EQ(told(aggregate.vlan(0)), "5 of 0x61234, kind 2");
    EXPECT_EQ(add(aggr, 7, 6), 0u);
    sim::journal::clear();
    EXPECT_EQ(del(aggr, 7, 6), 0u);
    EXPECT_EQ(sim::journal::writes(), gone + gone);
    EXPECT_EQ(aggr->bg_ref_count[6], 0);
    EXPECT_EQ(told(aggregate.vlan(7)), "0 of 0x0, kind 0");
    // Without members there is the entry alone, for those that join.
    EXPECT_EQ(changes(host(), [&] { return add(empty.handle(), 9, 3); }), "");
    EXPECT_EQ(told(empty.vlan(9)), "3 of 0x61234, kind 2");
    EXPECT_EQ(changes(host(), [&] { return del(empty.handle(), 9, 3); }), "");
    EXPECT_EQ(told(empty.vlan(9)), "0 of 0x0, kind 0");
}

TEST_F(VlanMembership, EgressRuleOfGroupZeroIsThePortsCatchAll)
{
    HandMadeAggregate aggregate(module(), 0, trunk, {member_});
    const std::string none = "function ovk_ethernet.Invalid_VLAN_id";
    const struct {
        handle intf;
        u32 bg, tag, vlan;
        u8 rewrite;
        const char *rule;
    } cases[] = {{port_, 63, 2, 4095, 1, "+ rule 0x1103f/20 -> data 0x3fff 0x0 "},
                 {port_, 7, 1, 0, 0, "+ rule 0x11007/20 -> data 0x0 0x0 "},
                 {aggregate.handle(), 7, 1, 0, 1, "+ rule 0x80007/20 -> data 0x2000 0x0 "},
                 {port_, 0, 2, 9, 0, "+ rule 0x11/8 -> data 0x1009 0x0 "}};
    EXPECT_EQ(out(0x11, 8), none);
    for (const auto &at : cases)
        EXPECT_EQ(changes(host(), [&] { return leave(at.intf, at.bg, at.tag, at.vlan, at.rewrite); }),
                  at.rule);
    EXPECT_EQ(out(0x11, 7), "data 0x0 0x0");
    EXPECT_EQ(out(0x11, 8), "data 0x1009 0x0");
    EXPECT_EQ(stay(port_, 7), 0u);
    EXPECT_EQ(out(0x11, 7), none); // the catch-all doesn't come back there
    EXPECT_EQ(stay(port_, 0), 0u);
    EXPECT_EQ(out(0x11, 8), none);
    EXPECT_EQ(out(0x11, 63), "data 0x3fff 0x0");
}

TEST_F(VlanMembership, SetOfVirtualPortsKeepsItsArithmetic)
{
    constexpr u64 all = ~u64{0}, high = all << 32;
    const struct {
        u64 before;
        u32 op, port;
        u8 fixed;
        u64 after;
    } cases[] = {
        {0, 1, 0, 0, 1},
        {high | 0x100, 1, 30, 0, high | 0x40000100},
        {0x100, 1, 32, 0, 0x100},
        {0, 1, 31, 0, high | 0x80000000}, // with its sign
        {all, 1, 3, 1, 0x400000},
        {0x100, 1, 0x103, 0, 0x108}, // the low byte counts
        {all, 2, 31, 0, 0x7fffffff},
        {all, 2, 30, 0, all - 0x40000000},
        {all, 3, 32, 0, all},
        {all, 2, 3, 1, all - 0x400000},
    };
    for (const auto &at : cases) {
        const u32 low = static_cast<u32>(at.before), top = static_cast<u32>(at.before >> 32);
        EXPECT_EQ(kor_gatr_switch_bridge_vlan_vps_set(host().rte(), 9, low, top), 0u);
        EXPECT_EQ(ovk_eth_hsw_vlan_filter(module(), at.op, at.port, 9, at.fixed), 0u);
        EXPECT_EQ(sim::vlan_vps(host().rte(), 9), at.after) << at.op << ' ' << at.port;
    }
}

TEST_F(VlanMembership, RefusesTheFirstWrongArgumentInItsOrder)
{
    HandMadeAggregate aggregate(module(), 0, OVK_ETHERNET_FWD_MODE_STATIC, {member_});
    ovk_eth_intf subif = *port_, access = *port_;
    subif.if_type = INTERFACE_TYPE_VLAN;
    access.phy.attrs.fwd_mode = member_->phy.attrs.fwd_mode = OVK_ETHERNET_FWD_MODE_SWITCH_ACCESS;
    const std::string mode = "Incompatible Intf forwarding mode OVK_ETHERNET_FWD_MODE_";
    const std::string member =
        "Invalid Uasge: Interface handle is a part of Aggregated link " + hex(member_);
    constexpr u32 ingress = 3, config = 4, egress = 12, all = 15;
    const struct {
        u32 calls; // for which it is so
        handle intf;
        u32 vlan, bg, tag, status;
        std::string message;
    } cases[] = {
        {all, nullptr, 0x1000, 4095, 3, 0x2000003, "Invalid Interface handle 0x00000000"},
        {ingress, member_, 0x1000, 4095, 0, 0x2000009, "Invalid VLAN ID 0x1000"},
        {ingress, member_, 4095, 4095, 0, 0x200000a, "BG_ID  0x0fff is reserved as OVK_ETH_ROUTER_VLAN_ID"},
        {egress, member_, 0, 4095, 3, 0x200000a, "Invalid BG_ID 0x0fff"},
        {all, member_, 0, 64, 3, 0x200000a, "Invalid BG_ID 0x0040"},
        {config, member_, 0x1000, 63, 3, 0x200000b, "Invalid port tag type 0x0003"},
        {config, member_, 0x1000, 63, 0, 0x200000b, "Invalid port tag type 0x0000"},
        {config, member_, 4096, 63, 1, 0x2000009, "Vlan id can not be non zero if port type is untagged"},
        {config, member_, 0x1000, 63, 2, 0x2000009, "Invalid VLAN ID 0x1000"},
        {all, member_, 0, 63, 1, 0x2000003, member},
        {all, &access, 0, 63, 1, 0x2000022, mode + "SWITCH_ACCESS"},
        {all, aggregate.handle(), 0, 63, 1, 0x2000022, mode + "STATIC"},
        {egress, routed_, 0, 63, 1, 0x2000022, mode + "HIGHER_LAYER"},
        {all, &subif, 0, 63, 1, 0x200001e, "Incompatible Interface type INTERFACE_TYPE_VLAN"},
    };
    module()->log_mask = 3;
    const std::string before = host().image();
    for (const auto &at : cases) {
        const std::string on = " for Interface " + hex(at.intf);
        const std::string vlan = printed("0x%04x", at.vlan), bg = printed("0x%04x", at.bg);
        const std::pair<std::string, std::function<u32()>> calls[] = {
            {"|Failed to add BG_ID " + (bg + on) + " and VLAN " + vlan,
             [&] { return add(at.intf, at.vlan, at.bg); }},
            {"|Failed to remove VLAN ID " + (vlan + on), [&] { return del(at.intf, at.vlan, at.bg); }},
            {"|Failed to add VLAN " + (vlan + on) + " and BG_ID " + bg,
             [&] { return leave(at.intf, at.bg, at.tag, at.vlan); }},
            {"|Failed to remove VLAN config" + on + " and BGID " + bg,
             [&] { return stay(at.intf, at.bg); }}};
        for (u32 bit = at.calls, call = 0; bit != 0; bit >>= 1, call++)
            if ((bit & 1) != 0)
                test::expect_failure(calls[call].second, at.status, at.message + calls[call].first);
    }
    EXPECT_EQ(sim::image_diff(before, host().image()), Lines{});
    EXPECT_EQ(
        test::messages_of([&] { ovk_ethernet_port_egress_vlan_config(nullptr, nullptr, 1, 1, 9, 0); }),
        test::no_module("Failed to add VLAN ID 0x0009 for Interface 0x00000000"));
}

TEST_F(VlanMembership, WhatStandsBeforeAFailureStays)
{
    const std::string no = "RTE Error: injected fault, Failed to ",
                      tail = " failed. RTE Error: injected fault ";
    const std::string channel = "ovk_sys_mac_channel_id_get", vps = "kor_gatr_switch_bridge_vlan_vps_";
    const std::string ingress = "kor_gatr_port_ingress_", parsing = ingress + "parsing_options_";
    const std::string tree = "|Failed to update LPM Tree";
    const struct {
        u32 op;
        std::string fault;
        u32 nth, status;
        std::string message;
        bool entry; // afterwards
        int count;
    } cases[] = {
        {1, "ovk_ptn_extend", 2, 0x7f0a, "Could not build the input pattern", false, 0},
        {1, "kor_ptn_learn", 1, 64, no + "learn the input pattern" + tree, false, 0},
        {1, vps + "get", 1, 139, "HSW Ingress VLAN VPS Get" + tail, true, 0},
        {1, vps + "set", 1, 141, "HSW Ingress VLAN VPS Set" + tail, true, 0},
        {1, channel, 1, 0x7f0a, channel + " failed for port 17", true, 1},
        {1, ingress + "vlan_set", 1, 139, "GATR HSW Ingress VLAN Set" + tail, true, 1},
        {1, ingress + "qinq_cvlan_map_set", 1, 141, "GATR HSW CVLAN to SVLAN Map" + tail, true, 1},
        {1, parsing + "get", 1, 145, no + "get parsing options for port 17", true, 1},
        {1, "kor_gatr_port_default_vlan_set", 1, 138, no + "Set default vlan id", true, 1},
        {1, parsing + "set", 1, 146, no + "set parsing options for port 17", true, 1},
        {2, "kor_ptn_unlearn", 1, 65, no + "unlearn the input pattern" + tree, true, 1},
        {2, ingress + "qinq_cvlan_map_rem", 1, 142, "GATR HSW CVLAN to SVLAN Map removal" + tail, false, 1},
        {2, channel, 2, 0x7f0a, channel + " failed for port 17", false, 1},
        {2, parsing + "set", 1, 146, no + "set parsing options for port 17", false, 1},
    };
    for (u32 bg = 0; const auto &at : cases) {
        SCOPED_TRACE(testing::Message() << at.op << " with " << at.fault);
        bg++;
        entry(port_, 0) = {};
        EXPECT_EQ(at.op == 2 ? add(port_, 0, bg) : 0, 0u);
        const std::string before = in(6, 0), port = hex(port_);
        module()->log_mask = 3;
        sim::faults::fail(at.fault, at.nth);
        if (at.op == 1)
            test::expect_failure([&] { return add(port_, 0, bg); }, at.status,
                                 at.message +
                                     printed("|Failed to add BG_ID 0x%04x for Interface %s and VLAN 0x0000",
                                             bg, port.c_str()));
        else
            test::expect_failure([&] { return del(port_, 0, bg); }, at.status,
                                 at.message + "|Failed to remove VLAN ID 0x0000 for Interface " + port);
        module()->log_mask = 0;
        EXPECT_EQ(entry(port_, 0).id, at.entry ? bg : 0);
        EXPECT_EQ(in(6, 0) != before, at.entry == (at.op == 1));
        EXPECT_EQ(port_->bg_ref_count[bg], at.count);
    }
}

} // namespace
