// SPDX-License-Identifier: Apache-2.0
//
// What the classifier's encapsulation needs to know of an interface: its source MAC address, in flow data
// and in state memory. Under the module lock.
#ifndef OVK_ETH_HW_PORT_STATE_H
#define OVK_ETH_HW_PORT_STATE_H

#include "common/mac.h"
#include "ovk_module.h"

// Both flow data entries of the interface, set and zeroed. The encapsulation has no effect on them.
// 0 or KOR_E_VP_FLOW_DATA.
u32 ovk_eth_intf_flow_data_set(ovk_module *module, u32 if_id, const u8 *mac, u32 encap_type);
u32 ovk_eth_intf_flow_data_clear(ovk_module *module, u32 if_id);

// The record in state memory at id `index`. 0 or KOR_E_SE_WRITE.
u32 ovk_eth_if_info_se_set(ovk_module *module, u32 index, const u8 *mac, u32 encap_type);
u32 ovk_eth_if_info_se_reset(ovk_module *module, u32 index);

#endif
