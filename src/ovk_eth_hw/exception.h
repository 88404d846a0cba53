// SPDX-License-Identifier: Apache-2.0
//
// Writers of the exception handler's tree and of the three CPU trees, which flow operations share. `op` is
// 1 to add and 2 to remove. All return 0, the key's status, or the rule engine's; under the module lock.
#ifndef OVK_ETH_HW_EXCEPTION_H
#define OVK_ETH_HW_EXCEPTION_H

#include "common/frame.h"
#include "ovk_ethernet_exception.h"

inline constexpr u32 OVK_ETH_NO_QUEUE_ID = 0xFFFFFF;

// The rule of one domain and type. Also KOR_E_PTN_SYMBOL for an unknown function name,
// KOR_E_INVALID_ARGUMENT for an action type that has no rule. On a removal `action` counts for nothing.
u32 ovk_eth_exception_config(ovk_module *module, u32 op, u32 domain, u32 type,
                             const ovk_ethernet_exception_action *action, u32 queue_id);

// 24-bit identifier to 24-bit parameter.
u32 ovk_eth_cpu_param(ovk_module *module, u32 op, u32 id, u32 value);

// 24-bit identifier to queue of the traffic manager; OVK_ETH_NO_QUEUE_ID is none.
u32 ovk_eth_cpu_qsh_queue(ovk_module *module, u32 op, u32 id, u32 queue_id);

// The same with a second queue in `extra`.
u32 ovk_eth_cpu_qsh_and_bdl_queue(ovk_module *module, u32 op, u32 id, u32 queue_id, u32 extra);

// The identifier of an exception configuration in the CPU trees; the action carries it to the CPU path.
constexpr u32 ovk_eth_exception_id(u32 domain, u32 type)
{
    return type | domain << 8 | 0x800000;
}

#endif
