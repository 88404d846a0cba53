// SPDX-License-Identifier: Apache-2.0
#include "support.h"

namespace {

using namespace test;

using Init = HostTest;

Lines gave_up(const ovk_module *module, u32 status)
{
    return failure("Ethernet module " + hex(module) + " failed to initialize", status);
}

TEST_F(Init, TakesItsStepsInOrder)
{
    sim::journal_on(true);
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    // Calls in a row stand for themselves once; what only logs and what makes the trees ready is left out.
    std::string order;
    std::string last;
    for (const std::string &op : sim::journal::ops()) {
        if (!op.starts_with("ovk_lttng") && !op.starts_with("ovk_ptn") && !op.starts_with("ovk_sif") &&
            !op.starts_with("kor_subnet") && op != last)
            order += (last = op) + ' ';
    }
    EXPECT_EQ(
        order,
        "ovk_sys_sem_lock_wait kor_nvm_calloc kor_vp_handle_get_tvu_ethernet_egress_encap_ipv4 "
        "kor_vp_handle_get_tvu_ethernet_egress_encap kor_vp_handle_get_expander_ethernet_switch "
        "kor_vp_handle_get_gatr_ethernet_hsw_switch kor_vp_handle_get_gatr_ethernet_hsw_flood "
        "kor_vp_handle_get_gatr_ethernet_hsw_default kor_rsrc_create kor_rsrc_find kor_rsrc_query "
        "kor_rsrc_find kor_rsrc_query kor_rsrc_find kor_rsrc_query kor_rsrc_find kor_rsrc_query "
        "kor_rsrc_allocate_fixed kor_se_state_set kor_rsrc_allocate_fixed kor_se_state_set "
        "kor_rsrc_allocate_fixed kor_se_state_set kor_rsrc_allocate_fixed kor_ptn_symbol_get_id "
        "kor_se_state_set ovk_module_service_function_register kor_nvm_calloc kor_nvm_malloc kor_sem_init "
        "kor_gatr_switch_bridge_age_hysteresis_set " +
            [] {
                std::string maps;
                for (int cos = 0; cos < 8; cos++)
                    maps += "kor_gatr_common_dscp_cos_set kor_gatr_switch_acl_cos_to_dscp_map_set ";
                return maps;
            }() +
            "kor_gatr_switch_bridge_entry_learn kor_sem_post ");

    EXPECT_EQ(sim::journal::entries("kor_rsrc_"),
              (Lines{"kor_rsrc_create(0x7e000001, 0x5, \"ethernet_multicast_groups\", 0x400, 0x0)",
                     "kor_rsrc_create(0x7e000001, 0x5, \"ethernet_flows\", 0xea60, 0x0)",
                     "kor_rsrc_create(0x7e000001, 0x5, \"switch_virtual_intf_id\", 0x400, 0x0)",
                     "kor_rsrc_find(0x7e000001, 0x3, \"ethernet_switch\")",
                     "kor_rsrc_find(0x7e000001, 0x0, \"ethernet_intf_stats\")",
                     "kor_rsrc_query(ethernet_intf_stats)",
                     "kor_rsrc_find(0x7e000001, 0x0, \"ethernet_intf_pcp_stats\")",
                     "kor_rsrc_query(ethernet_intf_pcp_stats)",
                     "kor_rsrc_find(0x7e000001, 0x0, \"ethernet_intf_vlan_stats\")",
                     "kor_rsrc_query(ethernet_intf_vlan_stats)",
                     "kor_rsrc_find(0x7e000001, 0x0, \"ethernet_flow_info\")",
                     "kor_rsrc_query(ethernet_flow_info)",
                     "kor_rsrc_allocate_fixed(ethernet_intf_stats, 0x1, 0x900140)",
                     "kor_rsrc_allocate_fixed(ethernet_intf_pcp_stats, 0x1, 0x900540)",
                     "kor_rsrc_allocate_fixed(ethernet_intf_vlan_stats, 0x1, 0x900940)",
                     "kor_rsrc_allocate_fixed(ethernet_flow_info, 0x100, 0xd0fe19)"}));
    EXPECT_EQ(sim::journal::entries("kor_nvm_malloc"), Lines{"kor_nvm_malloc(0x1c)"});
    // The default entry of switch VLAN 4095, destination 200.
    EXPECT_EQ(sim::journal::entries("kor_gatr_switch_bridge_entry"),
              Lines{"kor_gatr_switch_bridge_entry_learn(0x7e000001, 03000000ff0f00000000000000000000"
                    "000000000000000000000000ff0fc800)"});
}

TEST_F(Init, ReportsSizesAndIdsAtInfoLevel)
{
    module()->log_mask = 15;
    Lines lines = messages_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), 0u); });
    EXPECT_EQ(module()->log_mask, 15u);
    std::erase_if(lines, [](const std::string &line) {
        return line.find("Subnet Size") != std::string::npos || line.find(": Width ") != std::string::npos;
    });
    for (std::string &line : lines)
        line.erase(0, std::string("[ovk_ethernet_log: info] ").size());
    ASSERT_EQ(lines.size(), 18u);
    lines.erase(lines.begin() + 3, lines.begin() + 11);
    EXPECT_EQ(
        lines,
        (Lines{"Initializing at log-level 0x000f", "Profile - OVK_TRIMAX_PROFILE_2",
               "OVK ETH NVM Usage (ovk-eth-module): 87788 Bytes per instance, 87788 Bytes total maximum",
               "OVK ETH NVM Usage (ovk-eth-egress-flow): 52 Bytes per instance, 1664 Bytes total maximum",
               "OVK ETH NVM Total Max Usage: 4139636 Bytes",
               "Allocated Stats NS IDs 0x00900140 for global counters",
               "Allocated Intf PCP Stats NS IDs 0x00900540 for default counters",
               "Allocated Intf VLAN Stats NS IDs 0x00900940 for default counters",
               "Allocated Flow Info NS IDs from 0x00d0fe19 to 0x00d0ff18",
               "Ethernet module " + hex(module()) + " initialized"}));
}

TEST_F(Init, LeavesAValidHandleAndRefusesANullOne)
{
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    const void *object = module()->module_object;
    const std::string head = "[ovk_unknown_log: ERROR] ";
    module()->log_mask = 2; // no system level
    sim::traces::on(true);
    sim::journal_on(true);
    EXPECT_EQ(messages_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), 0u); }),
              Lines{head + "Ethernet Module handle " + hex(module()) + " is already initialized"});
    EXPECT_EQ(sim::journal::ops(), Lines{"ovk_lttng_trace_sif_force_error"}); // no lock, no entry
    EXPECT_EQ(module()->module_object, object);
    EXPECT_EQ(module()->log_mask, 2u);
    EXPECT_EQ(messages_of([&] { EXPECT_EQ(ovk_ethernet_init(nullptr), 1u); }),
              (Lines{head + "Invalid Ethernet module handle 0x00000000",
                     head + "Ethernet module failed to initialize"}));
    EXPECT_EQ(sim::traces::count(sim::traces::forced_error), 3u);
}

TEST_F(Init, LevelThatIsNoSystemLevelStopsItBeforeAnything)
{
    host().parent()->global_log_mask = 7;
    sim::journal_on(true);
    for (const u32 level : {2u, 4u, 8u, 16u, 0x43u, 0x8000000Fu}) {
        module()->log_mask = level;
        lines_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), 15u); });
        EXPECT_EQ(module()->log_mask, level);
    }
    EXPECT_EQ(messages_of([&] { module()->log_mask = 2, ovk_ethernet_init(module()); }),
              Lines{"[ovk_ethernet_log: Warning] Unsupported log-level in Ethernet!"} +
                  gave_up(module(), 15));
    EXPECT_EQ(sim::journal::writes(), Lines{});
    EXPECT_EQ(sim::journal::count("kor_nvm_calloc"), 0u);
    EXPECT_EQ(sim::heap::live_blocks(), 0u);
}

struct failing_step {
    const char *what; // an operation, its `nth` call failing; or, with 0, a name that the chip hasn't got
    u32 nth;
    u32 status;
    const char *causes;
    const char *stands = "";
};

constexpr u32 own = sim::status_injected;

// clang-format off
constexpr failing_step failing_steps[] = {
    {"tvu_ethernet_egress_encap_ipv4", 0, 20, "Failed to find ethernet_egress_encap_ipv4 VP handle"},
    {"tvu_ethernet_egress_encap", 0, 20, "Failed to find ethernet_egress_encap VP handle"},
    {"expander_ethernet_switch", 0, 20, "Failed to find ethernet_switch VP handle"},
    {"gatr_ethernet_hsw_switch", 0, 20, "Failed to find ethernet_hsw_switch VP handle"},
    {"gatr_ethernet_hsw_flood", 0, 20, "Failed to find ethernet_hsw_flood VP handle"},
    {"gatr_ethernet_hsw_default", 0, 20, "Failed to find ethernet_hsw_default VP handle", "db 0 id 0 ns 0 br 0 mem 0"},
    {"kor_rsrc_create", 2, 26, "Failed to create ethernet_flows namespace handle", "db 0 id 0 ns 1 br 0 mem 0"},
    {"ethernet_switch", 0, 25, "Failed to find ethernet_switch namespace handle", "db 0 id 0 ns 3 br 0 mem 0"},
    {"kor_rsrc_query", 2, 28, "Failed to query ethernet_intf_pcp_stats namespace info"},
    {"kor_rsrc_allocate_fixed", 1, 29, "Failed to allocate Stats NS IDs for global counters"},
    {"kor_rsrc_allocate_fixed", 2, 29, "Failed to allocate Intf PCP Stats NS IDs for default counters"},
    {"kor_rsrc_allocate_fixed", 3, 29, "Failed to allocate Intf VLAN Stats NS IDs for default counters"},
    {"kor_rsrc_allocate_fixed", 4, 29, "Failed to allocate Flow Info NS IDs for if_num 0 to 16", "db 0 id 3 ns 3 br 0 mem 0"},
    {"kor_se_state_set", 3, 44, "RTE Error: injected fault, Failed to reset counters in SE memory", "db 0 id 3 ns 3 br 0 mem 0"},
    {"ovk_ethernet.Lookup_Egress_flow_id", 0, 63, "RTE Error: unknown name, Failed to return ID for the XGR tree function "
     "ovk_ethernet.Lookup_Egress_flow_id|Failed to cache Ethernet module's tree IDs", "db 9 id 259 ns 3 br 0 mem 0"},
    {"ovk_ethernet.No_BVI_encap_proto", 0, 63, "RTE Error: unknown name, Failed to return ID for the XGR flow function "
     "ovk_ethernet.No_BVI_encap_proto|Failed to cache Ethernet module's tree IDs"},
    {"ovk_ethernet.Process_CPU_Pkts", 0, 63, "Failed to get the ethernet entry functionID, Error: unknown name&"},
    {"ovk_ethernet.Process_CPU_Pkts_For_Bridging", 0, 63, "Failed to get the ethernet entry functionID, Error: unknown name&"},
    {"kor_se_state_set", 8203, 44, "RTE Error: injected fault, Failed to reset counters in SE memory", "db 15 id 259 ns 3 br 0 mem 0"},
    {"ovk_module_service_function_register", 1, own, "Failed to register Ethernet module's service functions"},
    {"kor_nvm_calloc", 2051, 18, "Failed to allocate memory for MAC FDB", "db 15 id 259 ns 3 br 0 mem 2049"},
    {"kor_nvm_calloc", 10051, 18, "Failed to allocate memory for MAC FDB", "db 15 id 259 ns 3 br 0 mem 10049"},
    {"kor_gatr_switch_bridge_age_hysteresis_set", 1, own, "kor_gatr_switch_bridge_age_hysteresis_set failedError: injected fault&"},
    {"kor_gatr_common_dscp_cos_set", 8, own, "kor_gatr_common_dscp_cos_set FailedError: injected fault&"},
    {"kor_gatr_switch_acl_cos_to_dscp_map_set", 8, own, "kor_gatr_switch_acl_cos_to_dscp_map_set FailedError: injected fault&"},
    {"kor_gatr_switch_bridge_entry_learn", 1, 153, "RTE Error: injected fault, Failed to add entry to HSW Bridging table", "db 15 id 259 ns 3 br 0 mem 10051"},
};
// clang-format on

TEST_F(Init, FailureNamesItsCauseAndFreesTheObjectAlone)
{
    for (const failing_step &step : failing_steps) {
        SCOPED_TRACE(std::string(step.what) + " " + std::to_string(step.nth));
        start_over();
        host().parent()->global_log_mask = 3;
        ASSERT_TRUE(step.nth == 0 ? sim::hide(host().rte(), step.what)
                                  : sim::faults::fail(step.what, step.nth));
        EXPECT_EQ(messages_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), step.status); }),
                  failures(step.causes, step.status) + gave_up(module(), step.status));
        EXPECT_EQ(module()->module_object, nullptr);
        EXPECT_EQ(sim::heap::live_sizes().count(sizeof(ovk_eth_module_object)), 0u);
        if (*step.stands != 0) {
            EXPECT_EQ(holdings(host()), step.stands);
        }
    }
    // The last of them came behind the registration. A second try meets the namespaces.
    EXPECT_TRUE(host().service_record());
    EXPECT_EQ(messages_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), 26u); }),
              failure("Failed to create ethernet_multicast_groups namespace handle", 26) +
                  gave_up(module(), 26));
}

TEST_F(Init, NeedsTheObjectButNeitherBucketsNorLock)
{
    module()->log_mask = 3;
    sim::faults::fail("kor_nvm_calloc");
    EXPECT_EQ(messages_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), 18u); }),
              failure("Memory allocation failed", 18, "FATAL") + gave_up(module(), 18));
    EXPECT_EQ(holdings(host()), "db 0 id 0 ns 0 br 0 mem 0");

    sim::faults::fail("kor_nvm_calloc", 2);
    sim::faults::fail("kor_nvm_calloc", 2049); // counts on behind the first
    sim::faults::fail("kor_nvm_malloc");
    sim::faults::fail("kor_sem_init"); // of a lock that isn't there
    const Lines bucket = failure("Failed to allocate memory for MAC FDB Hash Index", 18);
    EXPECT_EQ(messages_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), 0u); }), bucket + bucket);
    EXPECT_EQ(sim::journal::count("kor_sem_init"), 0u);
    const auto &object = ovk::object_of(module());
    EXPECT_EQ(object.mac_fdb_hash[0], nullptr);
    EXPECT_EQ(object.mac_fdb_lock, nullptr);
    EXPECT_EQ(holdings(host()), "db 15 id 259 ns 3 br 1 mem 10049");
    EXPECT_EQ(ovk_ethernet_shutdown(module()), 0u);
}

TEST_F(Init, ClearsCountersAndTheMacLearningArea)
{
    struct record {
        u32 id, cleared;
    };
    constexpr record records[] = {{0x900140, 256}, {0x900141, 0}, {0x900540, 144}, {0x900940, 144},
                                  {0xD0FE19, 0},   {0xD0CE10, 0}, {0xD0CE11, 32},  {0xD0DE00, 32},
                                  {0xD0EE18, 32},  {0xD0EE19, 0}};
    for (const record &at : records)
        sim::state_put(host().rte(), at.id, 0, std::vector<u8>(300, 0xEE));
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    for (const record &at : records) {
        std::vector<u8> expected(300, 0xEE);
        std::fill_n(expected.begin(), at.cleared, u8{0});
        EXPECT_EQ(sim::state(host().rte(), at.id, 300), expected) << at.id;
    }
}

TEST_F(Init, HandsOutAServiceRecordThatWorks)
{
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    ASSERT_TRUE(host().service_record());
    const ovk_service_record record = *host().service_record();
    const auto low_id = [&](ovk_eth_tree index) { return ovk::tree_of(module(), index).tree_id & 0xFFFF; };
    EXPECT_EQ(record.indirect_fn_id, low_id(OVK_ETH_TREE_ETHERNET_ENCAPSULATION_INDIRECT));
    EXPECT_EQ(record.direct_fn_id, low_id(OVK_ETH_TREE_ETHERNET_ENCAPSULATION_DIRECT));
    EXPECT_EQ(record.reserved_48 + record.reserved_52, 0);
    EXPECT_STREQ(record.error_name(0x2000003), "OVK_ETHERNET_E_INVALID_IF_HANDLE");
    EXPECT_EQ(record.sys_log(module(), 7), 0u);
    EXPECT_EQ(module()->log_mask, 7u);
    EXPECT_EQ(record.shutdown(module()), 0u);
    EXPECT_EQ(module()->module_object, nullptr);
}

TEST_F(Init, LeavesAnotherModulesChipAlone)
{
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    const std::string image = host().image();
    sim::Host second(0, "second");
    EXPECT_EQ(ovk_ethernet_init(second.module()), 0u);
    EXPECT_EQ(host().image(), image);
    EXPECT_EQ(holdings(second), "db 15 id 259 ns 3 br 1 mem 20104");

    ovk_ethernet_exception_action action = {};
    action.type = OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU;
    EXPECT_EQ(ovk_ethernet_exception_configure(second.module(), 0, 1, &action), 0u);
    EXPECT_EQ(ovk_ethernet_service_function_update(second.module()), 0u);
    EXPECT_EQ(host().image(), image);
    EXPECT_EQ(ovk_ethernet_shutdown(second.module()), 0u);
    EXPECT_EQ(host().image(), image);
    EXPECT_EQ(ovk_ethernet_exception_configure(module(), 0, 1, &action), 0u);
}

} // namespace
