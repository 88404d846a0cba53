/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_switching: MAC learning and ageing (IEEE 802.1Q).
 */
#ifndef OVK_ETHERNET_SWITCHING_H
#define OVK_ETHERNET_SWITCHING_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_status.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * After how many minutes, 1 to 61, an address learnt on the interface is forgotten. The classifier ages to
 * the minute; the switch has steps for 1 to 4 minutes and one for everything above. Of a physical interface
 * the port is set in the switch, of an aggregate each member; the classifier's rule is written for an
 * interface of any kind.
 *
 * Status: 0; OVK_ETHERNET_E_INVALID_IF_HANDLE; KOR_E_INVALID_ARGUMENT (8); KOR_E_BRIDGE_ATTRS_GET (136),
 * KOR_E_BRIDGE_ATTRS_SET (137); the system module's own; a rule's. Members set before a failure stay so.
 */
OVK_ETHERNET_API u32 ovk_ethernet_mac_aging_timer_config(ovk_module *module,
                                                         ovk_ethernet_if_handle if_handle, u32 minutes);

#ifdef __cplusplus
}
#endif

#endif
