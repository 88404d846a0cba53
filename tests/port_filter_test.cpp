// SPDX-License-Identifier: Apache-2.0
#include "support.h"

namespace {

using namespace test;

constexpr u32 access_mode = 1, trunk = 2, tunnel = 3, routed = 4, static_mode = 5;
constexpr u8 second_mac[6] = {0x00, 0x1b, 0x19, 0xa0, 0xb1, 0xc2};
constexpr u8 own_mac[6] = {0x02};
constexpr u8 group_mac[6] = {0x01, 0x1b, 0x19, 0x00, 0x00, 0x00};

class PortFilter : public ModuleTest {
  protected:
    handle make(u32 number, u32 mode) { return make_port(module(), number, mode); }
    sim::Port port(u32 number) { return sim::port(host().rte(), *sim::channel_of(number)); }

    u32 promiscuous(handle of, u32 mode) { return ovk_ethernet_promiscuous_mode(module(), of, mode); }
    u32 filter(handle of, u32 in, u32 out) { return ovk_ethernet_flow_filter(module(), of, in, out); }
    u32 add(handle of, const u8 *mac) { return ovk_ethernet_recv_mac_add(module(), of, mac); }
    u32 del(handle of) { return ovk_ethernet_recv_mac_del(module(), of); }

    // What a call that succeeds says, and does to the chip.
    template <class Call>
    std::string done(u32 log_mask, Call call)
    {
        sim::journal_on(true);
        sim::journal::clear();
        std::string text = told(log_mask, call);
        for (const std::string &entry : sim::journal::write_entries())
            text +=
                std::regex_replace(entry, std::regex("kor_|0x7e000001, |ovk_ethernet\\.| w8"), "") + '\n';
        return text;
    }
    // The flags words that the classifier has for a port.
    std::string flags(handle of)
    {
        return answer("Map_Input_Port_NameSpace_Id", {{of->hsw_if_id, 8}}) + ", " +
               answer("Map_Output_Port_NameSpace_Id", {{of->if_id, 8}});
    }
};

TEST_F(PortFilter, PromiscuousModeTurnsTheFilterOffAndSaysTheContrary)
{
    const struct {
        u32 mode, enabled;
        const char *word, *mode_word;
    } rows[] = {{0, 1, "Disabling", "Non-Promiscuous"},
                {1, 0, "Enabling", "Promiscuous"},
                {7, 0, "Disabling", "Promiscuous"}};
    const handle one = make(0x11, routed), two = make(0x21, routed);
    HandMadeAggregate aggr(module(), 0, routed, {one, two});
    for (const auto &row : rows) {
        const auto line = [&](u32 channel) {
            return printed("hw] %s Unicast Filter for MAC Channel KOR_GMAC%u\n", row.word, channel);
        };
        const auto write = [&](u32 channel) {
            return printed("gatr_unicast_filter_enable(0x%x, 0x%x)\n", channel, row.enabled);
        };
        const auto info = [&](handle of) {
            return "info] Interface " + hex(of) + " set in " + row.mode_word + " mode\n";
        };
        EXPECT_EQ(done(0x2f, [&] { return promiscuous(one, row.mode); }), line(17) + info(one) + write(17));
        EXPECT_EQ(one->phy.promiscuous, row.mode);
        EXPECT_EQ(done(0x2f, [&] { return promiscuous(aggr.handle(), row.mode); }),
                  line(17) + line(33) + info(aggr.handle()) + write(17) + write(33));
        EXPECT_EQ(aggr.handle()->aggr.promiscuous, row.mode);
        EXPECT_EQ(two->phy.promiscuous, 1u); // a member's own isn't its aggregate's
    }
    sim::faults::fail("kor_gatr_unicast_filter_enable", 2);
    expect(
        [&] { return promiscuous(aggr.handle(), 0); }, 103,
        "RTE Error: injected fault, Failed to enable/disable unicast filtering|Failed to set Interface " +
            hex(aggr.handle()) + " in Non-Promiscuous mode");
    EXPECT_EQ(port(0x11).unicast_filter, 1u);
    EXPECT_EQ(port(0x21).unicast_filter, 0u);
    EXPECT_EQ(aggr.handle()->aggr.promiscuous, 7u);
}

TEST_F(PortFilter, FlowFilterIsBit17AndOnlyOneSetsIt)
{
    const struct {
        u32 in, out;
        u32 in_bit, out_bit;
    } rows[] = {{0, 1, 0, 0x20000}, {1, 2, 0x20000, 0}, {2, 1, 0, 0x20000}, {1, 1, 0x20000, 0x20000}};
    for (const u32 mode : {access_mode, trunk, tunnel}) {
        const handle of = make(0x10 + mode, mode);
        of->inif_flags = 0xfffdf000 | of->if_id; // all other bits stay
        for (const auto &row : rows) {
            const u32 ns_id = of->stats_ns_id, in = 0xfffdf000 | of->if_id | row.in_bit;
            const u32 out = of->if_id | mode << 8 | row.out_bit;
            EXPECT_EQ(done(15, [&] { return filter(of, row.in, row.out); }),
                      "info] Configured Basic Flow Filter on Interface " + hex(of) +
                          printed("\nptn_learn(Map_Output_Port_NameSpace_Id, 0x%02x/8, data 0x%x 0x%x)\n",
                                  of->if_id, ns_id, out) +
                          printed("ptn_learn(Map_Input_Port_NameSpace_Id, 0x%02x/8, data 0x%x 0x%x)\n",
                                  of->hsw_if_id, ns_id, in));
            EXPECT_EQ(of->inif_flags, in);
            EXPECT_EQ(of->outif_flags, out);
            EXPECT_EQ(of->phy.in_flow_filter, row.in);
            EXPECT_EQ(of->phy.out_flow_filter, row.out);
        }
    }
}

TEST_F(PortFilter, FlowFilterOfAnAggregateGoesToItsMembersAndStopsAtAFailure)
{
    const handle one = make(0x11, trunk), two = make(0x21, trunk);
    HandMadeAggregate aggr(module(), 1, trunk, {one, two});
    const auto words = [](const handle of, u32 in, u32 out) {
        return printed("data 0x%x 0x%x, data 0x%x 0x%x", of->stats_ns_id, in, of->stats_ns_id, out);
    };
    const std::string steps = done(0, [&] { return filter(aggr.handle(), 2, 1); });
    EXPECT_EQ(
        std::regex_replace(steps, std::regex(", data.*"), ""),
        "ptn_learn(Map_Input_Port_NameSpace_Id, 0x06/8\nptn_learn(Map_Output_Port_NameSpace_Id, 0x11/8\n"
        "ptn_learn(Map_Input_Port_NameSpace_Id, 0x0b/8\nptn_learn(Map_Output_Port_NameSpace_Id, 0x21/8\n");
    EXPECT_EQ(flags(one), words(one, 0x281, 0x20281));
    EXPECT_EQ(flags(two), words(two, 0x281, 0x20281));
    EXPECT_EQ(aggr.handle()->aggr.in_flow_filter, 2u);
    EXPECT_EQ(one->inif_flags, 0x20211u);

    sim::faults::fail("kor_ptn_learn", 3);
    expect([&] { return filter(aggr.handle(), 1, 0); }, 64,
           "RTE Error: injected fault, Failed to learn the input pattern|Failed to update LPM Tree|"
           "Failed to configure flow filtering on Interface " +
               hex(aggr.handle()));
    EXPECT_EQ(flags(one), words(one, 0x20281, 0x281));
    EXPECT_EQ(flags(two), words(two, 0x281, 0x20281));
    EXPECT_EQ(aggr.handle()->inif_flags, 0x281u);
    EXPECT_EQ(aggr.handle()->aggr.in_flow_filter, 2u);
}

TEST_F(PortFilter, ReceiveMacStandsThirdBehindTheOwnOnes)
{
    const handle of = make(0x11, routed);
    const auto line = [](const char *second, const char *third, const char *mode) {
        return printed(
            "hw] Adding MAC addresses 02-00-00-00-00-11, 02-00-00-00-00-%s, %s in the Unicast Filter "
            "operating in %s mode for MAC Channel KOR_GMAC17\n",
            second, third, mode);
    };
    const std::string added = "info] Added 00-1b-19-a0-b1-c2 to intf " + hex(of) + " recv mac list\n";
    const std::string removed = "info] Removed MAC addr from intf " + hex(of) + " recv mac list\n";
    const std::string own = "02-00-00-00-00-11", other = "00-1b-19-a0-b1-c2";
    // Nothing was added: it succeeds all the same.
    EXPECT_EQ(done(0x2f, [&] { return del(of); }),
              line("11", own.c_str(), "Promiscuous") + removed +
                  "gatr_unicast_filter_set(0x11, 0x0, 020000000011, 020000000011, 020000000011)\n");
    EXPECT_EQ(promiscuous(of, 0), 0u);
    EXPECT_EQ(done(0x2f, [&] { return add(of, second_mac); }),
              line("11", other.c_str(), "Non-promiscuous") + added +
                  "gatr_unicast_filter_set(0x11, 0x1, 020000000011, 020000000011, 001b19a0b1c2)\n");
    EXPECT_EQ(of->phy.recv_mac[5], 0xc2);
    const HandMadeAggregate aggr(module(), 1, routed, {of});
    EXPECT_EQ(done(0x2f, [&] { return add(of, second_mac); }),
              line("81", other.c_str(), "Non-promiscuous") + added +
                  "gatr_unicast_filter_set(0x11, 0x1, 020000000011, 020000000081, 001b19a0b1c2)\n");
    sim::faults::fail("kor_gatr_unicast_filter_set");
    EXPECT_EQ(add(of, own_mac), 105u);
    EXPECT_EQ(of->phy.recv_mac[5], 0xc2);
    sim::faults::fail("kor_gatr_unicast_filter_set");
    expect([&] { return del(of); }, 105,
           "RTE Error: injected fault, Failed to set MAC addresses in Unicast filter|"
           "Failed to remove MAC addr from intf " +
               hex(of) + " recv mac list");
    EXPECT_EQ(of->phy.recv_mac[5], 0xc2);
    EXPECT_EQ(del(of), 0u);
    EXPECT_EQ(of->phy.recv_mac[5], 0x11);
    EXPECT_EQ(port(0x11).unicast_macs[1][5], 0x81);
}

TEST_F(PortFilter, CallsRefuseWhatTheyAreNotFor)
{
    const handle switched = make(0x11, trunk), on_layer3 = make(0x12, routed),
                 fixed = make(0x13, static_mode);
    const handle member = make(0x14, static_mode);
    HandMadeAggregate trunks(module(), 0, trunk, {member}), routes(module(), 1, routed, {});
    ovk_eth_intf dead = {}, vlan = live_record(INTERFACE_TYPE_VLAN);
    using why = std::pair<u32, std::string>;
    const why no_handle = {0x2000003, "Invalid Interface handle %1$s"};
    const why in_aggregate = {0x2000003,
                              "Invalid Uasge: Interface handle is a part of Aggregated link %1$s"};
    const std::string mode = "Incompatible Intf forwarding mode OVK_ETHERNET_FWD_MODE_";
    const why is_trunk = {0x2000022, mode + "SWITCH_TRUNK"}, is_routed = {0x2000022, mode + "HIGHER_LAYER"};
    const why is_static = {0x2000022, mode + "STATIC"};
    const why is_vlan = {0x200001e, "Incompatible Interface type INTERFACE_TYPE_VLAN"};
    const why is_aggr = {0x200001e, "Incompatible Interface type INTERFACE_TYPE_AGGR"};
    const auto refuse = [&](const std::string &operation, const std::vector<std::pair<handle, why>> &given,
                            auto call) {
        for (const auto &[of, reason] : given)
            expect([&, &intf = of] { return call(intf); }, reason.first,
                   printed((reason.second + '|' + operation).c_str(), hex(of).c_str()));
    };
    const std::string before = host().image();
    refuse("Failed to set Interface %1$s in Promiscuous mode",
           {{&dead, no_handle}, {switched, is_trunk}, {trunks.handle(), is_trunk}, {&vlan, is_vlan}},
           [&](handle of) { return promiscuous(of, 1); });
    refuse("Failed to configure flow filtering on Interface %1$s",
           {{&dead, no_handle},
            {member, in_aggregate},
            {on_layer3, is_routed},
            {fixed, is_static},
            {routes.handle(), is_routed},
            {&vlan, is_vlan}},
           [&](handle of) { return filter(of, 1, 1); });
    refuse("Failed to add 01-1b-19-00-00-00 to intf %1$s recv mac list",
           {{&dead, no_handle},
            {switched, is_trunk},
            {routes.handle(), is_aggr},
            {on_layer3, {0x200000d, "MAC Address must be unicast address"}}},
           [&](handle of) { return add(of, group_mac); });
    refuse("Failed to remove MAC addr from intf %1$s recv mac list",
           {{&dead, no_handle}, {switched, is_trunk}, {&vlan, is_vlan}},
           [&](handle of) { return del(of); });
    EXPECT_EQ(add(on_layer3, nullptr), 8u);
    EXPECT_EQ(host().image(), before);
    EXPECT_EQ(switched->phy.promiscuous, 1u);
}

} // namespace
