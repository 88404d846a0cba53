// SPDX-License-Identifier: Apache-2.0
#include "ovk_ethernet_interface.h"

#include "common/frame.h"
#include "common/mac.h"
#include "common/op.h"
#include "kor_nvm.h"
#include "ovk_eth_helper/identifiers.h"
#include "ovk_eth_helper/interface.h"
#include "ovk_eth_helper/names.h"
#include "ovk_eth_hw/association.h"
#include "ovk_eth_hw/port_control.h"
#include "ovk_eth_hw/port_rules.h"
#include "ovk_eth_hw/port_setup.h"
#include "ovk_eth_hw/port_state.h"
#include "ovk_eth_hw/state_memory.h"
#include "ovk_eth_hw/statistics.h"
#include "ovk_eth_hw/switch_port.h"
#include "ovk_sif.h"

OVK_LOG_FILE(ovk_ethernet, 5);

using ovk::word;

namespace {

constexpr u8 no_key_slot = 0xff;
constexpr u32 interface_counters_size = 256;
constexpr ovk_eth_mac_prefix broadcast = {.mac = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff},
                                          .bits = OVK_ETH_MAC_BITS};

constexpr char routed_pipeline[] = "ethernet_hsw_higher_layer_forward";
constexpr char other_pipeline[] = "ethernet_static_forwarding";

ovk_sif_demux_entry demux_entry(const ovk_eth_module_object &object, const ovk_eth_intf &port)
{
    return {.entry_fn_id = object.cpu_entry_fn_id, .port_value = static_cast<u16>(port.if_id)};
}

u32 demux_failed(ovk_module *module, u32 status)
{
    return OVK_FAIL(module, status, "Failed to program demux tree: %s\n",
                    ovk_sys_status_get(module->parent, status));
}

// A record as it is before anything is known of the hardware.
u32 fill_record(ovk_module *module, ovk_eth_intf &port, const ovk_ethernet_intf_attrs &attrs)
{
    ovk_eth_module_object &object = ovk::object_of(module);

    port.if_id = ovk_eth_create_if_id(attrs.if_num);
    OVK_INFO(module, "Assigned internal interface ID 0x%04x\n", port.if_id);
    port.if_type = INTERFACE_TYPE_PHY;
    port.phy.promiscuous = 1;
    port.phy.in_flow_filter = 1;
    port.phy.out_flow_filter = 1;
    port.phy.spare_flag = 0;
    port.phy.phy_spare_byte = 1;
    port.phy.phy_spare_word = 1;
    port.phy.vlan_assign_policy = OVK_ETHERNET_VLAN_ASSIGN_PORT_BASED;
    port.phy.vlan_eth_type[0] = OVK_ETH_VLAN_ETH_TYPE;
    port.phy.vlan_eth_type[1] = OVK_ETH_VLAN_ETH_TYPE;
    port.hsw_if_id = ovk_eth_create_hsw_if_id(attrs.if_num);

    ovk_eth_vlan_entry *&table = object.hsw_port_vlan_table[port.hsw_if_id];
    table = static_cast<ovk_eth_vlan_entry *>(kor_nvm_calloc(OVK_ETH_VLAN_IDS, sizeof(ovk_eth_vlan_entry)));
    if (table == nullptr)
        return OVK_FAIL_FATAL(module, KOR_E_NO_MEMORY, "Memory allocation failed\n");
    for (ovk_eth_aggr_slot &slot : object.aggr_slots)
        slot.port_key_slot[port.hsw_if_id] = no_key_slot;
    port.phy.attrs = attrs;
    return KOR_OK;
}

// The port's counters, which start from zero.
u32 take_counters(ovk_module *module, ovk_eth_intf &port)
{
    const u32 if_num = port.phy.attrs.if_num;

    if (const u32 rc = ovk_sys_interface_id_alloc(module->parent, &port.stats_ns_id))
        return OVK_FAIL(module, rc, "Failed to allocate Stats NS ID for if_num %d\n", if_num);
    OVK_INFO(module, "Allocated Stats NS ID 0x%08x for if_num 0x%04x\n", port.stats_ns_id, if_num);
    OVK_TRY(ovk_eth_clear_se_state(module, port.stats_ns_id, interface_counters_size));
    if (ovk::object_of(module).port_attributes_override != 0)
        return KOR_OK;
    ovk_eth_port_stats ignored;
    return ovk_eth_port_stats_get(module, if_num, &ignored, 1);
}

// Who the port is, in the classifier's trees.
u32 add_identity(ovk_module *module, ovk_eth_intf &port)
{
    const ovk_ethernet_intf_attrs &attrs = port.phy.attrs;
    const u32 flags = attrs.if_num + (attrs.fwd_mode << OVK_ETH_FWD_MODE_SHIFT) + OVK_ETH_FLOW_FILTER_BIT;

    port.inif_flags = flags;
    OVK_TRY(
        ovk_eth_inif_flags_stats(module, OVK_ETH_ADD, port.hsw_if_id, port.stats_ns_id, port.inif_flags));
    port.outif_flags = flags + (attrs.encap_type != OVK_ETHERNET_ENCAP_DIX ? OVK_ETH_LLC_SNAP_BIT : 0);
    OVK_TRY(ovk_eth_outif_flags_stats(module, OVK_ETH_ADD, port.if_id, port.stats_ns_id, port.outif_flags));
    OVK_TRY(ovk_eth_map_dest_map_index_to_mac_or_lag_id(module, OVK_ETH_ADD, port.hsw_if_id, port.if_id));
    OVK_TRY(ovk_eth_map_subif_ns_id(module, OVK_ETH_ADD, port.if_id, port.stats_ns_id));
    return ovk_eth_map_ns_intf_id(module, OVK_ETH_ADD, port.stats_ns_id, port.if_id);
}

// The switch's side, which only switched trunks and routed ports have.
u32 enter_switch(ovk_module *module, const ovk_eth_intf &port)
{
    const u32 if_num = port.phy.attrs.if_num;

    switch (port.phy.attrs.fwd_mode) {
    case OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK:
        OVK_TRY(ovk_eth_set_gatr_port_hsw_attr(module, if_num, 1, 1));
        OVK_TRY(ovk_eth_set_gatr_hsw_bridging_dest_vps(module, OVK_ETH_ADD, static_cast<u8>(port.hsw_if_id),
                                                       if_num));
        OVK_TRY(ovk_eth_hsw_port_learning_options_set(module, if_num, 1));
        OVK_TRY(ovk_eth_hsw_port_flooding_option_set(module, if_num, 1));
        return ovk_eth_router_vlan_id(module, if_num, OVK_ETH_ADD);
    case OVK_ETHERNET_FWD_MODE_HIGHER_LAYER:
        OVK_TRY(ovk_eth_set_gatr_port_hsw_attr(module, if_num, 1, 0));
        OVK_TRY(ovk_eth_hsw_port_learning_options_set(module, if_num, 0));
        OVK_TRY(ovk_eth_hsw_port_flooding_option_set(module, if_num, 0));
        return ovk_eth_router_vlan_id(module, if_num, OVK_ETH_ADD);
    default:
        return KOR_OK;
    }
}

u32 leave_switch(ovk_module *module, const ovk_eth_intf &port)
{
    const u32 if_id = port.if_id;

    switch (port.phy.attrs.fwd_mode) {
    case OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK:
        OVK_TRY(ovk_eth_set_gatr_hsw_bridging_dest_vps(module, OVK_ETH_REMOVE,
                                                       static_cast<u8>(port.hsw_if_id), if_id));
        OVK_TRY(ovk_eth_hsw_port_learning_options_set(module, if_id, 0));
        OVK_TRY(ovk_eth_hsw_port_flooding_option_set(module, if_id, 0));
        return ovk_eth_router_vlan_id(module, if_id, OVK_ETH_REMOVE);
    case OVK_ETHERNET_FWD_MODE_HIGHER_LAYER:
        return ovk_eth_router_vlan_id(module, if_id, OVK_ETH_REMOVE);
    default:
        return KOR_OK;
    }
}

u32 set_up_mac(ovk_module *module, const ovk_ethernet_intf_attrs &attrs)
{
    const u32 if_num = attrs.if_num;

    if (ovk::object_of(module).port_attributes_override != 0)
        return KOR_OK;
    if (!ovk::is_xgmac_number(if_num)) {
        OVK_TRY(ovk_eth_if_speed_set(module, if_num, attrs.output_rate));
        OVK_TRY(attrs.full_duplex != 0 ? ovk_eth_if_full_duplex_set(module, if_num)
                                       : ovk_eth_if_full_duplex_reset(module, if_num));
        OVK_TRY(attrs.autoneg != 0 ? ovk_eth_if_autoneg_enable(module, if_num)
                                   : ovk_eth_if_autoneg_disable(module, if_num));
    }
    OVK_TRY(attrs.rx_enable != 0 ? ovk_eth_if_rx_enable(module, if_num)
                                 : ovk_eth_if_rx_disable(module, if_num));
    return attrs.tx_enable != 0 ? ovk_eth_if_tx_enable(module, if_num)
                                : ovk_eth_if_tx_disable(module, if_num);
}

// Which frames end in the port, and how the ones that leave it are headed.
u32 add_addresses(ovk_module *module, const ovk_eth_intf &port)
{
    const ovk_eth_module_object &object = ovk::object_of(module);
    const ovk_ethernet_intf_attrs &attrs = port.phy.attrs;
    const u8 *mac = attrs.src_mac;

    OVK_TRY(ovk_eth_if_src_mac_set(module, attrs.if_num, mac));
    OVK_TRY(ovk_eth_recv_mac(module, OVK_ETH_ADD, port.if_id, broadcast, OVK_ETH_MAC_TYPE_BROADCAST_RULE));
    OVK_TRY(
        ovk_eth_recv_mac(module, OVK_ETH_ADD, port.if_id, ovk::whole_mac(mac), OVK_ETH_MAC_TYPE_OWN_RULE));
    OVK_TRY(ovk_eth_allow_mac(module, attrs.if_num, port.phy.promiscuous, mac, mac, mac));
    OVK_TRY(ovk_eth_mac_addr(module, OVK_ETH_ADD, mac, port.if_id));
    OVK_TRY(ovk_eth_default_association(module, OVK_ETH_ADD, port.if_id));
    OVK_TRY(ovk_eth_intf_flow_data_set(module, port.if_id, mac, attrs.encap_type));
    return ovk_eth_if_info_se_set(module, object.flow_info_first_id + port.if_id, mac, attrs.encap_type);
}

// `port` is a record that fill_record() has filled.
u32 bring_up(ovk_module *module, ovk_eth_intf &port)
{
    ovk_eth_module_object &object = ovk::object_of(module);
    const ovk_ethernet_intf_attrs &attrs = port.phy.attrs;
    const u32 if_num = attrs.if_num;
    const char *pipeline =
        attrs.fwd_mode == OVK_ETHERNET_FWD_MODE_HIGHER_LAYER ? routed_pipeline : other_pipeline;

    OVK_TRY(take_counters(module, port));
    OVK_TRY(add_identity(module, port));
    OVK_TRY(ovk_eth_link_tag_msb(module, if_num, port.hsw_if_id, &port.phy.tag_start, &port.phy.tag_stop));
    OVK_TRY(ovk_eth_set_gatr_port_attr(module, if_num, pipeline, nullptr));
    OVK_TRY(enter_switch(module, port));
    OVK_TRY(set_up_mac(module, attrs));
    OVK_TRY(add_addresses(module, port));
    const ovk_sif_demux_entry entry = demux_entry(object, port);
    if (const u32 rc = ovk_sif_netDriver_demux_add(module->parent, &entry))
        return demux_failed(module, rc);
    object.port_owner_table[if_num] = &port;
    OVK_INFO(module, "Created Interface 0x%08x\n", word(&port));
    return KOR_OK;
}

void bury(ovk_eth_intf *port)
{
    port->if_magic = 0;
    port->eth_handle = nullptr;
    port->if_guard = 0;
    kor_nvm_free(port);
}

u32 create(ovk_module *module, const ovk_ethernet_intf_attrs &attrs, ovk_ethernet_if_handle *if_handle)
{
    OVK_TRY(ovk_eth_valid_intf_attrs(module, &attrs));
    if (const ovk_eth_intf *owner = ovk::object_of(module).port_owner_table[attrs.if_num])
        return OVK_FAIL(module, OVK_ETHERNET_E_INTF_ALREADY_EXISTS,
                        "Interface handle for specified port already exsits: 0x%08x\n", word(owner));
    auto *port = static_cast<ovk_eth_intf *>(kor_nvm_calloc(1, sizeof(ovk_eth_intf)));
    if (port == nullptr)
        return OVK_FAIL_FATAL(module, KOR_E_NO_MEMORY, "Memory allocation failed\n");
    port->eth_handle = module;
    port->if_guard = OVK_ETH_IF_GUARD;
    port->if_magic = OVK_ETH_IF_MAGIC;
    // The caller sees the handle before the work is done, and loses it again if it fails.
    *if_handle = port;
    OVK_TRY(fill_record(module, *port, attrs));
    return bring_up(module, *port);
}

// Most of what create did, in another order. It leaves what the adapter was told (pipelines, tag, filters,
// source address), the switch's parsing, ACL and multicast settings of the port, the record in state memory
// at the id of its flow information, and the hash keys that it last had in aggregates. Nor does it know of
// what came after create: VLANs, egress rules and ageing stay and pass to the port's next owner.
u32 take_down(ovk_module *module, ovk_eth_intf &port)
{
    ovk_eth_module_object &object = ovk::object_of(module);
    const u32 if_num = port.phy.attrs.if_num;
    const u32 if_id = port.if_id;
    const u8 *mac = port.phy.attrs.src_mac;

    // The table's pointer stays: when a delete fails from here on, nothing may touch the port's VLANs.
    kor_nvm_free(object.hsw_port_vlan_table[port.hsw_if_id]);
    if (const u32 rc = ovk_sys_interface_id_free(module->parent, port.stats_ns_id))
        return OVK_FAIL(module, rc, "Failed to free Stats NS ID for interface %d\n", if_id);
    OVK_INFO(module, "Freed Stats NS ID 0x%08x for the interface %d\n", port.stats_ns_id, if_id);
    OVK_TRY(ovk_eth_inif_flags_stats(module, OVK_ETH_REMOVE, port.hsw_if_id, 0, 0));
    OVK_TRY(ovk_eth_outif_flags_stats(module, OVK_ETH_REMOVE, if_id, 0, 0));
    OVK_TRY(leave_switch(module, port));
    OVK_TRY(ovk_eth_map_dest_map_index_to_mac_or_lag_id(module, OVK_ETH_REMOVE, port.hsw_if_id, 0));
    OVK_TRY(ovk_eth_map_subif_ns_id(module, OVK_ETH_REMOVE, if_id, 0));
    OVK_TRY(ovk_eth_map_ns_intf_id(module, OVK_ETH_REMOVE, port.stats_ns_id, 0));
    OVK_TRY(ovk_eth_intf_flow_data_clear(module, if_id));
    // The bare id, not the one that create wrote to.
    OVK_TRY(ovk_eth_if_info_se_reset(module, if_id));
    if (object.port_attributes_override == 0) {
        // Both are tried whatever the first gives.
        const u32 rx_status = ovk_eth_if_rx_disable(module, if_num);
        OVK_TRY(rx_status + ovk_eth_if_tx_disable(module, if_num));
    }
    OVK_TRY(ovk_eth_recv_mac(module, OVK_ETH_REMOVE, if_id, broadcast, 0));
    OVK_TRY(ovk_eth_recv_mac(module, OVK_ETH_REMOVE, if_id, ovk::whole_mac(mac), 0));
    OVK_TRY(ovk_eth_mac_addr(module, OVK_ETH_REMOVE, mac, 0));
    OVK_TRY(ovk_eth_default_association(module, OVK_ETH_REMOVE, if_id));
    if (port.phy.attrs.fwd_mode == OVK_ETHERNET_FWD_MODE_STATIC)
        OVK_TRY(ovk_eth_setup_static_port(module, OVK_ETH_REMOVE, if_id, 0));
    const ovk_sif_demux_entry entry = demux_entry(object, port);
    if (const u32 rc = ovk_sif_netDriver_demux_remove(module->parent, &entry))
        return demux_failed(module, rc);
    const u32 handle = word(&port);
    bury(&port);
    object.port_owner_table[if_num] = nullptr;
    OVK_INFO(module, "Deleted interface 0x%08x\n", handle);
    return KOR_OK;
}

} // namespace

u32 ovk_ethernet_interface_create(ovk_module *module, const ovk_ethernet_intf_attrs *attrs,
                                  ovk_ethernet_if_handle *if_handle)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Failed to create interface\n"), [&]() -> ovk::outcome {
            if (attrs == nullptr)
                return ovk::without_closing(
                    OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null Interface Attribute Pointer\n"));
            if (if_handle == nullptr)
                return ovk::without_closing(
                    OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null Interface Handle Pointer\n"));
            *if_handle = nullptr;
            const u32 status = create(module, *attrs, if_handle);
            if (status != KOR_OK && *if_handle != nullptr) {
                bury(*if_handle);
                *if_handle = nullptr;
            }
            return status;
        });
}

u32 ovk_ethernet_interface_delete(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Failed to delete interface handle 0x%08x\n", word(if_handle)),
        OVK_LINE("Failed to delete interface 0x%08x\n", word(if_handle)), [&]() -> ovk::outcome {
            OVK_TRY(ovk::check_if_handle(module, if_handle));
            OVK_TRY(ovk::check_phy(module, if_handle));
            if (ovk::object_of(module).port_owner_table[if_handle->phy.attrs.if_num] != if_handle)
                return OVK_FAIL(module, OVK_ETHERNET_E_INCONSIST_IF_STATE,
                                "Invalid state for Interface 0x%08x\n", word(if_handle));
            return take_down(module, *if_handle);
        });
}

u32 ovk_ethernet_port_attributes_override(ovk_module *module, u32 value)
{
    return ovk::public_call(OVK_CALLER, module,
                            OVK_LINE("Failed to set port attributes override 0x%x\n", value),
                            [&]() -> ovk::outcome {
                                ovk::object_of(module).port_attributes_override = static_cast<u8>(value);
                                return KOR_OK;
                            });
}
