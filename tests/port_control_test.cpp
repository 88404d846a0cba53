// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <cstring>

namespace {

using namespace test;
using std::string;

class PortControl : public ModuleTest {
  protected:
    using call = std::function<u32(handle)>;
    template <class... Given, class... Args>
    call with(u32 (*make)(ovk_module *, handle, Given...), Args... args)
    {
        return [=, this](handle intf) { return make(module(), intf, static_cast<Given>(args)...); };
    }
    call rate(u32 speed) { return with(ovk_ethernet_output_rate_set, speed); }
    call tx(u32 on) { return with(ovk_ethernet_interface_tx, on); }
    call rx(u32 on) { return with(ovk_ethernet_interface_rx, on); }
    call duplex(u32 mode) { return with(ovk_ethernet_interface_duplex, mode); }
    call autoneg(u32 on) { return with(ovk_ethernet_interface_autoneg, on); }
    call flow(u32 policy, u32 time) { return with(ovk_ethernet_flow_control, 7, policy, time); }
    call loopback(u32 on) { return with(ovk_ethernet_port_loopback, on); }
    template <class Status>
    call status(u32 blocking, u32 mask, Status to)
    {
        return with(ovk_ethernet_port_status_get, blocking, mask, to);
    }
    const call force = with(ovk_ethernet_autoneg_force),
               channel = with(ovk_ethernet_mac_channel_get, &channel_);

    // `text` with the interface for each '@' and its channel for each '%'.
    static string named(handle intf, const string &text)
    {
        const string channelled = std::regex_replace(text, std::regex("%"), "MAC Channel KOR_GMAC17");
        return std::regex_replace(channelled, std::regex("@"), "Interface " + hex(intf));
    }
    void refused(const call &make, handle intf, u32 with_status, const string &messages)
    {
        expect([&] { return make(intf); }, with_status, named(intf, messages));
    }

    const handle port_ = make_port(module(), 0x11, 2);
    u32 channel_ = 99;
    ovk_ethernet_port_status status_{};
};

TEST_F(PortControl, CallReadsFirstWritesOnlyAChangeAndSaysSo)
{
    const auto step = [&](const call &make, const string &expected, const string &hw, const string &info) {
        const u64 writes = sim::journal::write_count();
        string changed;
        module()->log_mask = 15 | OVK_ETHERNET_LOG_HW;
        EXPECT_EQ(messages_of([&] { changed = changes(host(), [&] { return make(port_); }); }),
                  (Lines{named(port_, "[ovk_ethernet_log: hw] " + hw),
                         named(port_, "[ovk_ethernet_log: info] " + info)}));
        module()->log_mask = 0;
        EXPECT_EQ(changed, expected) << hw;
        EXPECT_EQ(sim::journal::write_count() - writes, expected.empty() ? 0u : 1u) << hw;
    };
    const string half = " speed and in OVK_ETHERNET_DUPLEX_HALF mode", speed = "OVK_ETHERNET_SPEED_";
    step(tx(1), "", "% TX already enabled", "@ Tx Enabled");
    step(tx(0), "- tx = 0x1 ", "Configuring % with Rx Enabled and Tx Disabled", "@ Tx Disabled");
    step(tx(0), "", "% TX already disabled", "@ Tx Disabled");
    step(rx(9), "", "% RX already enabled", "@ Rx Enabled");
    step(rx(0), "- rx = 0x1 ", "Configuring % with Rx Disabled and Tx Disabled", "@ Rx Disabled");
    step(rx(0), "", "% RX already disabled", "@ Rx Disabled");
    step(tx(9), "+ tx = 0x1 ", "Configuring % with Rx Disabled and Tx Enabled", "@ Tx Enabled");
    step(rx(1), "+ rx = 0x1 ", "Configuring % with Rx Enabled and Tx Enabled", "@ Rx Enabled");
    step(duplex(2), "", "% already configured in Full Duplex mode", "@ set in Full-Duplex mode");
    step(duplex(1), "+ duplex = 0x1 ", "Configuring % with " + speed + "1G" + half,
         "@ set in Half-Duplex mode");
    step(duplex(1), "", "% already configured in Half Duplex mode", "@ set in Half-Duplex mode");
    step(rate(2), "+ speed = 0x2 ", "Configuring % with " + speed + "100M" + half,
         "@ rate set to " + speed + "100M");
    step(rate(2), "", "% already configured for " + speed + "100M", "@ rate set to " + speed + "100M");
    step(flow(1, 9), "+ flow_control = enable 0x7 policy 0x1 time 0x9 ",
         "Enabling pause frame handling for % with pause-type = 1 and pause-time = 9",
         "Flow Control Policy Applied for @");
    step(autoneg(1), "", "Enabling Auto-negotiation for %", "Autonegotiation Enabled for @");
    step(autoneg(0), "", "Disabling Auto-negotiation for %", "Autonegotiation Disabled for @");
    step(force, "", "Enabling and Re-starting Auto-negotiation for %", "Autonegotiation Re-started for @");
    step(loopback(256), "", "Enabling loopback on %", "Loopback enabled on @");
    step(loopback(0), "", "Disabling loopback on %", "Loopback disabled on @");
    std::memset(&status_, 0xff, sizeof status_);
    step(status(1, 0x3f, &status_), "", "Getting Port Status for % in Blocking mode, mask = 0x00000063",
         "Port Status Retrieved for @");
    const ovk_ethernet_port_status up = {
        1, 1, 0, 1, OVK_ETHERNET_DUPLEX_FULL, OVK_ETHERNET_SPEED_1G}; // always
    EXPECT_EQ(std::memcmp(&status_, &up, sizeof up), 0);
    for (const auto &[bit, mac] : {std::pair{1u, 64u}, {2u, 32u}, {4u, 2u}, {8u, 1u}})
        step(status(0, bit, &status_), "",
             printed("Getting Port Status for %% in Non-blocking mode, mask = 0x%08x", mac),
             "Port Status Retrieved for @");
    step(rate(5), "- speed = 0x2 + speed = 0x5 ", "Configuring % with " + speed + "10G" + half,
         "@ rate set to " + speed + "10G");
    step(status(2, 0x20, &status_), "", "Getting Port Status for % in Non-blocking mode, mask = 0x00000000",
         "Port Status Retrieved for @");
    for (u32 policy = 1; policy <= 5; policy++) {
        EXPECT_EQ(flow(policy, 1)(port_), 0u);
        EXPECT_EQ(sim::port(host().rte(), KOR_GMAC17).flow_control.policy_bit, 1u << (policy - 1));
    }
    EXPECT_EQ(told(15, [&] { return channel(port_); }),
              named(port_, "info] Retrieved MAC Channel Info for @\n"));
    EXPECT_EQ(channel_, u32{KOR_GMAC17});
}

TEST_F(PortControl, RefusesHandleKindAndPortInThatOrderAndStopsAtAFailure)
{
    ovk_eth_intf subif = *port_, xgmac0 = *port_, xgmac8 = *port_;
    subif.if_type = INTERFACE_TYPE_VLAN, subif.phy.attrs.if_num = 0;
    xgmac0.phy.attrs.if_num = 0, xgmac8.phy.attrs.if_num = 8;
    // What it says that it failed to do, its cause on ports 0 and 8, and its steps' failures.
    const auto check = [&](const call &make, const string &operation, const string &xgmac,
                           const string &failures) {
        const string of = "|Failed to " + operation;
        refused(make, nullptr, 0x2000003, "Invalid Interface handle 0x00000000" + of);
        refused(make, &subif, 0x200001e, "Incompatible Interface type INTERFACE_TYPE_VLAN" + of);
        for (const handle intf : {&xgmac0, &xgmac8})
            if (!xgmac.empty())
                refused(make, intf, 0x200001d, xgmac + of);
        EXPECT_EQ(faults_of([&] { return make(port_); }),
                  "32522 ovk_sys_mac_channel_id_get failed for port 17|" + failures);
    };
    const string no_speed = "106 RTE, Failed to get the GATR port speed mode for port 17|107 RTE, Failed "
                            "to set the GATR port speed";
    const string no_state = "32522 RTE, Failed to get the GATR port admin status|",
                 rate_of = "set @ at rate ";
    const string no_change = no_state + "32522 RTE, Failed to set the GATR port admin status|";
    const string half = "set @ in Half-Duplex mode",
                 fixed = "Duplixity for XGMAC port is fixed to full-duplex";
    const string flow_of = "set the Flow Control Policy for @", status_of = "retrieve port status for @";
    const string channel_of = "get MAC Channel Info for @",
                 negotiation = "Auto-neg for XGMAC port cannot be ";
    check(rate(2), rate_of + "OVK_ETHERNET_SPEED_100M", "Rate for XGMAC port is fixed",
          no_speed + " for port 17|");
    check(tx(1), "set @ Tx Enabled", "", no_state);
    check(tx(0), "set @ Tx Disabled", "", no_change);
    check(rx(0), "set @ Rx Disabled", "", no_change);
    check(duplex(1), half, fixed, no_speed + " mode for port 17|");
    check(autoneg(0), "set Autonegotiation Disabled for @", negotiation + "enabled", "");
    check(force, "re-start Autonegotiation for @", negotiation + "forced", "");
    check(channel, channel_of, "", "");
    check(status(1, 1, &status_), status_of, "", "");
    check(flow(1, 1), flow_of, "", "110 RTE, Failed to set Pause Frame Handling Policy|");
    check(loopback(1), "enable loopback on @", "", "");
    check(loopback(0), "disable loopback on @", "", "");
    const auto bad = [&](const call &make, handle intf, u32 with_status, const string &cause,
                         const string &operation) {
        refused(make, intf, with_status, cause + "|Failed to " + operation);
    };
    const string policy = "Flow Control Policy Type OVK_ETHERNET_FLOW_CONTROL_",
                 mode = "Invalid duplex mode OVK_ETHERNET_DUPLEX_";
    bad(with(ovk_ethernet_mac_channel_get, nullptr), nullptr, 8, "Null Pointer parameter", channel_of);
    bad(rate(0), &xgmac0, 0x2000013, "Invalid Output Rate UNKNOWN_RATE", rate_of + "UNKNOWN_RATE");
    bad(rate(6), port_, 0x2000013, "Invalid Output Rate UNKNOWN_RATE", rate_of + "UNKNOWN_RATE");
    bad(duplex(3), &xgmac0, 0x200001d, fixed, half);
    bad(duplex(0), port_, 0x2000016, mode + "INVALID", half);
    bad(duplex(3), port_, 0x2000016, mode + "MAX", half);
    bad(status(1, 0, nullptr), port_, 8, "Null Pointer Parameter for Port Status", status_of);
    bad(status(1, ~0x3fu, &status_), port_, 8, "Mask field for port status must not be all clear",
        status_of);
    for (const call &make : {rate(9), duplex(9), flow(0, 0), status(1, 0, nullptr)})
        EXPECT_TRUE(make(nullptr) == 0x2000003 && make(&subif) == 0x200001e); // before any argument
    bad(flow(0, 0), port_, 8, "Time duration setting 0 is invalid", flow_of);
    bad(flow(0, 1), port_, 8, policy + "INVALID is invalid", flow_of);
    bad(flow(6, 1), port_, 8, policy + "MAX is invalid", flow_of);
}

TEST_F(PortControl, TaskPrioritiesGoToThreePipelinesInOrder)
{
    const auto set = [&](const char *map) {
        return ovk_ethernet_pcp_to_task_pri_map(module(), reinterpret_cast<const u8 *>(map));
    };
    u8 *const stored = ovk::object_of(module()).pcp_to_task_pri;
    const string before = host().image(), old(stored, stored + 8),
                 map = " = 8081828331323334353637388c8d8e8f90919293 ";
    for (const char *zero : {"\0002345678", "1234567", "123\0005678", static_cast<const char *>(nullptr)})
        EXPECT_EQ(set(zero), 8u);
    EXPECT_EQ(host().image() + string(stored, stored + 8), before + old);
    EXPECT_EQ(changes(host(), [&] { return set("12345678"); }),
              "+ bridging_vp 0x16" + map + "+ bridging_vp 0x17" + map + "+ bridging_vp 0x18" + map);
    // After a failure: the first byte in the object, then in the pipelines in their order.
    const auto first = [&] {
        const auto in = [&](u32 id) { return sim::bridging_vp(host().rte(), id).pcp_task_priority[0]; };
        return printed(" %c: %c%c%c", stored[0], in(0x16), in(0x18), in(0x17));
    };
    const string get = "32522 kor_gatr_common_vps_bridging_vp_get Failed for ethernet_hsw_";
    const string put = "32522 kor_gatr_common_vps_bridging_vp_set Failed for ethernet_hsw_";
    const string a = "switch VP Name a: 111|", b = "flood VP Name a: a11|",
                 c = "higher_layer_forward VP Name a: aa1|";
    EXPECT_EQ(faults_of([&] { return set("abcdefgh"); }, [&] { EXPECT_EQ(set("12345678"), 0u); }, first),
              get + a + put + a + get + b + put + b + get + c + put + c);
}

} // namespace
