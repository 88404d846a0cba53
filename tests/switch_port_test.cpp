// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include "ovk_eth_hw/switch_port.h"

namespace {

using namespace test;
using std::string;

class SwitchPort : public ModuleTest {
  protected:
    using writer = std::function<u32(u32 port)>;
    template <class... Given, class... Args>
    writer with(u32 (*write)(ovk_module *, u32, Given...), Args... args)
    {
        return [=, this](u32 port) { return write(module(), port, static_cast<Given>(args)...); };
    }
    writer routed(u32 op, u32 vlan)
    {
        return [=, this](u32 port) { return ovk_eth_hsw_routed_vlan(module(), op, port, vlan); };
    }
    writer attr(u8 hsw_mode, u8 bridging)
    {
        return with(ovk_eth_set_gatr_port_hsw_attr, hsw_mode, bridging);
    }
    u32 set_age(ovk_eth_intf *intf, u32 minutes)
    {
        return ovk_ethernet_mac_aging_timer_config(module(), intf, minutes);
    }

    const writer learning_on = with(ovk_eth_hsw_port_learning_options_set, 1u);
    const writer learn = with(ovk_eth_hsw_port_learning_set, 1u);
    const writer age = with(ovk_eth_hsw_port_mac_aging_timer_value_set, 3u);
    const writer flood = with(ovk_eth_hsw_port_flooding_option_set, 2u);
    const writer mode = with(ovk_eth_set_gatr_port_hsw_mode, 5u);
    const writer enter = with(ovk_eth_router_vlan_id, 1u), quit = with(ovk_eth_router_vlan_id, 2u);
    const writer quit_after_enter = [this](u32 port) { return enter(port) + quit(port); };
    const writer reach = [this](u32 port) {
        return ovk_eth_set_gatr_hsw_bridging_dest_vps(module(), 1, 6, port);
    };
};

TEST_F(SwitchPort, WriterChangesItsFieldsAlone)
{
    const auto parsing = [](u8 discard) {
        return "parsing_options = " + numbered(16, {{3, 1}, {4, 1}, {12, discard}}) + ' ';
    };
    const auto check = [&](const writer &write, const string &expected) {
        EXPECT_EQ(changes(host(), [&] { return write(0x11); }), expected);
    };
    const string rest = string(30, '0') + "01010000 "; // written without a read
    EXPECT_EQ(attr(7, 0)(0x11), 0u);
    check(attr(0, 1), "- ingress_options = 0701000000" + rest +
                          "- unknown_multicast = 0xc9 + ingress_options = 0001000001" + rest);
    check(mode, "- ingress_options = 0001000001" + rest + "+ ingress_options = 0501000001" + rest);
    check(quit_after_enter,
          "- ingress_options = 0501000001" + rest + "+ ingress_options = 0001000000" + rest);
    check(learn, "+ learn = 0x1 ");
    check(age, "+ bridge_attrs = " + numbered(24, {{11, 0}, {16, 0}, {20, 36}, {21, 0}, {22, 0}, {23, 0}}) +
                   ' ');
    check(routed(1, 7), "+ cvlan[0x7] = 0xfff + vlan[0xfff] = 0x1 ");
    check(enter, ""); // there already
    check(routed(1, 0), "- " + parsing(1) + "+ cvlan[0x0] = 0xfff + default_vlan = 0xfff + " + parsing(0));
    check(routed(2, 7), "- cvlan[0x7] = 0xfff ");
    check(routed(2, 0), "- cvlan[0x0] = 0xfff - " + parsing(0) + "+ " + parsing(1));
}

TEST_F(SwitchPort, DestinationIndexReachesItsVirtualPortAndThePortAllOthers)
{
    const auto check = [&](u8 vp, u8 index, u64 set) {
        for (const u32 op : {1u, 2u, 7u}) {
            EXPECT_EQ(ovk_eth_set_gatr_hsw_bridging_dest_vps(module(), op, vp, 0x11), 0u);
            EXPECT_EQ(sim::destination_vps(host().rte(), index), op == 1 ? set | 0x400000 : 0) << +vp;
            EXPECT_EQ(sim::switch_port(host().rte(), KOR_GMAC17).source_vps, op == 1 ? set : 0) << +vp;
        }
    };
    check(0, 1, 1);
    check(31, 32, 1ull << 31);
    check(32, 33, 1ull << 32);
    check(33, 34, 1ull << 33);
    check(255, 0, 0);
}

TEST_F(SwitchPort, WriterSaysWhatItDoesAndStopsAtItsFirstFailure)
{
    const string port = " for port 17|", no_get = " RTE, Failed to get ", no_set = " RTE, Failed to set ";
    const string attrs = "136 RTE, kor_gatr_switch_bridge_port_attrs_get() Failed|"
                         "137 RTE, kor_gatr_switch_bridge_port_attrs_set() Failed|";
    const string learns = "134" + no_get +
                          "GATR HSW Learning Attributes|"
                          "135 RTE, Failed to configure GATR HSW Learning Attributes|";
    const string options = "144" + no_set + "ingress options|",
                 vlan = "139 GATR HSW Ingress VLAN Set failed. RTE |";
    const string parsing =
        "145" + no_get + "parsing options" + port + "146" + no_set + "parsing options" + port;
    const string aging = "Configuring the GATR Port max age timer value|",
                 ingress = "Configuring ingress options" + port;
    // What it says it does, and what when each of its steps fails.
    const auto check = [&](const writer &write, const string &hw, const string &failures) {
        const string said = told(OVK_ETHERNET_LOG_HW, [&] { return write(0x11); });
        EXPECT_EQ(std::regex_replace(said, std::regex("hw\\] (.*)\n"), "$1|"), hw);
        EXPECT_EQ(faults_of([&] { return write(0x11); }, [&] { (void)enter(0x11); }),
                  "32522 ovk_sys_mac_channel_id_get failed" + port + failures);
        const string before = host().image();
        expect([&] { return write(0x15); }, 0x1001,
               "ovk_sys_mac_channel_id_get failed for port 21"); // has no MAC
        EXPECT_EQ(host().image(), before);
    };
    check(learning_on, "Configuring the GATR Port Learning Attrs|" + aging, learns + attrs);
    check(learn, "", learns);
    check(age, aging, attrs);
    check(flood, "Configuring the GATR Port Flooding Option|",
          "136 RTE, Failed to Get GATR HSW Bridging Attributes|"
          "137 RTE, Failed to Set GATR HSW Bridging Attributes|");
    check(mode, "", "143 RTE, Failed to Get ingress options|" + options);
    check(attr(1, 1), ingress,
          options + parsing + "148 kor_gatr_switch_bridge_unknown_multicast_set failed. RTE |149" + no_get +
              "ACL options" + port + "150" + no_set + "ACL options" + port + "151" + no_get +
              "ACL options" + port);
    check(enter, ingress, vlan);
    check(quit, ingress, options + "140 GATR HSW Ingress VLAN Remove failed. RTE |");
    check(reach, "",
          "152 RTE, Failed to add entry to destination VP table|"
          "149 RTE, Failed to source port map rule in HSW|");
    check(routed(1, 0), "Configuring the Ingress VLAN for Port 17|",
          vlan + "141 GATR HSW CVLAN to SVLAN Map failed. RTE |" + parsing +
              "138 RTE, Failed to Set default vlan id|");
    check(routed(2, 0), "Removing Ingress VLAN for Port 17|",
          "142 GATR HSW CVLAN to SVLAN Map removal failed. RTE |" + parsing);
}

TEST_F(SwitchPort, AgingGoesToTheSwitchInStepsAndToTheClassifierInSeconds)
{
    ovk_eth_intf *port = make_port(module(), 0x11, 2), *second = make_port(module(), 0x12, 2);
    HandMadeAggregate aggregate(module(), 0, 2, {port, second});
    ovk_eth_intf subif = *port, *const aggr = aggregate.handle();
    subif.if_type = INTERFACE_TYPE_VLAN;
    subif.if_id = 0x6421;
    // What the switch has for both ports, and the rule of an interface.
    const auto aged = [&](u32 number) {
        const auto steps = [&](u32 channel) {
            return sim::switch_port(host().rte(), channel).bridge_attrs.max_age;
        };
        return printed("%u %u ", steps(KOR_GMAC17), steps(KOR_GMAC18)) +
               answer("MAC_aging_timer", {{number, 8}});
    };
    const auto check = [&](u32 minutes, u32 steps, u32 seconds) {
        EXPECT_EQ(set_age(port, minutes), 0u);
        EXPECT_EQ(aged(0x11), printed("%u 62 data 0x%x 0x80", steps, seconds));
    };
    EXPECT_EQ(aged(0x11), "62 62 data 0x12c 0x0");
    check(1, 12, 60);
    check(4, 48, 240);
    check(5, 62, 300);
    check(3, 36, 180);
    check(61, 62, 3660);
    check(2, 24, 120);
    EXPECT_EQ(set_age(aggr, 4), 0u);
    EXPECT_EQ(aged(0x80), "48 48 data 0xf0 0x80");
    EXPECT_EQ(aged(0x11), "48 48 data 0x78 0x80"); // the port's own rule stays
    EXPECT_EQ(changes(host(), [&] { return set_age(&subif, 1); }), "+ rule 0x21/8 -> data 0x3c 0x80 ");

    const string range = "Mac aging timer should be greater than 0 and less than 62",
                 before = host().image();
    const string operation = "|Failed to configure MAC aging timer ", rte = "RTE Error: injected fault, ";
    expect([&] { return set_age(nullptr, 0); }, 0x2000003,
           "Invalid Interface handle 0x00000000" + operation);
    expect([&] { return set_age(port, 0); }, 8, range + operation);
    expect([&] { return set_age(&subif, 62); }, 8, range + operation);
    EXPECT_EQ(host().image(), before);
    sim::faults::fail("kor_gatr_switch_bridge_port_attrs_set", 2);
    expect([&] { return set_age(aggr, 2); }, 137,
           rte + "kor_gatr_switch_bridge_port_attrs_set() Failed" + operation);
    EXPECT_EQ(aged(0x80), "24 48 data 0xf0 0x80");
    sim::faults::fail("kor_ptn_learn");
    expect([&] { return set_age(&subif, 1); }, 64,
           rte + "Failed to learn the input pattern|Failed to update LPM Tree" + operation);
    EXPECT_EQ(told(15, [&] { return set_age(port, 1); }),
              "info] Configured the MAC aging timer value on Interface handle " + hex(port) + '\n');
}

} // namespace
