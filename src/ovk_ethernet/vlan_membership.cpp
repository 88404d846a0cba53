// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/vlan_membership.h"

#include "common/frame.h"
#include "common/op.h"
#include "common/switch_ids.h"
#include "ovk_eth_helper/interface.h"
#include "ovk_ethernet_vlan.h"

OVK_LOG_FILE(ovk_ethernet, 9);

using ovk::outcome;
using ovk::word;

namespace {

constexpr u8 bridge_group_kind = 2;

// Marks an entry of a port's VLAN table as taken, and tells whether the port assigns VLANs by a policy.
constexpr u32 entry_without_policy = 0x5000000;
constexpr u32 entry_with_policy = 0x7000000;

// Unmasked: bits that stand above the policy show in it.
u32 policy_of(const ovk_eth_intf &intf)
{
    return intf.inif_flags >> OVK_ETH_POLICY_SHIFT;
}

ovk_eth_vlan_entry &entry_of(ovk_module *module, const ovk_eth_intf &port, u32 vlan_id)
{
    return ovk::object_of(module).hsw_port_vlan_table[port.hsw_if_id][vlan_id];
}

ovk_eth_aggr_vlan_entry &aggr_entry_of(ovk_module *module, const ovk_eth_intf &aggr, u32 vlan_id)
{
    return ovk::object_of(module).aggr_vlan_table[aggr.if_id & 1][vlan_id];
}

u32 check_vlan_id(ovk_module *module, u32 vlan_id)
{
    if (vlan_id < OVK_ETH_VLAN_IDS)
        return KOR_OK;
    return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_VLAN_ID, "Invalid VLAN ID 0x%04x\n", vlan_id);
}

u32 check_bg_id(ovk_module *module, u32 bg_id)
{
    if (bg_id < OVK_ETH_BRIDGE_GROUPS)
        return KOR_OK;
    return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_BG_ID, "Invalid BG_ID 0x%04x\n", bg_id);
}

u32 check_binding(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 vlan_id, u32 bg_id)
{
    OVK_TRY(ovk::check_if_handle(module, if_handle));
    OVK_TRY(check_vlan_id(module, vlan_id));
    if (bg_id == OVK_ETH_ROUTER_VLAN_ID)
        return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_BG_ID,
                        "BG_ID  0x%04x is reserved as OVK_ETH_ROUTER_VLAN_ID\n", bg_id);
    OVK_TRY(check_bg_id(module, bg_id));
    OVK_TRY(ovk::check_no_member(module, if_handle));
    return ovk::check_mode(module, if_handle, ovk::trunk_mode | ovk::routed_mode);
}

// The binding of one port or member, whose rule, words and count are those of `owner`, the port itself or
// its aggregate. The two ways of going about it differ in their order alone, and each is a sequence of
// these.
struct binding {
    ovk_module *module;
    ovk_eth_intf &owner;
    const ovk_eth_intf &port;
    u32 vlan_id;
    u32 bg_id;

    u32 write_rule(u32 op) const
    {
        if (op != OVK_ETH_ADD)
            return ovk_eth_vlan_id(module, op, port.hsw_if_id, vlan_id, 0, 0, 0, 0);
        return ovk_eth_vlan_id(module, op, port.hsw_if_id, vlan_id, bg_id,
                               static_cast<u16>(owner.stats_ns_id), policy_of(owner), 0);
    }

    void fill_entry() const
    {
        ovk_eth_vlan_entry &entry = entry_of(module, port, vlan_id);
        entry.encoded_if =
            owner.stats_ns_id | (policy_of(owner) == 0 ? entry_without_policy : entry_with_policy);
        entry.id = bg_id;
    }

    void clear_entry() const { entry_of(module, port, vlan_id) = {}; }

    // The owner's count decides, so of an aggregate only the first member of the first binding reaches the
    // set.
    u32 join_group() const
    {
        i16 &count = owner.bg_ref_count[bg_id];
        if (count == 0)
            OVK_TRY(ovk_eth_hsw_vlan_filter(module, OVK_ETH_ADD, port.hsw_if_id, bg_id, 0));
        count = static_cast<i16>(count + 1);
        return KOR_OK;
    }

    // The port stays in the group's set, also when the count is back at 0. The count may wrap.
    void leave_group() const
    {
        i16 &count = owner.bg_ref_count[bg_id];
        count = static_cast<i16>(count - 1);
    }

    // VLAN 0 is the port's untagged traffic.
    u32 set_registers(u32 op) const
    {
        const u32 number = port.phy.attrs.if_num;
        const u16 default_vlan = op == OVK_ETH_ADD ? static_cast<u16>(bg_id) : u16{0};
        OVK_TRY(ovk_eth_hsw_port_ingress_vlan(module, op, number, vlan_id, static_cast<u16>(bg_id)));
        return vlan_id == 0 ? ovk_eth_set_gatr_port_default_vlan(module, op, number, default_vlan)
                            : u32{KOR_OK};
    }
};

u32 add_to_port(const binding &port)
{
    OVK_TRY(port.write_rule(OVK_ETH_ADD));
    port.fill_entry();
    OVK_TRY(port.join_group());
    return port.set_registers(OVK_ETH_ADD);
}

u32 add_to_member(const binding &member)
{
    OVK_TRY(member.set_registers(OVK_ETH_ADD));
    OVK_TRY(member.write_rule(OVK_ETH_ADD));
    OVK_TRY(member.join_group());
    member.fill_entry();
    return KOR_OK;
}

u32 remove_from_port(const binding &port)
{
    OVK_TRY(port.write_rule(OVK_ETH_REMOVE));
    port.clear_entry();
    OVK_TRY(port.set_registers(OVK_ETH_REMOVE));
    port.leave_group();
    return KOR_OK;
}

u32 remove_from_member(const binding &member)
{
    OVK_TRY(member.set_registers(OVK_ETH_REMOVE));
    OVK_TRY(member.write_rule(OVK_ETH_REMOVE));
    member.leave_group();
    member.clear_entry();
    return KOR_OK;
}

u32 add(ovk_module *module, ovk_eth_intf &intf, u32 vlan_id, u32 bg_id)
{
    const bool is_aggregate = intf.if_type == INTERFACE_TYPE_AGGR;

    OVK_TRY(ovk::for_each_port(intf, [&](const ovk_eth_intf &port) {
        const binding one = {module, intf, port, vlan_id, bg_id};
        return is_aggregate ? add_to_member(one) : add_to_port(one);
    }));
    // Also for an aggregate without members: whoever joins later finds it.
    if (is_aggregate)
        aggr_entry_of(module, intf,
                      vlan_id) = {.id = bg_id, .stats_ns_id = intf.stats_ns_id, .kind = bridge_group_kind};
    return KOR_OK;
}

u32 remove(ovk_module *module, ovk_eth_intf &intf, u32 vlan_id, u32 bg_id)
{
    const bool is_aggregate = intf.if_type == INTERFACE_TYPE_AGGR;

    OVK_TRY(ovk::for_each_port(intf, [&](const ovk_eth_intf &port) {
        const binding one = {module, intf, port, vlan_id, bg_id};
        return is_aggregate ? remove_from_member(one) : remove_from_port(one);
    }));
    if (is_aggregate)
        aggr_entry_of(module, intf, vlan_id) = {};
    return KOR_OK;
}

// What both egress calls check at their end.
u32 check_trunk(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    OVK_TRY(ovk::check_no_member(module, if_handle));
    return ovk::check_mode(module, if_handle, ovk::trunk_mode);
}

} // namespace

u32 ovk_ethernet_vlan_id_add(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 vlan_id, u32 bg_id)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to add VLAN ID 0x%04x for Interface 0x%08x\n", vlan_id, word(if_handle)),
        OVK_LINE("Failed to add BG_ID 0x%04x for Interface 0x%08x and VLAN 0x%04x\n", bg_id,
                 word(if_handle), vlan_id),
        [&]() -> outcome {
            OVK_TRY(check_binding(module, if_handle, vlan_id, bg_id));
            OVK_TRY(add(module, *if_handle, vlan_id, bg_id));
            OVK_INFO(module, "Added BG_ID 0x%04x for Interface 0x%08x and VLAN 0x%04x\n", bg_id,
                     word(if_handle), vlan_id);
            return KOR_OK;
        });
}

u32 ovk_ethernet_vlan_id_del(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 vlan_id, u32 bg_id)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to remove VLAN ID 0x%04x for Interface 0x%08x\n", vlan_id, word(if_handle)),
        [&]() -> outcome {
            OVK_TRY(check_binding(module, if_handle, vlan_id, bg_id));
            OVK_TRY(remove(module, *if_handle, vlan_id, bg_id));
            OVK_INFO(module, "Removed VLAN ID 0x%04x for Interface 0x%08x\n", vlan_id, word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_port_egress_vlan_config(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 bg_id,
                                         u32 port_tag_type, u16 vlan_id, u8 tag_rewrite)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to add VLAN ID 0x%04x for Interface 0x%08x\n", vlan_id, word(if_handle)),
        OVK_LINE("Failed to add VLAN 0x%04x for Interface 0x%08x and BG_ID 0x%04x\n", vlan_id,
                 word(if_handle), bg_id),
        [&]() -> outcome {
            OVK_TRY(ovk::check_if_handle(module, if_handle));
            OVK_TRY(check_bg_id(module, bg_id));
            if (port_tag_type != OVK_ETHERNET_PORT_TAG_TYPE_UNTAGGED &&
                port_tag_type != OVK_ETHERNET_PORT_TAG_TYPE_SINGLE_TAGGED)
                return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_PORT_TAG_TYPE,
                                "Invalid port tag type 0x%04x\n", port_tag_type);
            if (vlan_id != 0 && port_tag_type == OVK_ETHERNET_PORT_TAG_TYPE_UNTAGGED)
                return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_VLAN_ID,
                                "Vlan id can not be non zero if port type is untagged\n");
            OVK_TRY(check_vlan_id(module, vlan_id));
            OVK_TRY(check_trunk(module, if_handle));
            // The key holds the interface's own id, so one rule serves a whole aggregate.
            OVK_TRY(ovk_eth_out_vlan_id(module, OVK_ETH_ADD, if_handle->if_id, bg_id, vlan_id,
                                        port_tag_type, tag_rewrite));
            OVK_INFO(module, "Added VLAN 0x%04x for Interface 0x%08x and BG_ID 0x%04x\n", vlan_id,
                     word(if_handle), bg_id);
            return KOR_OK;
        });
}

u32 ovk_ethernet_port_egress_vlan_config_del(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                             u32 bg_id)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to remove VLAN config for Interface 0x%08x and BGID 0x%04x\n", word(if_handle),
                 bg_id),
        [&]() -> outcome {
            OVK_TRY(ovk::check_if_handle(module, if_handle));
            OVK_TRY(check_bg_id(module, bg_id));
            OVK_TRY(check_trunk(module, if_handle));
            OVK_TRY(ovk_eth_out_vlan_id(module, OVK_ETH_REMOVE, if_handle->if_id, bg_id, 0, 0, 0));
            OVK_INFO(module, "Removed VLAN config for Interface 0x%08x and BGID 0x%04x\n", word(if_handle),
                     bg_id);
            return KOR_OK;
        });
}
