// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/namespaces.h"

#include "common/frame.h"
#include "ovk_eth_hw/state_memory.h"

OVK_LOG_FILE(ovk_eth_hw, 6);

namespace {

using object = ovk_eth_module_object;

struct created_row {
    const char *name;
    u32 max_ids;
    kor_rsrc ovk_eth_module_object::*handle;
    const char *destroy_failed;
};

constexpr created_row created[] = {
    {.name = "ethernet_multicast_groups",
     .max_ids = 1024,
     .handle = &object::multicast_group_ns_hdl,
     .destroy_failed = "Failed to destroy multicast_group_ns_hdl\n"},
    {.name = "ethernet_flows",
     .max_ids = 60000,
     .handle = &object::eth_flows_ns_hdl,
     .destroy_failed = "Failed to destroy eth_flows_ns_hdl\n"},
    {.name = "switch_virtual_intf_id",
     .max_ids = 1024,
     .handle = &object::virtual_intf_id,
     .destroy_failed = "Failed to destroy virtual_intf_id\n"},
};

struct found_row {
    const char *name;
    ovk_eth_namespace ovk_eth_module_object::*ns;
};

constexpr found_row found[] = {
    {.name = "ethernet_intf_stats", .ns = &object::intf_stats_ns},
    {.name = "ethernet_intf_pcp_stats", .ns = &object::intf_pcp_stats_ns},
    {.name = "ethernet_intf_vlan_stats", .ns = &object::intf_vlan_stats_ns},
    {.name = "ethernet_flow_info", .ns = &object::flow_info_ns},
};

constexpr u32 intf_stats_size = 256;
constexpr u32 default_stats_size = 144;

u32 find(ovk_module *module, u32 kind, const char *name, kor_rsrc *out)
{
    if (kor_rsrc_find(module->rte_handle, kind, name, out) != KOR_OK)
        return OVK_FAIL(module, KOR_E_RSRC_NOT_FOUND, "Failed to find %s namespace handle\n", name);
    return KOR_OK;
}

template <class Line>
u32 report_failure(ovk_module *module, u32 status, Line line)
{
    line([&](ovk::site where, const char *text) {
        ovk::log_failure(module, ovk::log_class::error, where, status, text);
    });
    return status;
}

template <class Line>
void report(ovk_module *module, Line line)
{
    line([&](ovk::site where, const char *format, auto... args) {
        ovk::log_message(module, ovk::log_class::info, where, format, args...);
    });
}

// The namespace's fixed ids are those that its figures report.
template <class Failed, class Taken>
u32 take_ids(ovk_module *module, ovk_eth_namespace &ns, u32 count, u32 &first_id, Failed failed,
             Taken taken)
{
    if (kor_rsrc_allocate_fixed(ns.handle, count, &ns.info.first_id) != KOR_OK)
        return report_failure(module, KOR_E_RSRC_ALLOCATE, failed);
    first_id = ns.info.first_id;
    report(module, taken);
    return KOR_OK;
}

// One id, whose counters start from zero.
template <class Failed, class Taken>
u32 take_counters(ovk_module *module, ovk_eth_namespace &ns, u32 size, u32 &id, Failed failed, Taken taken)
{
    OVK_TRY(take_ids(module, ns, 1, id, failed, taken));
    return ovk_eth_clear_se_state(module, id, size);
}

template <class Failed, class Freed>
u32 free_ids(ovk_module *module, const ovk_eth_namespace &ns, u32 first_id, u32 count, Failed failed,
             Freed freed)
{
    if (kor_rsrc_free(ns.handle, first_id, count) != KOR_OK)
        return report_failure(module, KOR_E_RSRC_FREE, failed);
    report(module, freed);
    return KOR_OK;
}

} // namespace

u32 ovk::create_namespaces(ovk_module *module, ovk_eth_module_object &object)
{
    for (const created_row &row : created)
        if (kor_rsrc_create(module->rte_handle, KOR_RSRC_POOL, row.name, row.max_ids, 0,
                            &(object.*row.handle)) != KOR_OK)
            return OVK_FAIL(module, KOR_E_RSRC_CREATE, "Failed to create %s namespace handle\n", row.name);
    return KOR_OK;
}

u32 ovk::find_namespaces(ovk_module *module, ovk_eth_module_object &object)
{
    OVK_TRY(find(module, KOR_RSRC_SWITCH, "ethernet_switch", &object.switch_ns));
    for (const found_row &row : found) {
        ovk_eth_namespace &ns = object.*row.ns;
        OVK_TRY(find(module, KOR_RSRC_STATE, row.name, &ns.handle));
        if (kor_rsrc_query(ns.handle, &ns.info) != KOR_OK)
            return OVK_FAIL(module, KOR_E_RSRC_QUERY, "Failed to query %s namespace info\n", row.name);
    }
    return KOR_OK;
}

// The four pools' lines differ in wording, so each has its own here and in free_fixed_ids(); the flow info
// ones say 16 although 256 ids are meant.
u32 ovk::take_fixed_ids(ovk_module *module, ovk_eth_module_object &object)
{
    u32 &global = object.global_stats_ns_id;
    u32 &pcp = object.intf_pcp_default_ns_id;
    u32 &vlan = object.intf_vlan_default_ns_id;
    u32 &first = object.flow_info_first_id;

    OVK_TRY(take_counters(module, object.intf_stats_ns, intf_stats_size, global,
                          OVK_LINE("Failed to allocate Stats NS IDs for global counters\n"),
                          OVK_LINE("Allocated Stats NS IDs 0x%08x for global counters\n", global)));
    OVK_TRY(take_counters(module, object.intf_pcp_stats_ns, default_stats_size, pcp,
                          OVK_LINE("Failed to allocate Intf PCP Stats NS IDs for default counters\n"),
                          OVK_LINE("Allocated Intf PCP Stats NS IDs 0x%08x for default counters\n", pcp)));
    OVK_TRY(
        take_counters(module, object.intf_vlan_stats_ns, default_stats_size, vlan,
                      OVK_LINE("Failed to allocate Intf VLAN Stats NS IDs for default counters\n"),
                      OVK_LINE("Allocated Intf VLAN Stats NS IDs 0x%08x for default counters\n", vlan)));
    return take_ids(module, object.flow_info_ns, OVK_ETH_INTERFACE_NUMBERS, first,
                    OVK_LINE("Failed to allocate Flow Info NS IDs for if_num 0 to 16\n"),
                    OVK_LINE("Allocated Flow Info NS IDs from 0x%08x to 0x%08x\n", first,
                             first + OVK_ETH_INTERFACE_NUMBERS - 1));
}

u32 ovk::free_fixed_ids(ovk_module *module, ovk_eth_module_object &object)
{
    const u32 global = object.global_stats_ns_id;
    const u32 pcp = object.intf_pcp_default_ns_id;
    const u32 vlan = object.intf_vlan_default_ns_id;
    const u32 first = object.flow_info_first_id;

    OVK_TRY(free_ids(module, object.intf_stats_ns, global, 1,
                     OVK_LINE("Failed to free Stats NS IDs for global counters\n"),
                     OVK_LINE("Freed Stats NS IDs 0x%08x for global counters\n", global)));
    OVK_TRY(free_ids(module, object.intf_pcp_stats_ns, pcp, 1,
                     OVK_LINE("Failed to free Intf PCP Stats NS IDs for default counters\n"),
                     OVK_LINE("Freed Intf PCP Stats NS IDs 0x%08x for default counters\n", pcp)));
    OVK_TRY(free_ids(module, object.intf_vlan_stats_ns, vlan, 1,
                     OVK_LINE("Failed to free Intf VLAN Stats NS IDs for default counters\n"),
                     OVK_LINE("Freed Intf VLAN Stats NS IDs 0x%08x for default counters\n", vlan)));
    return free_ids(module, object.flow_info_ns, first, OVK_ETH_INTERFACE_NUMBERS,
                    OVK_LINE("Failed to free Flow Info NS IDs for if_num 0 to 16\n"),
                    OVK_LINE("Freed Flow Info NS IDs from 0x%08x to 0x%08x\n", first,
                             first + OVK_ETH_INTERFACE_NUMBERS - 1));
}

u32 ovk::destroy_namespaces(ovk_module *module, ovk_eth_module_object &object)
{
    for (const created_row &row : created)
        if (kor_rsrc_destroy(module->rte_handle, object.*row.handle) != KOR_OK)
            return ovk::log_failure(module, ovk::log_class::error, OVK_HERE, KOR_E_RSRC_DESTROY,
                                    row.destroy_failed);
    return KOR_OK;
}
