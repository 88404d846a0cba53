// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <functional>

#include "ovk_eth_hw/port_setup.h"
#include "ovk_eth_hw/switch_port.h"

namespace {

using test::hex;
using test::Lines;
using test::numbered;

class SwitchPort : public test::ModuleTest {
  protected:
    std::function<u32(u32)> attr(u8 hsw_mode, u8 bridging)
    {
        return [=, this](u32 port) {
            return ovk_eth_set_gatr_port_hsw_attr(module(), port, hsw_mode, bridging);
        };
    }
    std::function<u32(u32)> learning(u32 on)
    {
        return [=, this](u32 port) { return ovk_eth_hsw_port_learning_options_set(module(), port, on); };
    }
    std::function<u32(u32)> router(u32 op)
    {
        return [=, this](u32 port) { return ovk_eth_router_vlan_id(module(), port, op); };
    }
    std::function<u32(u32)> routed(u32 op, u32 vlan)
    {
        return [=, this](u32 port) { return ovk_eth_hsw_routed_vlan(module(), op, port, vlan); };
    }
    const std::function<u32(u32)> learn = [this](u32 port) {
        return ovk_eth_hsw_port_learning_set(module(), port, 1);
    };
    const std::function<u32(u32)> age = [this](u32 port) {
        return ovk_eth_hsw_port_mac_aging_timer_value_set(module(), port, 3);
    };
    const std::function<u32(u32)> flood = [this](u32 port) {
        return ovk_eth_hsw_port_flooding_option_set(module(), port, 2);
    };
    const std::function<u32(u32)> mode = [this](u32 port) {
        return ovk_eth_set_gatr_port_hsw_mode(module(), port, 5);
    };
    const std::function<u32(u32)> reach = [this](u32 port) {
        return ovk_eth_set_gatr_hsw_bridging_dest_vps(module(), 1, 6, port);
    };
    const std::function<u32(u32)> pipelines = [this](u32 port) {
        return ovk_eth_set_gatr_port_vp(module(), port, "ethernet_hsw_flood", nullptr);
    };
    u32 set_age(ovk_eth_intf *intf, u32 minutes)
    {
        return ovk_ethernet_mac_aging_timer_config(module(), intf, minutes);
    }
};

TEST_F(SwitchPort, WriterChangesItsFieldsAndKeepsWhatItReads)
{
    const auto fresh = [](const char *of_mode, const char *bridging) { // written whole
        return std::string("ingress_options = ") + of_mode + "010000" + bridging + std::string(30, '0') +
               "01010000 ";
    };
    const auto parsing = [](u8 discard) {
        return "parsing_options = " + numbered(16, {{3, 1}, {4, 1}, {12, discard}}) + ' ';
    };
    const auto bridge = [](u8 byte_11, u8 flooding, u8 max_age) {
        return "bridge_attrs = " +
               numbered(24, {{11, byte_11}, {16, flooding}, {20, max_age}, {21, 0}, {22, 0}, {23, 0}}) +
               ' ';
    };
    const auto learn_attrs = [](u8 on, u8 byte_8) {
        return "learn_attrs = " + numbered(10, {{5, on}, {6, on}, {7, on}, {8, byte_8}, {9, on}}) + ' ';
    };
    const std::string acl =
        numbered(
            100,
            {{56, 1}, {57, 0}, {58, 0}, {59, 0}, {60, 1}, {61, 0}, {62, 0}, {63, 0}, {98, 3}, {99, 0}}) +
        ' ';
    const std::string in_switch = "+ " + parsing(1) + "+ acl = " + acl + "+ acl_in_force = " + acl;
    const struct {
        std::function<u32(u32)> before, call; // each row on a port of its own
        std::string changes;
    } cases[] = {
        {nullptr, attr(1, 1), "+ " + fresh("01", "01") + in_switch + "+ unknown_multicast = 0xc9 "},
        {nullptr, attr(7, 0), "+ " + fresh("07", "00") + in_switch + "+ unknown_multicast = 0xc9 "},
        {attr(1, 1), attr(0, 0),
         "- " + fresh("01", "01") + "- unknown_multicast = 0xc9 + " + fresh("00", "00")},
        {nullptr, learning(1), "+ " + bridge(1, 0, 62) + "+ learn = 0x1 + " + learn_attrs(1, 0)},
        {learn, learning(0), "- learn = 0x1 + " + bridge(1, 0, 62) + "+ " + learn_attrs(1, 0)},
        {nullptr, learn, "+ learn = 0x1 "},
        {nullptr, age, "+ " + bridge(0, 0, 36)},
        {nullptr, flood, "+ " + bridge(0, 2, 60)},
        {nullptr, mode,
         "+ ingress_options = " + numbered(24, {{0, 5}, {1, 0}, {4, 0}, {20, 0}, {21, 0}}) + ' '},
        {nullptr, router(1), "+ vlan[0xfff] = 0x1 "},
        {router(1), router(1), ""}, // there already
        {router(1), router(2), "- vlan[0xfff] = 0x1 + " + fresh("00", "00")},
        {nullptr, routed(1, 7), "+ cvlan[0x7] = 0xfff + vlan[0xfff] = 0x1 "},
        {attr(1, 0), routed(1, 0),
         "- " + parsing(1) + "+ cvlan[0x0] = 0xfff + default_vlan = 0xfff + " + parsing(0) +
             "+ vlan[0xfff] = 0x1 "},
        {routed(1, 9), routed(2, 9), "- cvlan[0x9] = 0xfff "},
        {[&](u32 port) { return attr(1, 0)(port) + routed(1, 0)(port); }, routed(2, 0),
         "- cvlan[0x0] = 0xfff - " + parsing(0) + "+ " + parsing(1)},
        {[&](u32) {
             return ovk_ethernet_pcp_to_task_pri_map(module(), reinterpret_cast<const u8 *>("12345678"));
         },
         pipelines,
         "+ tagged_pipeline = \"ethernet_hsw_flood\" 313233343536373831000000 "
         "+ untagged_pipeline = \"ethernet_hsw_flood\" 000000000000000031000000 "},
    };
    const u32 ports[] = {0,    1,    2,    3,    4,    0x10, 0x11, 0x12, 0x13,
                         0x14, 0x20, 0x21, 0x30, 0x31, 0x40, 0x41, 0x50};
    static_assert(std::size(ports) == std::size(cases));
    for (u32 row = 0; row < std::size(cases); row++) {
        EXPECT_EQ(cases[row].before != nullptr ? cases[row].before(ports[row]) : 0, 0u) << row;
        EXPECT_EQ(test::changes(host(), [&] { return cases[row].call(ports[row]); }), cases[row].changes)
            << row;
    }
}

TEST_F(SwitchPort, DestinationIndexReachesItsVirtualPortAndThePortAllOthers)
{
    const struct {
        u8 vp, index;
        u64 set;
    } cases[] = {
        {0, 1, 1},   {31, 32, 1ull << 31}, {32, 33, 1ull << 32}, {33, 34, 1ull << 33}, {63, 64, 1ull << 63},
        {64, 65, 0}, {255, 0, 0}};
    for (const auto &at : cases) {
        for (const u32 op : {1u, 2u, 7u}) {
            EXPECT_EQ(ovk_eth_set_gatr_hsw_bridging_dest_vps(module(), op, at.vp, 0x11), 0u);
            EXPECT_EQ(sim::destination_vps(host().rte(), at.index), op == 1 ? at.set | 0x400000 : 0)
                << +at.vp;
            EXPECT_EQ(sim::switch_port(host().rte(), KOR_GMAC17).source_vps, op == 1 ? at.set : 0)
                << +at.vp;
        }
    }
}

TEST_F(SwitchPort, WriterStopsAtItsFirstFailure)
{
    const std::string gatr = "kor_gatr_", port = gatr + "port_", ingress = port + "ingress_";
    const std::string bridge = gatr + "switch_bridge_", acl = gatr + "switch_acl_",
                      attrs = bridge + "port_attrs_";
    const std::string learns = bridge + "port_learn_attrs_", map = "qinq_cvlan_map_";
    const std::string rte = "RTE Error: injected fault, ", no = rte + "Failed to ",
                      tail = ". RTE Error: injected fault ";
    const std::string no_vlan = "GATR HSW Ingress VLAN Set failed" + tail;
    const struct {
        std::function<u32(u32)> call;
        std::string fault;
        u32 status;
        std::string message;
    } cases[] = {
        {learning(1), learns + "get", 134, no + "get GATR HSW Learning Attributes"},
        {learning(1), learns + "set", 135, no + "configure GATR HSW Learning Attributes"},
        {learning(1), attrs + "get", 136, rte + attrs + "get() Failed"},
        {learning(1), attrs + "set", 137, rte + attrs + "set() Failed"},
        {learn, learns + "get", 134, no + "get GATR HSW Learning Attributes"},
        {learn, learns + "set", 135, no + "configure GATR HSW Learning Attributes"},
        {age, attrs + "get", 136, rte + attrs + "get() Failed"},
        {age, attrs + "set", 137, rte + attrs + "set() Failed"},
        {flood, attrs + "get", 136, no + "Get GATR HSW Bridging Attributes"},
        {flood, attrs + "set", 137, no + "Set GATR HSW Bridging Attributes"},
        {mode, ingress + "options_get", 143, no + "Get ingress options"},
        {mode, ingress + "options_set", 144, no + "set ingress options"},
        {attr(1, 1), ingress + "options_set", 144, no + "set ingress options"},
        {attr(1, 1), ingress + "parsing_options_get", 145, no + "get parsing options for port 17"},
        {attr(1, 1), ingress + "parsing_options_set", 146, no + "set parsing options for port 17"},
        {attr(0, 0), bridge + "unknown_multicast_set", 148, bridge + "unknown_multicast_set failed" + tail},
        {attr(1, 1), acl + "port_cfg_get", 149, no + "get ACL options for port 17"},
        {attr(1, 1), acl + "port_cfg_set", 150, no + "set ACL options for port 17"},
        {attr(1, 1), acl + "build", 151, no + "get ACL options for port 17"},
        {router(1), ingress + "vlan_set", 139, no_vlan},
        {router(2), ingress + "options_set", 144, no + "set ingress options"},
        {router(2), ingress + "vlan_rem", 140, "GATR HSW Ingress VLAN Remove failed" + tail},
        {reach, bridge + "destination_vps_set", 152, no + "add entry to destination VP table"},
        {reach, bridge + "source_port_vps_set", 149, no + "source port map rule in HSW"},
        {pipelines, port + "vp_set", 94, no + "configure Virtual Pipeline ethernet_hsw_flood"},
        {routed(1, 0), ingress + "vlan_set", 139, no_vlan},
        {routed(1, 0), ingress + map + "set", 141, "GATR HSW CVLAN to SVLAN Map failed" + tail},
        {routed(1, 0), ingress + "parsing_options_get", 145, no + "get parsing options for port 17"},
        {routed(1, 0), ingress + "parsing_options_set", 146, no + "set parsing options for port 17"},
        {routed(1, 0), port + "default_vlan_set", 138, no + "Set default vlan id"},
        {routed(2, 0), ingress + map + "rem", 142, "GATR HSW CVLAN to SVLAN Map removal failed" + tail},
        {routed(2, 0), ingress + "parsing_options_get", 145, no + "get parsing options for port 17"},
        {routed(2, 0), ingress + "parsing_options_set", 146, no + "set parsing options for port 17"},
    };
    module()->log_mask = 3;
    sim::journal_on(true);
    for (const auto &at : cases) {
        SCOPED_TRACE(at.fault);
        sim::journal::clear();
        sim::faults::fail(at.fault);
        EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(at.call(0x11), at.status); }),
                  test::failure(at.message, at.status));
        EXPECT_EQ(sim::journal::ops(gatr).back(), at.fault);
        sim::faults::clear();
        sim::journal::clear();
        EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(at.call(0x15), 0x1001u); }), // which has no MAC
                  test::failure("ovk_sys_mac_channel_id_get failed for port 21", 0x1001));
        EXPECT_EQ(sim::journal::ops(gatr), Lines{});
    }
}

TEST_F(SwitchPort, AgingGoesToTheSwitchInStepsAndToTheClassifierInSeconds)
{
    ovk_eth_intf *port = test::make_port(module(), 0x11, 2), *second = test::make_port(module(), 0x12, 2);
    test::HandMadeAggregate aggregate(module(), 0, 2, {port, second});
    ovk_eth_intf subif = *port;
    subif.if_type = INTERFACE_TYPE_VLAN;
    subif.if_id = 0x6421;
    const auto in_switch = [&](u32 channel) {
        return sim::switch_port(host().rte(), channel).bridge_attrs.max_age;
    };
    const auto in_rule = [&](u32 number) {
        const kor_ptn_action action = sim::lookup(host().rte(), "MAC_aging_timer", {{number, 8}}).action;
        return sim::action_text(host().rte(), action);
    };
    const struct {
        u32 minutes, steps;
        const char *rule;
    } cases[] = {{1, 12, "data 0x3c 0x80"}, {4, 48, "data 0xf0 0x80"},   {5, 62, "data 0x12c 0x80"},
                 {2, 24, "data 0x78 0x80"}, {61, 62, "data 0xe4c 0x80"}, {3, 36, "data 0xb4 0x80"}};
    EXPECT_EQ(in_rule(0x21), "data 0x12c 0x0");
    for (const auto &at : cases) {
        EXPECT_EQ(set_age(port, at.minutes), 0u);
        EXPECT_EQ(in_switch(KOR_GMAC17), at.steps);
        EXPECT_EQ(in_rule(0x11), at.rule);
    }
    EXPECT_EQ(set_age(aggregate.handle(), 4), 0u);
    EXPECT_EQ(in_switch(KOR_GMAC17), 48u);
    EXPECT_EQ(in_switch(KOR_GMAC18), 48u);
    EXPECT_EQ(in_rule(0x80), "data 0xf0 0x80");
    EXPECT_EQ(in_rule(0x11), "data 0xb4 0x80"); // of its own
    EXPECT_EQ(test::changes(host(), [&] { return set_age(&subif, 1); }),
              "+ rule 0x21/8 -> data 0x3c 0x80 ");

    const std::string range = "Mac aging timer should be greater than 0 and less than 62";
    const std::string operation = "|Failed to configure MAC aging timer ";
    const std::string before = host().image();
    module()->log_mask = 15;
    const auto refused = [&](ovk_eth_intf *intf, u32 minutes, u32 status, const std::string &causes) {
        EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(set_age(intf, minutes), status); }),
                  test::failures(causes + operation, status));
    };
    refused(nullptr, 0, 0x2000003, "Invalid Interface handle 0x00000000");
    refused(port, 0, 8, range);
    refused(&subif, 62, 8, range);
    EXPECT_EQ(sim::image_diff(before, host().image()), Lines{});
    sim::faults::fail("kor_gatr_switch_bridge_port_attrs_set", 2);
    refused(aggregate.handle(), 2, 137,
            "RTE Error: injected fault, kor_gatr_switch_bridge_port_attrs_set() Failed");
    EXPECT_EQ(in_switch(KOR_GMAC17), 24u);
    EXPECT_EQ(in_switch(KOR_GMAC18), 48u);
    EXPECT_EQ(in_rule(0x80), "data 0xf0 0x80");
    sim::faults::fail("kor_ptn_learn");
    refused(port, 1, 64,
            "RTE Error: injected fault, Failed to learn the input pattern|Failed to update LPM Tree");
    EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(set_age(port, 1), 0u); }),
              Lines{"[ovk_ethernet_log: info] Configured the MAC aging timer value on Interface handle " +
                    hex(port)});
    EXPECT_EQ(
        test::messages_of([&] { EXPECT_EQ(ovk_ethernet_mac_aging_timer_config(nullptr, port, 0), 1u); }),
        test::no_module("Failed to get the port for interface handle " + hex(port)));
}

TEST_F(SwitchPort, WritersSayWhatTheyConfigure)
{
    const std::string head = "[ovk_ethernet_log: hw] ";
    module()->log_mask = OVK_ETHERNET_LOG_HW;
    EXPECT_EQ(test::messages_of([&] {
                  EXPECT_EQ(learning(1)(1) + age(1) + flood(1) + attr(1, 1)(1) + router(1)(1), 0u);
                  EXPECT_EQ(pipelines(1) + routed(1, 5)(1) + routed(2, 5)(1), 0u);
              }),
              (Lines{head + "Configuring the GATR Port Learning Attrs",
                     head + "Configuring the GATR Port max age timer value",
                     head + "Configuring the GATR Port max age timer value",
                     head + "Configuring the GATR Port Flooding Option",
                     head + "Configuring ingress options for port 1",
                     head + "Configuring ingress options for port 1",
                     head + "Configuring the default virtual pipeline ethernet_hsw_flood",
                     head + "Configuring the Ingress VLAN for Port 1",
                     head + "Removing Ingress VLAN for Port 1"}));
}

} // namespace
