/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_vlan: which VLANs a port carries (IEEE 802.1Q).
 *
 * A VLAN of a switched port is bound to a bridge group, 0 to 63, which is the switch's own VLAN number;
 * VLAN 0 stands for the port's untagged traffic. On the way out a bridge group gets a VLAN tag, or none, by
 * port.
 *
 * Each call takes a physical or aggregated interface. On an aggregate a binding goes to each member in
 * order and stops at the first failure; an egress rule is one for the whole aggregate. Nothing is taken
 * back on a failure.
 */
#ifndef OVK_ETHERNET_VLAN_H
#define OVK_ETHERNET_VLAN_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_enums.h"
#include "ovk_ethernet_status.h"

#ifdef __cplusplus
extern "C" {
#endif

enum ovk_ethernet_port_tag_type {
    OVK_ETHERNET_PORT_TAG_TYPE_UNTAGGED = 1,
    OVK_ETHERNET_PORT_TAG_TYPE_SINGLE_TAGGED = 2
};

/*
 * Bind a VLAN id, 0 to 4095, of the interface to a bridge group, and take the binding away. For trunk and
 * routed interfaces.
 *
 * Status, in the order of the checks: OVK_ETHERNET_E_INVALID_IF_HANDLE; OVK_ETHERNET_E_INVALID_VLAN_ID;
 * OVK_ETHERNET_E_INVALID_BG_ID; OVK_ETHERNET_E_INVALID_IF_HANDLE (member of an aggregate);
 * OVK_ETHERNET_E_INCOMPAT_FWD_MODE; OVK_ETHERNET_E_INCOMPAT_IF_TYPE; then a rule's, those of kor_status.h
 * for the port's and the switch's VLAN registers (138, 139, 141, 142, 145, 146), or the system module's for
 * a port without a MAC channel.
 *
 * Deleting doesn't compare `bg_id` with the one that was added, and leaves the port in the bridge group's
 * set of ports in the switch.
 */
OVK_ETHERNET_API u32 ovk_ethernet_vlan_id_add(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                              u32 vlan_id, u32 bg_id);
OVK_ETHERNET_API u32 ovk_ethernet_vlan_id_del(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                              u32 vlan_id, u32 bg_id);

/*
 * What frames of a bridge group look like when they leave a trunk: `port_tag_type` untagged (then `vlan_id`
 * is 0) or single tagged with `vlan_id`, 0 to 4095; `tag_rewrite` 1 replaces a tag that is there (the low
 * bit counts). Bridge group 0 is the rule for all groups that have none of their own.
 *
 * Status, in the order of the checks: OVK_ETHERNET_E_INVALID_IF_HANDLE; OVK_ETHERNET_E_INVALID_BG_ID;
 * OVK_ETHERNET_E_INVALID_PORT_TAG_TYPE; OVK_ETHERNET_E_INVALID_VLAN_ID; OVK_ETHERNET_E_INVALID_IF_HANDLE
 * (member of an aggregate); OVK_ETHERNET_E_INCOMPAT_FWD_MODE; OVK_ETHERNET_E_INCOMPAT_IF_TYPE; a rule's.
 * The second call checks what it is given of these.
 */
OVK_ETHERNET_API u32 ovk_ethernet_port_egress_vlan_config(ovk_module *module,
                                                          ovk_ethernet_if_handle if_handle, u32 bg_id,
                                                          u32 port_tag_type, u16 vlan_id, u8 tag_rewrite);
OVK_ETHERNET_API u32 ovk_ethernet_port_egress_vlan_config_del(ovk_module *module,
                                                              ovk_ethernet_if_handle if_handle, u32 bg_id);

#ifdef __cplusplus
}
#endif

#endif
