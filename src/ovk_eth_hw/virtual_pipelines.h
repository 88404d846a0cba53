// SPDX-License-Identifier: Apache-2.0
//
// The module's six virtual pipelines. Their handles belong to the process, so they are bound at start and
// again by every service update.
#ifndef OVK_ETH_HW_VIRTUAL_PIPELINES_H
#define OVK_ETH_HW_VIRTUAL_PIPELINES_H

#include "common/module_object.h"

namespace ovk {

// Fills the object's six handles in order; stops at the first that is missing. 0 or KOR_E_VP_NOT_FOUND.
u32 bind_virtual_pipelines(ovk_module *module, ovk_eth_module_object &object);

} // namespace ovk

#endif
