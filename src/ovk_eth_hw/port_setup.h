// SPDX-License-Identifier: Apache-2.0
//
// What a port's adapter is set to when the port goes into service: virtual pipelines, parsing, tag,
// filters, source address. `port` is a port number. Each writer stops at its first failure and takes
// nothing back; its statuses are its own (kor_status.h), not the platform's, which goes into the message.
// Under the module lock.
//
// A writer that needs a MAC channel may also return the system module's status for a port without one.
#ifndef OVK_ETH_HW_PORT_SETUP_H
#define OVK_ETH_HW_PORT_SETUP_H

#include "common/mac.h"
#include "ovk_module.h"

// Sends the port's untagged traffic to the pipeline `vp_name` and its tagged traffic to `tagged_vp_name`,
// or to the first when that is null. KOR_E_PORT_VP. The two are one step under two names: the first for a
// change of owner, the second for the switch.
u32 ovk_eth_if_owner(ovk_module *module, u32 port, const char *vp_name, const char *tagged_vp_name);
u32 ovk_eth_set_gatr_port_vp(ovk_module *module, u32 port, const char *vp_name, const char *tagged_vp_name);

// The same, and the port's parsing, check sequences and filters. Also KOR_E_QINQ, KOR_E_CRC,
// KOR_E_UNICAST_FILTER, KOR_E_BROADCAST_FILTER.
u32 ovk_eth_set_gatr_port_attr(ovk_module *module, u32 port, const char *vp_name,
                               const char *tagged_vp_name);

// Puts switch index and port number into the tag that the adapter sets before each frame, and turns it on;
// an index below 22 becomes the port's logical port in the switch too. The tag's offsets, which stay, go to
// the out pointers that aren't null. KOR_E_TAG_GET, KOR_E_TAG_SET, KOR_E_TAG_ENABLE, KOR_E_SWITCH_LPORT.
u32 ovk_eth_link_tag_msb(ovk_module *module, u32 port, u32 hsw_if_id, u32 *tag_start, u32 *tag_stop);

// Mode 0 turns the unicast filter on, any other off. KOR_E_UNICAST_FILTER.
u32 ovk_eth_promisc_mode(ovk_module *module, u32 port, u32 mode);

// The three addresses that pass the unicast filter. KOR_E_UNICAST_FILTER_MACS.
u32 ovk_eth_allow_mac(ovk_module *module, u32 port, u32 mode, const u8 *mac1, const u8 *mac2,
                      const u8 *mac3);

// KOR_E_MAC_ADDR.
u32 ovk_eth_if_src_mac_set(ovk_module *module, u32 port, const u8 *mac);

#endif
