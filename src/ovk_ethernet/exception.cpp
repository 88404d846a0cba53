// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/exception.h"

#include "common/op.h"
#include "ovk_eth_helper/exception.h"
#include "ovk_eth_helper/names.h"

OVK_LOG_FILE(ovk_ethernet, 2);

namespace {

using action_record = ovk_ethernet_exception_action;

u32 queue_id_of(ovk_module *module, ovk_queue_handle queue_handle, u32 *queue_id)
{
    if (const u32 rc = ovk_qos_queue_id_get(module->parent, queue_handle, queue_id))
        return OVK_FAIL(module, rc, "Failed to get Queue ID from the Queue handle 0x%x\n", queue_handle);
    return KOR_OK;
}

// Comes before the action is validated, so a wrong priority shows only behind a good queue.
u32 find_queue(ovk_module *module, const action_record &action, u32 *queue_id)
{
    *queue_id = 0;
    switch (action.type) {
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU:
        if (action.send_to_cpu.queue_handle == 0) {
            *queue_id = OVK_ETH_NO_QUEUE_ID;
            return KOR_OK;
        }
        return queue_id_of(module, action.send_to_cpu.queue_handle, queue_id);
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_BDL:
        return queue_id_of(module, action.send_to_bdl.queue_handle, queue_id);
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_PORT:
        return queue_id_of(module, action.send_to_port.queue_handle, queue_id);
    default:
        return KOR_OK;
    }
}

// Dropping is the absence of a rule: the tree's default discards.
u32 remove_rules(ovk_module *module, u32 domain, u32 type, const action_record &action)
{
    const u32 id = ovk_eth_exception_id(domain, type);
    OVK_TRY(ovk_eth_cpu_param(module, OVK_ETH_REMOVE, id, 0));
    OVK_TRY(ovk_eth_cpu_qsh_queue(module, OVK_ETH_REMOVE, id, 0));
    return ovk_eth_exception_config(module, OVK_ETH_REMOVE, domain, type, &action, 0);
}

u32 add_rules(ovk_module *module, u32 domain, u32 type, const action_record &action, u32 queue_id)
{
    const u32 id = ovk_eth_exception_id(domain, type);
    const bool to_cpu = action.type == OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU;
    const bool to_bdl = action.type == OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_BDL;

    OVK_TRY(ovk_eth_exception_config(module, OVK_ETH_ADD, domain, type, &action, queue_id));
    if (to_cpu)
        OVK_TRY(ovk_eth_cpu_param(module, OVK_ETH_ADD, id, action.send_to_cpu.cpu_param));
    if (to_cpu || to_bdl)
        return ovk_eth_cpu_qsh_queue(module, OVK_ETH_ADD, id, queue_id);
    return KOR_OK;
}

u32 configure(ovk_module *module, u32 domain, u32 type, const action_record *action)
{
    if (action == nullptr)
        return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "NULL exception action pointer\n");
    // The key has room for domain 1 too, but there is none.
    if (domain != 0 && domain != 2 && domain != 3)
        return OVK_FAIL(module, OVK_E_INVALID_ARGUMENT, "Invalid Exception domain specified\n");
    if (ovk_eth_get_exception_code(type) == 0)
        return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_EXCEPTION_TYPE,
                        "Invalid exception type %d specified\n", type);
    u32 queue_id = 0;
    OVK_TRY(find_queue(module, *action, &queue_id));
    OVK_TRY(ovk_eth_valid_exception_action(module, action));
    return action->type == OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP
               ? remove_rules(module, domain, type, *action)
               : add_rules(module, domain, type, *action, queue_id);
}

} // namespace

u32 ovk_ethernet_exception_configure(ovk_module *module, u32 domain, u32 type,
                                     const ovk_ethernet_exception_action *action)
{
    const auto action_name = [&] {
        return ovk_eth_exception_action_name(action != nullptr ? action->type : 0);
    };

    return ovk::public_call(OVK_CALLER, module,
                            OVK_LINE("Failed to configure %s action for %s exception type\n", action_name(),
                                     ovk_eth_exception_name(type)),
                            [&]() -> ovk::outcome {
                                OVK_TRY(configure(module, domain, type, action));
                                OVK_INFO(module, "Configured %s action for %s exception type\n",
                                         action_name(), ovk_eth_exception_name(type));
                                return KOR_OK;
                            });
}
