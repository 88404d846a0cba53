// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <cstring>
#include <functional>

namespace {

using handle = ovk_ethernet_if_handle;
using test::changes;
using test::failures;
using test::hex;
using test::Lines;
using test::operator+;

class PortControl : public test::ModuleTest {
  protected:
    using call = std::function<u32(handle)>;

    template <class... Given, class... Args>
    call with(u32 (*make)(ovk_module *, handle, Given...), Args... args)
    {
        return [=, this](handle intf) { return make(module(), intf, args...); };
    }

    const handle port_ = test::make_port(module(), 0x11, 2);
    u32 channel_ = 99;
    ovk_ethernet_port_status status_{};
};

TEST_F(PortControl, CallReadsFirstWritesOnlyAChangeAndSaysSo)
{
    const auto tx = [&](u32 on) { return with(ovk_ethernet_interface_tx, on); };
    const auto rx = [&](u32 on) { return with(ovk_ethernet_interface_rx, on); };
    const auto rate = [&](u32 speed) { return with(ovk_ethernet_output_rate_set, speed); };
    const auto duplex = [&](u32 mode) { return with(ovk_ethernet_interface_duplex, mode); };
    const auto flow = [&](u32 policy) { return with(ovk_ethernet_flow_control, 7u, policy, 0xffffu); };
    const std::string mac = "MAC Channel KOR_GMAC17", all_off = " with Rx Disabled and Tx Disabled";
    const std::string pause = "Enabling pause frame handling for " + mac + " with pause-type = ";
    const std::string applied = "Flow Control Policy Applied for Interface @";
    const std::string half = " speed and in OVK_ETHERNET_DUPLEX_HALF mode";
    const std::string status = "Getting Port Status for " + mac;
    const struct {
        call make;
        std::string hw, info, changes;
    } steps[] = {
        {tx(1), mac + " TX already enabled", "Interface @ Tx Enabled", ""},
        {tx(0), "Configuring " + mac + " with Rx Enabled and Tx Disabled", "Interface @ Tx Disabled",
         "- tx = 0x1 "},
        {tx(0), mac + " TX already disabled", "Interface @ Tx Disabled", ""},
        {rx(9), mac + " RX already enabled", "Interface @ Rx Enabled", ""},
        {rx(0), "Configuring " + mac + all_off, "Interface @ Rx Disabled", "- rx = 0x1 "},
        {rx(0), mac + " RX already disabled", "Interface @ Rx Disabled", ""},
        {tx(9), "Configuring " + mac + " with Rx Disabled and Tx Enabled", "Interface @ Tx Enabled",
         "+ tx = 0x1 "},
        {rx(1), "Configuring " + mac + " with Rx Enabled and Tx Enabled", "Interface @ Rx Enabled",
         "+ rx = 0x1 "},
        {duplex(2), mac + " already configured in Full Duplex mode", "Interface @ set in Full-Duplex mode",
         ""},
        {duplex(1), "Configuring " + mac + " with OVK_ETHERNET_SPEED_1G" + half,
         "Interface @ set in Half-Duplex mode", "+ duplex = 0x1 "},
        {duplex(1), mac + " already configured in Half Duplex mode", "Interface @ set in Half-Duplex mode",
         ""},
        {rate(2), "Configuring " + mac + " with OVK_ETHERNET_SPEED_100M" + half,
         "Interface @ rate set to OVK_ETHERNET_SPEED_100M", "+ speed = 0x2 "},
        {rate(2), mac + " already configured for OVK_ETHERNET_SPEED_100M",
         "Interface @ rate set to OVK_ETHERNET_SPEED_100M", ""},
        {flow(1), pause + "1 and pause-time = 65535", applied,
         "+ flow_control = enable 0x7 policy 0x1 time 0xffff "},
        {with(ovk_ethernet_interface_autoneg, 1u), "Enabling Auto-negotiation for " + mac,
         "Autonegotiation Enabled for Interface @", ""},
        {with(ovk_ethernet_interface_autoneg, 0u), "Disabling Auto-negotiation for " + mac,
         "Autonegotiation Disabled for Interface @", ""},
        {with(ovk_ethernet_autoneg_force), "Enabling and Re-starting Auto-negotiation for " + mac,
         "Autonegotiation Re-started for Interface @", ""},
        {with(ovk_ethernet_port_loopback, 256u), "Enabling loopback on " + mac,
         "Loopback enabled on Interface @", ""},
        {with(ovk_ethernet_port_loopback, 0u), "Disabling loopback on " + mac,
         "Loopback disabled on Interface @", ""},
        {with(ovk_ethernet_port_status_get, 1u, 0x3fu, &status_),
         status + " in Blocking mode, mask = 0x00000063", "Port Status Retrieved for Interface @", ""},
        {with(ovk_ethernet_port_status_get, 2u, 0x20u, &status_),
         status + " in Non-blocking mode, mask = 0x00000000", "Port Status Retrieved for Interface @", ""},
    };
    module()->log_mask = 15 | OVK_ETHERNET_LOG_HW;
    for (const auto &at : steps) {
        const u64 writes = sim::journal::write_count();
        std::string changed;
        EXPECT_EQ(test::messages_of([&] { changed = changes(host(), [&] { return at.make(port_); }); }),
                  (Lines{"[ovk_ethernet_log: hw] " + at.hw,
                         "[ovk_ethernet_log: info] " +
                             std::regex_replace(at.info, std::regex("@"), hex(port_))}));
        EXPECT_EQ(changed, at.changes) << at.hw;
        EXPECT_EQ(sim::journal::write_count() - writes, at.changes.empty() ? 0u : 1u) << at.hw;
    }
    module()->log_mask = 0;
    for (u32 policy = 1; policy <= 5; policy++) {
        EXPECT_EQ(flow(policy)(port_), 0u);
        EXPECT_EQ(sim::port(host().rte(), KOR_GMAC17).flow_control.policy_bit, 1u << (policy - 1));
    }
    // Each port is the same.
    const ovk_ethernet_port_status up = {1, 1, 0, 1, OVK_ETHERNET_DUPLEX_FULL, OVK_ETHERNET_SPEED_1G};
    std::memset(&status_, 0xff, sizeof status_);
    EXPECT_EQ(with(ovk_ethernet_port_status_get, 0u, 1u, &status_)(port_), 0u);
    EXPECT_EQ(std::memcmp(&status_, &up, sizeof up), 0);
    EXPECT_EQ(with(ovk_ethernet_mac_channel_get, &channel_)(port_), 0u);
    EXPECT_EQ(channel_, u32{KOR_GMAC17});
}

TEST_F(PortControl, RefusesHandleKindAndPortBeforeWhatIsAsked)
{
    ovk_eth_intf subif = *port_, xgmac0 = *port_, xgmac8 = *port_;
    subif.if_type = INTERFACE_TYPE_VLAN;
    xgmac0.phy.attrs.if_num = 0, xgmac8.phy.attrs.if_num = 8;
    const auto rate = [&](u32 speed) { return with(ovk_ethernet_output_rate_set, speed); };
    const auto duplex = [&](u32 mode) { return with(ovk_ethernet_interface_duplex, mode); };
    const auto flow = [&](u32 policy, u32 time) {
        return with(ovk_ethernet_flow_control, 1u, policy, time);
    };
    const auto status = [&](u32 mask, ovk_ethernet_port_status *to) {
        return with(ovk_ethernet_port_status_get, 1u, mask, to);
    };
    const std::string no_rate = "|Failed to set Interface @ at rate ",
                      no_status = "|Failed to retrieve port status for Interface @";
    const std::string no_flow = "|Failed to set the Flow Control Policy for Interface @",
                      half = "|Failed to set Interface @ in Half-Duplex mode";
    const struct {
        call make;
        std::string operation;
        std::string xgmac; // the cause on ports 0 and 8
    } calls[] = {
        {rate(2), no_rate + "OVK_ETHERNET_SPEED_100M", "Rate for XGMAC port is fixed"},
        {with(ovk_ethernet_interface_tx, 1u), "|Failed to set Interface @ Tx Enabled", ""},
        {with(ovk_ethernet_interface_rx, 0u), "|Failed to set Interface @ Rx Disabled", ""},
        {duplex(2), "|Failed to set Interface @ in Full-Duplex mode",
         "Duplixity for XGMAC port is fixed to full-duplex"},
        {duplex(3), half, "Duplixity for XGMAC port is fixed to full-duplex"},
        {with(ovk_ethernet_interface_autoneg, 0u),
         "|Failed to set Autonegotiation Disabled for Interface @",
         "Auto-neg for XGMAC port cannot be enabled"},
        {with(ovk_ethernet_autoneg_force), "|Failed to re-start Autonegotiation for Interface @",
         "Auto-neg for XGMAC port cannot be forced"},
        {with(ovk_ethernet_mac_channel_get, &channel_), "|Failed to get MAC Channel Info for Interface @",
         ""},
        {status(0, nullptr), no_status, ""},
        {flow(9, 0), no_flow, ""},
        {with(ovk_ethernet_port_loopback, 1u), "|Failed to enable loopback on Interface @", ""},
        {with(ovk_ethernet_port_loopback, 0u), "|Failed to disable loopback on Interface @", ""},
    };
    const auto refused = [&](const call &make, handle intf, u32 with_status, const std::string &messages) {
        EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(make(intf), with_status); }),
                  failures(std::regex_replace(messages, std::regex("@"), hex(intf)), with_status));
    };
    const std::string before = host().image(), no_mac = "ovk_sys_mac_channel_id_get failed for port 17";
    module()->log_mask = 3;
    for (const auto &at : calls) {
        refused(at.make, nullptr, 0x2000003, "Invalid Interface handle @" + at.operation);
        refused(at.make, &subif, 0x200001e,
                "Incompatible Interface type INTERFACE_TYPE_VLAN" + at.operation);
        for (const handle intf : {&xgmac0, &xgmac8})
            if (!at.xgmac.empty())
                refused(at.make, intf, 0x200001d, at.xgmac + at.operation);
    }
    refused(with(ovk_ethernet_mac_channel_get, static_cast<u32 *>(nullptr)), nullptr, 8,
            "Null Pointer parameter|Failed to get MAC Channel Info for Interface @");
    for (const u32 speed : {0u, 6u}) // which goes before the port
        refused(rate(speed), &xgmac0, 0x2000013,
                "Invalid Output Rate OVK_ETHERNET_RATE_UNKNOWN" + no_rate + "OVK_ETHERNET_RATE_UNKNOWN");
    refused(duplex(0), port_, 0x2000016, "Invalid duplex mode OVK_ETHERNET_DUPLEX_INVALID" + half);
    refused(duplex(3), port_, 0x2000016, "Invalid duplex mode OVK_ETHERNET_DUPLEX_MAX" + half);
    refused(status(0, nullptr), port_, 8, "Null Pointer Parameter for Port Status" + no_status);
    refused(status(0xffffffc0, &status_), port_, 8,
            "Mask field for port status must not be all clear" + no_status);
    refused(flow(0, 0), port_, 8, "Time duration setting 0 is invalid" + no_flow);
    refused(flow(0, 1), port_, 8,
            "Flow Control Policy Type OVK_ETHERNET_FLOW_CONTROL_INVALID is invalid" + no_flow);
    refused(flow(6, 1), port_, 8,
            "Flow Control Policy Type OVK_ETHERNET_FLOW_CONTROL_MAX is invalid" + no_flow);

    const std::string rte = "RTE Error: injected fault, Failed to ";
    const struct {
        const char *fault;
        call make;
        u32 status;
        std::string messages;
    } faults[] = {
        {"kor_gatr_port_enable_set", with(ovk_ethernet_interface_tx, 0u), 0x7f0a,
         rte + "set the GATR port admin status|Failed to set Interface @ Tx Disabled"},
        {"kor_gatr_port_enable_set", with(ovk_ethernet_interface_rx, 0u), 0x7f0a,
         rte + "set the GATR port admin status|Failed to set Interface @ Rx Disabled"},
        {"kor_mac_speed_duplex_get", rate(2), 106,
         rte + "get the GATR port speed mode for port 17" + no_rate + "OVK_ETHERNET_SPEED_100M"},
        {"kor_mac_speed_duplex_set", rate(2), 107,
         rte + "set the GATR port speed for port 17" + no_rate + "OVK_ETHERNET_SPEED_100M"},
        {"kor_mac_speed_duplex_get", duplex(1), 106,
         rte + "get the GATR port speed mode for port 17" + half},
        {"kor_mac_speed_duplex_set", duplex(1), 107,
         rte + "set the GATR port speed mode for port 17" + half},
        {"kor_gatr_mac_flow_ctrl_set", flow(1, 1), 110, rte + "set Pause Frame Handling Policy" + no_flow},
        {"ovk_sys_mac_channel_id_get", with(ovk_ethernet_port_loopback, 1u), 0x7f0a,
         no_mac + "|Failed to enable loopback on Interface @"},
        {"ovk_sys_mac_channel_id_get", status(1, &status_), 0x7f0a, no_mac + no_status},
    };
    for (const auto &at : faults) {
        EXPECT_TRUE(sim::faults::fail(at.fault));
        refused(at.make, port_, at.status, at.messages);
    }
    EXPECT_EQ(sim::image_diff(before, host().image()), Lines{});
    EXPECT_EQ(
        test::messages_of([&] { EXPECT_EQ(ovk_ethernet_output_rate_set(nullptr, port_, 2), 1u); }),
        test::no_module("Failed to set Interface " + hex(port_) + " at rate OVK_ETHERNET_SPEED_100M"));
}

TEST_F(PortControl, TaskPrioritiesGoToThreePipelinesInOrder)
{
    const auto set = [&](const char *map) {
        return ovk_ethernet_pcp_to_task_pri_map(module(), reinterpret_cast<const u8 *>(map));
    };
    const std::string first = "80818283", last = "8c8d8e8f90919293 ", before = host().image();
    u8 *const stored = ovk::object_of(module()).pcp_to_task_pri;
    const std::string old(stored, stored + 8);
    for (const char *map : {"\0"
                            "2345678",
                            "1234567",
                            "123\0"
                            "5678"})
        test::lines_of([&] { EXPECT_EQ(set(map), 8u); });
    EXPECT_EQ(sim::image_diff(before, host().image()), Lines{});
    EXPECT_EQ(std::string(stored, stored + 8), old);

    sim::journal_on(true);
    const auto vp = [&](const char *id, const std::string &map) {
        return std::string("+ bridging_vp ") + id + " = " + first + map + last;
    };
    EXPECT_EQ(changes(host(), [&] { return set("12345678"); }), vp("0x16", "3132333435363738") +
                                                                    vp("0x17", "3132333435363738") +
                                                                    vp("0x18", "3132333435363738"));
    const auto second = [](const std::string &entry) { return entry.substr(entry.find(", ") + 2, 4); };
    Lines order;
    for (const std::string &entry : sim::journal::entries("kor_gatr_common_vps"))
        order.push_back(second(entry));
    EXPECT_EQ(order, (Lines{"0x16", "0x16", "0x18", "0x18", "0x17", "0x17"}));

    module()->log_mask = 3;
    sim::faults::fail("kor_gatr_common_vps_bridging_vp_set", 2);
    Lines lines = test::messages_of([&] { EXPECT_EQ(set("abcdefgh"), 0x7f0au); });
    lines.resize(2);
    EXPECT_EQ(
        lines,
        test::failure("kor_gatr_common_vps_bridging_vp_set Failed for ethernet_hsw_flood VP Name", 0x7f0a));
    EXPECT_EQ(std::string(stored, stored + 8), "abcdefgh");
    EXPECT_EQ(sim::bridging_vp(host().rte(), 0x16).pcp_task_priority[0], 'a');
    EXPECT_EQ(sim::bridging_vp(host().rte(), 0x18).pcp_task_priority[0], '1');
    sim::faults::fail("kor_gatr_common_vps_bridging_vp_get", 3);
    lines = test::messages_of([&] { EXPECT_EQ(set("ABCDEFGH"), 0x7f0au); });
    lines.resize(2);
    EXPECT_EQ(
        lines,
        test::failure(
            "kor_gatr_common_vps_bridging_vp_get Failed for ethernet_hsw_higher_layer_forward VP Name",
            0x7f0a));
    EXPECT_EQ(sim::bridging_vp(host().rte(), 0x17).pcp_task_priority[7], '8');
}

} // namespace
