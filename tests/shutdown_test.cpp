// SPDX-License-Identifier: Apache-2.0
#include "support.h"

namespace {

using namespace test;
using Shutdown = HostTest;
using ServiceUpdate = ModuleTest;

TEST_F(Shutdown, LeavesSettingsRegistrationOneBucketAndOneNode)
{
    const std::string before = host().image();
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    EXPECT_EQ(holdings(host()), "db 15 id 259 ns 3 br 1 mem 10052");
    EXPECT_EQ(ovk_ethernet_shutdown(module()), 0u);

    Lines expected = {"+ register switch.age_hysteresis = 0x0"};
    for (const char *of : {"common.dscp_cos", "switch.acl_cos_to_dscp"})
        for (int n = 0; n < 8; n++)
            expected.push_back(printed("+ register %s[%d] = 0x%d", of, n, n));
    std::sort(expected.begin(), expected.end());
    Lines diff = changes_since(before);
    ASSERT_EQ(diff.size(), 18u);
    EXPECT_TRUE(diff.back().starts_with("+ service ovk_ethernet shutdown"));
    diff.pop_back();
    EXPECT_EQ(diff, expected);
    EXPECT_EQ(sim::heap::live_sizes(),
              (std::map<size_t, size_t>{{sizeof(ovk_eth_fdb_bucket), 1}, {sizeof(ovk_eth_fdb_node), 1}}));
    EXPECT_EQ(sim::live_patterns(), 0u);
}

TEST_F(Shutdown, EndsTheHandleUntilTheNextStart)
{
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    EXPECT_EQ(told(15, [&] { return ovk_ethernet_shutdown(module()); }),
              "info] Freed Stats NS IDs 0x00900140 for global counters\n"
              "info] Freed Intf PCP Stats NS IDs 0x00900540 for default counters\n"
              "info] Freed Intf VLAN Stats NS IDs 0x00900940 for default counters\n"
              "info] Freed Flow Info NS IDs from 0x00d0fe19 to 0x00d0ff18\n"
              "info] Ethernet module " +
                  hex(module()) + " shutdown\n");
    EXPECT_EQ(module()->module_object, nullptr);
    lines_of([&] { EXPECT_EQ(ovk_ethernet_shutdown(module()), 1u); });
    lines_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), 0u); });
    EXPECT_EQ(holdings(host()), "db 15 id 259 ns 3 br 1 mem 10054");
}

struct failing_step {
    const char *operation;
    u32 nth;
    u32 status;
    u32 again;          // what a second try gives: it stops where the platform refuses what is gone
    const char *stands; // beside 10052 blocks
    const char *causes;
};

// clang-format off
constexpr failing_step failing_steps[] = {
    {"kor_subnet_destroy", 1, 59, 0, "db 15 id 259 ns 3 br 1", "RTE Error: injected fault, Failed to destroy subnet database for "
     "ovk_ethernet.Vlan_Assignment_Ext_Tree|Failed to clear Ethernet module's tree IDs"},
    {"kor_subnet_destroy", 15, 59, 0, "db 1 id 259 ns 3 br 1", "RTE Error: injected fault, Failed to destroy subnet database for "
     "ovk_ethernet.Port_QoS_policy_lookup|Failed to clear Ethernet module's tree IDs"},
    {"ovk_ptn_free", 40, sim::status_injected, 0, "db 3 id 259 ns 3 br 1", "Failed to clear Ethernet module's tree IDs"},
    {"kor_gatr_switch_bridge_entry_unlearn", 1, 154, 0, "db 0 id 259 ns 3 br 1", "RTE Error: injected fault, Failed to remove entry "
     "from HSW Bridging table"},
    {"kor_rsrc_free", 1, 30, 154, "db 0 id 259 ns 3 br 0", "Failed to free Stats NS IDs for global counters"},
    {"kor_rsrc_free", 2, 30, 154, "db 0 id 258 ns 3 br 0", "Failed to free Intf PCP Stats NS IDs for default counters"},
    {"kor_rsrc_free", 3, 30, 154, "db 0 id 257 ns 3 br 0", "Failed to free Intf VLAN Stats NS IDs for default counters"},
    {"kor_rsrc_free", 4, 30, 154, "db 0 id 256 ns 3 br 0", "Failed to free Flow Info NS IDs for if_num 0 to 16"},
    {"kor_rsrc_destroy", 1, 27, 154, "db 0 id 0 ns 3 br 0", "Failed to destroy multicast_group_ns_hdl"},
    {"kor_rsrc_destroy", 2, 27, 154, "db 0 id 0 ns 2 br 0", "Failed to destroy eth_flows_ns_hdl"},
    {"kor_rsrc_destroy", 3, 27, 154, "db 0 id 0 ns 1 br 0", "Failed to destroy virtual_intf_id"},
};
// clang-format on

TEST_F(Shutdown, FailureStopsItAndLeavesTheHandleValid)
{
    for (const failing_step &step : failing_steps) {
        SCOPED_TRACE(std::string(step.operation) + " " + std::to_string(step.nth));
        start_over();
        EXPECT_EQ(ovk_ethernet_init(module()), 0u);
        ASSERT_TRUE(sim::faults::fail(step.operation, step.nth));
        expect([&] { return ovk_ethernet_shutdown(module()); }, step.status,
               step.causes + ("|Ethernet module " + hex(module()) + " failed to shutdown"));
        EXPECT_EQ(holdings(host()), step.stands + std::string(" mem 10052"));
        EXPECT_EQ(ovk_ethernet_log_level_set(module(), 0), 0u);
        lines_of([&] { EXPECT_EQ(ovk_ethernet_shutdown(module()), step.again); });
    }
}

const std::vector<kor_vp ovk_eth_module_object::*> pipelines = {
    &ovk_eth_module_object::vp_egress_encap_ipv4, &ovk_eth_module_object::vp_egress_encap,
    &ovk_eth_module_object::vp_expander_switch,   &ovk_eth_module_object::vp_hsw_switch,
    &ovk_eth_module_object::vp_hsw_flood,         &ovk_eth_module_object::vp_hsw_default};

TEST_F(ServiceUpdate, RenewsHandlesAndAddressesAlone)
{
    // The older code's record and handles.
    ovk_service_record old = {};
    old.indirect_fn_id = 0x1234;
    EXPECT_EQ(ovk_module_service_function_register(host().parent(), module(), &old), 0u);
    ovk_eth_module_object &object = ovk::object_of(module());
    const ovk_eth_module_object started = object;
    for (const auto pipeline : pipelines)
        object.*pipeline = 0;
    sim::journal_on(true);
    EXPECT_EQ(ovk_ethernet_service_function_update(module()), 0u);

    for (const auto pipeline : pipelines)
        EXPECT_EQ(object.*pipeline, started.*pipeline);
    EXPECT_NE(object.vp_hsw_flood, object.vp_hsw_default);
    // The two function ids aren't handed over again, and the classifier isn't touched.
    EXPECT_EQ(sim::journal::write_entries(),
              Lines{"ovk_module_service_function_update(ovk_ethernet, 0x0, 0x0)"});
    const ovk_service_record record = *host().service_record();
    EXPECT_EQ(record.shutdown, ovk_ethernet_shutdown);
    EXPECT_EQ(record.indirect_fn_id, 0x1234);
}

TEST_F(ServiceUpdate, StopsAtWhatIsMissing)
{
    ovk_eth_module_object &object = ovk::object_of(module());
    const auto update = [&](const std::string &cause, u32 status) {
        for (const auto pipeline : pipelines)
            object.*pipeline = 0;
        expect([&] { return ovk_ethernet_service_function_update(module()); }, status,
               cause + "|Ethernet module failed to register service fns");
    };
    sim::hide(host().rte(), "gatr_ethernet_hsw_switch");
    update("Failed to find ethernet_hsw_switch VP handle", 20);
    EXPECT_NE(object.vp_expander_switch, 0u);
    EXPECT_EQ(object.vp_hsw_flood, 0u);
    sim::hide(host().rte(), "gatr_ethernet_hsw_switch", false);
    sim::faults::fail("ovk_module_service_function_update");
    update("Failed to register Ethernet module's service functions", sim::status_injected);
    EXPECT_NE(object.vp_hsw_default, 0u);
    EXPECT_EQ(ovk_ethernet_service_function_update(module()), 0u);
}

} // namespace
