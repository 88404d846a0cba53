// SPDX-License-Identifier: Apache-2.0
#include "calls.h"

#include "common/module_object.h"
#include "kor_nvm.h"

namespace {

constexpr ovk_ethernet_exception_action send_to_cpu = {
    .type = OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU,
    .send_to_cpu = {.priority = bench::priority,
                    .cpu_param = bench::cpu_param,
                    .cpu_queue = {.hi = bench::cpu_queue >> 8, .lo = bench::cpu_queue & 0xFF},
                    .queue_handle = bench::queue_handle}};
constexpr ovk_ethernet_exception_action drop = {.type = OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP};

// A live interface as the measured create makes it, for deletes.
ovk_eth_intf live_port;

} // namespace

ovk_ethernet_if_handle bench::trunk;

u32 bench::begin(ovk_module *module)
{
    ovk_ethernet_intf_attrs attrs = port_attrs;
    ovk_ethernet_if_handle handle = nullptr;

    u32 rc = ovk_ethernet_init(module);
    rc += ovk_ethernet_interface_create(module, &attrs, &handle);
    if (rc != 0)
        return rc;
    live_port = *handle;
    rc = ovk_ethernet_interface_delete(module, handle);
    attrs.if_num = trunk_port;
    return rc + ovk_ethernet_interface_create(module, &attrs, &trunk);
}

u32 bench::end(ovk_module *module)
{
    const u32 rc = ovk_ethernet_interface_delete(module, trunk);
    return rc + ovk_ethernet_shutdown(module);
}

u32 bench::call_frame(ovk_module *module)
{
    return ovk_ethernet_log_enable(module, 0);
}

u32 bench::call_send_to_cpu(ovk_module *module)
{
    return ovk_ethernet_exception_configure(module, domain, type, &send_to_cpu);
}

u32 bench::call_drop(ovk_module *module)
{
    return ovk_ethernet_exception_configure(module, domain, type, &drop);
}

u32 bench::call_create_delete(ovk_module *module)
{
    ovk_ethernet_if_handle handle = nullptr;
    const u32 rc = ovk_ethernet_interface_create(module, &port_attrs, &handle);
    return rc + ovk_ethernet_interface_delete(module, handle);
}

u32 bench::call_create(ovk_module *module)
{
    ovk_eth_module_object &object = ovk::object_of(module);
    ovk_ethernet_if_handle handle = nullptr;
    const u32 rc = ovk_ethernet_interface_create(module, &port_attrs, &handle);
    object.port_owner_table[port] = nullptr;
    kor_nvm_free(object.hsw_port_vlan_table[handle->hsw_if_id]);
    kor_nvm_free(handle);
    return rc;
}

u32 bench::call_delete(ovk_module *module)
{
    ovk_eth_module_object &object = ovk::object_of(module);
    auto *handle = static_cast<ovk_ethernet_if_handle>(kor_nvm_malloc(sizeof(ovk_eth_intf)));
    void *vlans = kor_nvm_malloc(OVK_ETH_VLAN_IDS * sizeof(ovk_eth_vlan_entry));
    *handle = live_port;
    object.port_owner_table[port] = handle;
    object.hsw_port_vlan_table[handle->hsw_if_id] = static_cast<ovk_eth_vlan_entry *>(vlans);
    return ovk_ethernet_interface_delete(module, handle);
}

// A count of 0 makes each add the first of its bridge group.
u32 bench::call_vlan_add(ovk_module *module)
{
    trunk->bg_ref_count[bridge_group] = 0;
    return ovk_ethernet_vlan_id_add(module, trunk, vlan, bridge_group);
}

// A delete of what isn't there makes the same calls.
u32 bench::call_vlan_delete(ovk_module *module)
{
    return ovk_ethernet_vlan_id_del(module, trunk, vlan, bridge_group);
}

u32 bench::call_egress_vlan(ovk_module *module)
{
    return ovk_ethernet_port_egress_vlan_config(module, trunk, bridge_group,
                                                OVK_ETHERNET_PORT_TAG_TYPE_SINGLE_TAGGED, vlan, 1);
}

u32 bench::call_counters(ovk_module *module)
{
    ovk_eth_port_stats stats;
    return ovk_ethernet_port_statistics_get(module, trunk, &stats, 0);
}

u32 bench::call_l2_counters(ovk_module *module)
{
    ovk_eth_l2_stats stats;
    return ovk_ethernet_l2_interface_statistics_get(module, trunk, &stats);
}
