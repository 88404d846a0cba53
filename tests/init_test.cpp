// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include "ovk_sif.h"

namespace {

using namespace test;
using Init = HostTest;

std::string gave_up(const ovk_module *module)
{
    return "|Ethernet module " + hex(module) + " failed to initialize";
}

constexpr char steps[] =
    R"(ovk_sys_sem_lock_wait kor_nvm_calloc kor_vp_handle_get_tvu_ethernet_egress_encap_ipv4
kor_vp_handle_get_tvu_ethernet_egress_encap kor_vp_handle_get_expander_ethernet_switch
kor_vp_handle_get_gatr_ethernet_hsw_switch kor_vp_handle_get_gatr_ethernet_hsw_flood
kor_vp_handle_get_gatr_ethernet_hsw_default
create(0x7e000001, 0x5, "ethernet_multicast_groups", 0x400, 0x0)
create(0x7e000001, 0x5, "ethernet_flows", 0xea60, 0x0)
create(0x7e000001, 0x5, "switch_virtual_intf_id", 0x400, 0x0)
find(0x7e000001, 0x3, "ethernet_switch") find(0x7e000001, 0x0, "ethernet_intf_stats")
query(ethernet_intf_stats) find(0x7e000001, 0x0, "ethernet_intf_pcp_stats")
query(ethernet_intf_pcp_stats) find(0x7e000001, 0x0, "ethernet_intf_vlan_stats")
query(ethernet_intf_vlan_stats) find(0x7e000001, 0x0, "ethernet_flow_info")
query(ethernet_flow_info) allocate_fixed(ethernet_intf_stats, 0x1, 0x900140) kor_se_state_set
allocate_fixed(ethernet_intf_pcp_stats, 0x1, 0x900540) kor_se_state_set
allocate_fixed(ethernet_intf_vlan_stats, 0x1, 0x900940) kor_se_state_set
allocate_fixed(ethernet_flow_info, 0x100, 0xd0fe19) kor_ptn_symbol_get_id kor_se_state_set
ovk_module_service_function_register kor_nvm_calloc kor_nvm_malloc kor_sem_init
kor_gatr_switch_bridge_age_hysteresis_set
)";

TEST_F(Init, TakesItsStepsInOrder)
{
    sim::journal_on(true);
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    // Calls in a row stand for themselves once, and only those on namespaces in full; what only logs and
    // what makes the trees ready is left out.
    const std::regex other("^(ovk_lttng|ovk_ptn|ovk_sif|kor_subnet)");
    std::string order, last;
    for (const std::string &entry : sim::journal::entries()) {
        const std::string op = entry.substr(0, entry.find('('));
        if (op.starts_with("kor_rsrc_"))
            order += entry.substr(9) + ' ';
        else if (!std::regex_search(op, other) && op != last)
            order += op + ' ';
        last = std::regex_search(op, other) ? last : op;
    }
    std::string maps;
    for (int cos = 0; cos < 8; cos++)
        maps += "kor_gatr_common_dscp_cos_set kor_gatr_switch_acl_cos_to_dscp_map_set ";
    EXPECT_EQ(order, std::regex_replace(std::string(steps), std::regex("\n"), " ") + maps +
                         "kor_gatr_switch_bridge_entry_learn kor_sem_post ");
    EXPECT_EQ(sim::journal::entries("kor_nvm_malloc"), Lines{"kor_nvm_malloc(0x1c)"});
    // The default entry of switch VLAN 4095, destination 200.
    EXPECT_EQ(sim::journal::entries("kor_gatr_switch_bridge_entry"),
              Lines{"kor_gatr_switch_bridge_entry_learn(0x7e000001, 03000000ff0f00000000000000000000"
                    "000000000000000000000000ff0fc800)"});
}

TEST_F(Init, ReportsSizesAndIdsAtInfoLevel)
{
    std::string text = told(15, [&] { return ovk_ethernet_init(module()); });
    const size_t sizes = text.find("info] OVK ETH NVM Usage (ovk-eth-l2if)");
    text.erase(sizes, text.find("info] OVK ETH NVM Usage (ovk-eth-egress-flow)") - sizes);
    std::string expected =
        "info] Initializing at log-level 0x000f\ninfo] Profile - OVK_TRIMAX_PROFILE_2\n"
        "info] OVK ETH NVM Usage (ovk-eth-module): 87788 Bytes per instance, 87788 Bytes total maximum\n"
        "info] OVK ETH NVM Usage (ovk-eth-egress-flow): 52 Bytes per instance, 1664 Bytes total maximum\n"
        "info] OVK ETH NVM Total Max Usage: 4139636 Bytes\n"
        "info] Allocated Stats NS IDs 0x00900140 for global counters\n"
        "info] Allocated Intf PCP Stats NS IDs 0x00900540 for default counters\n"
        "info] Allocated Intf VLAN Stats NS IDs 0x00900940 for default counters\n"
        "info] Allocated Flow Info NS IDs from 0x00d0fe19 to 0x00d0ff18\n";
    // Those with a database: the width of their keys, and for how many entries and how it is sized.
    std::istringstream trees(
        "Vlan_Assignment_Ext_Tree 60 0 0 Multicast_Lookup 63 32 0 Ctag_Stag_Map 68 0 0 "
        "Lookup_flow_id 85 60000 1 Dest_Mac_Index_Lookup 48 64 1 Lookup_flow_id_optimized 28 60000 1 "
        "Lookup_CPU_flow 52 64 1 Lookup_Policing_Policy 84 0 0 Lookup_Intf_PCP_Policing_Policy 24 0 0 "
        "Lookup_Egress_flow_id 92 32 1 Priority_Map_Lookup 28 1152 0 Port_Priority_Map_Lookup 16 18 0 "
        "L2CP_Priority_Map_Lookup 32 0 0 QoS_policy_lookup 23 576 0 Port_QoS_policy_lookup 11 9 0");
    std::string name;
    for (u32 width = 0, entries = 0, is_large = 0; trees >> name >> width >> entries >> is_large;) {
        u32 size = 0, optimized = 0;
        ASSERT_EQ(ovk_sif_max_subnet_entry_sz_get(width, is_large, &size, &optimized), 0u);
        expected +=
            printed("info] ovk_ethernet.%s: Width %u, Expected Entries %u\n", name.c_str(), width,
                    entries) +
            printed(" Subnet Size %u, Optimized Subnet Size %u\n", size * entries, optimized * entries);
    }
    EXPECT_EQ(text, expected + "info] Ethernet module " + hex(module()) + " initialized\n");
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
                  failures(gave_up(module()).substr(1), 15));
    EXPECT_EQ(sim::journal::writes(), Lines{});
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
        ASSERT_TRUE(step.nth == 0 ? sim::hide(host().rte(), step.what)
                                  : sim::faults::fail(step.what, step.nth));
        expect([&] { return ovk_ethernet_init(module()); }, step.status, step.causes + gave_up(module()));
        EXPECT_EQ(module()->module_object, nullptr);
        if (*step.stands != 0) {
            EXPECT_EQ(holdings(host()), step.stands);
        }
    }
    // The last of them came behind the registration. A second try meets the namespaces.
    EXPECT_TRUE(host().service_record());
    expect([&] { return ovk_ethernet_init(module()); }, 26,
           "Failed to create ethernet_multicast_groups namespace handle" + gave_up(module()));
}

TEST_F(Init, NeedsTheObjectButNeitherBucketsNorLock)
{
    module()->log_mask = 3;
    sim::faults::fail("kor_nvm_calloc");
    EXPECT_EQ(messages_of([&] { EXPECT_EQ(ovk_ethernet_init(module()), 18u); }),
              failure("Memory allocation failed", 18, "FATAL") + failures(gave_up(module()).substr(1), 18));
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
    constexpr u32 records[][2] = {{0x900140, 256}, {0x900141, 0}, {0x900540, 144}, {0x900940, 144},
                                  {0xD0FE19, 0},   {0xD0CE10, 0}, {0xD0CE11, 32},  {0xD0DE00, 32},
                                  {0xD0EE18, 32},  {0xD0EE19, 0}};
    for (const auto &[id, cleared] : records)
        sim::state_put(host().rte(), id, 0, std::vector<u8>(300, 0xEE));
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    for (const auto &[id, cleared] : records) {
        std::vector<u8> expected(300, 0xEE);
        std::fill_n(expected.begin(), cleared, u8{0});
        EXPECT_EQ(sim::state(host().rte(), id, 300), expected) << id;
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

    const ovk_ethernet_exception_action action = {.type = 2, .send_to_cpu = {}};
    EXPECT_EQ(ovk_ethernet_exception_configure(second.module(), 0, 1, &action), 0u);
    EXPECT_EQ(ovk_ethernet_service_function_update(second.module()), 0u);
    EXPECT_EQ(host().image(), image);
    EXPECT_EQ(ovk_ethernet_shutdown(second.module()), 0u);
    EXPECT_EQ(host().image(), image);
    EXPECT_EQ(ovk_ethernet_exception_configure(module(), 0, 1, &action), 0u);
}

} // namespace
