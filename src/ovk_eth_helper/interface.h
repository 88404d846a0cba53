// SPDX-License-Identifier: Apache-2.0
//
// Checks of interface handles, kinds, modes and attributes. Each logs its refusal and returns the status;
// under the module lock.
#ifndef OVK_ETH_HELPER_INTERFACE_H
#define OVK_ETH_HELPER_INTERFACE_H

#include "common/intf.h"
#include "ovk_ethernet_status.h"

// The kind of any interface, and its forwarding mode: a port's or aggregate's own, HIGHER_LAYER for the
// other kinds, whatever their parent's. `*type` is written also for a kind that is refused.
u32 ovk_eth_get_if_type_mode(ovk_module *module, ovk_ethernet_if_handle handle, u32 *type, u32 *mode);

// 0 for a routed port or aggregate and for every other kind of interface.
u32 ovk_eth_is_routed_intf(ovk_module *module, ovk_ethernet_if_handle handle);

// 0 for a switched port or aggregate.
u32 ovk_eth_assert_switch_port(ovk_module *module, ovk_ethernet_if_handle handle);

// The attributes of a port to be created; see ovk_ethernet_interface_create() for the order.
u32 ovk_eth_valid_intf_attrs(ovk_module *module, const ovk_ethernet_intf_attrs *attrs);

// Those of an aggregate: forwarding mode, encapsulation, MAC address, then OVK_ETHERNET_E_INVALID_QOS_MODE.
u32 ovk_eth_valid_aggr_intf_attrs(ovk_module *module, const ovk_ethernet_aggr_intf_attrs *attrs);

namespace ovk {

// A set of forwarding modes, a bit for each.
constexpr u32 mode_bit(u32 mode)
{
    return mode < 32 ? 1u << mode : 0;
}
inline constexpr u32 trunk_mode = mode_bit(OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK);
inline constexpr u32 routed_mode = mode_bit(OVK_ETHERNET_FWD_MODE_HIGHER_LAYER);
inline constexpr u32 switched_modes = mode_bit(OVK_ETHERNET_FWD_MODE_SWITCH_ACCESS) | trunk_mode |
                                      mode_bit(OVK_ETHERNET_FWD_MODE_SWITCH_TUNNEL);

// The handle is alive.
u32 check_if_handle(ovk_module *module, ovk_ethernet_if_handle handle);

// The interface is a physical one.
u32 check_phy(ovk_module *module, ovk_ethernet_if_handle handle);

// The interface is a physical one or an aggregate.
u32 check_port_or_aggregate(ovk_module *module, ovk_ethernet_if_handle handle);

// The interface is no member of an aggregate.
u32 check_no_member(ovk_module *module, ovk_ethernet_if_handle handle);

// The interface is a port or aggregate in one of the modes. A port alone may be asked for.
u32 check_mode(ovk_module *module, ovk_ethernet_if_handle handle, u32 modes);
u32 check_phy_mode(ovk_module *module, ovk_ethernet_if_handle handle, u32 modes);

// A port's or aggregate's own forwarding mode. Not for other kinds of interface.
inline u32 mode_of(const ovk_eth_intf &intf)
{
    return intf.if_type == INTERFACE_TYPE_AGGR ? intf.aggr.fwd_mode : intf.phy.attrs.fwd_mode;
}

// Runs `step` on the port itself, or on each member of the aggregate in order; stops at the first failure.
// Not for other kinds of interface.
template <class Step>
u32 for_each_port(ovk_eth_intf &intf, Step step)
{
    if (intf.if_type == INTERFACE_TYPE_PHY)
        return step(intf);
    for (u32 index = 0; index < intf.aggr.member_count; index++)
        if (const u32 status = step(*intf.aggr.members[index]))
            return status;
    return 0;
}

} // namespace ovk

#endif
