// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_helper/exception.h"

#include "common/frame.h"
#include "ovk_eth_helper/names.h"

OVK_LOG_FILE(ovk_eth_helper, 2);

namespace {

// By type; slot 0 stands for every other value.
constexpr u8 exception_codes[] = {0, 28, 60, 56, 100, 104, 64, 44, 64, 96, 72, 88, 80};
static_assert(sizeof exception_codes == OVK_ETHERNET_EXCEPTION_TYPE_ETH_MTU_FAILED + 1);

constexpr u32 max_priority = 7;

u32 valid_target_port(ovk_module *module, const ovk_ethernet_exception_action &action)
{
    const ovk_eth_intf *target = action.send_to_port.if_handle;
    if (!ovk_eth_valid_if_handle(target))
        return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_IF_HANDLE, "Invalid Interface handle 0x%08x\n",
                        ovk::word(target));
    if (target->if_type != INTERFACE_TYPE_PHY)
        return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_IF_TYPE,
                        "Incompatible Interface type %s. Must be INTERFACE_TYPE_PHY\n",
                        ovk_eth_intf_type_name(target->if_type));
    if (action.send_to_port.priority > max_priority)
        return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_PRIORITY, "Invalid priority value %d\n",
                        action.send_to_port.priority);
    return KOR_OK;
}

u32 valid_priority(ovk_module *module, u8 priority)
{
    if (priority > max_priority)
        return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_PRIORITY, "Invalid priority %d\n", priority);
    return KOR_OK;
}

} // namespace

u32 ovk_eth_get_exception_code(u32 type)
{
    return exception_codes[type < sizeof exception_codes ? type : 0];
}

u32 ovk_eth_valid_exception_action(ovk_module *module, const ovk_ethernet_exception_action *action)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        switch (action->type) {
        case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP:
            return KOR_OK;
        case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU:
            return valid_priority(module, action->send_to_cpu.priority);
        case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_BDL:
            return valid_priority(module, action->send_to_bdl.priority);
        case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_PORT:
            return valid_target_port(module, *action);
        case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_TVU_FUNC:
            if (action->send_to_tvu_func.function_name == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "NULL TVU XGR Function name\n");
            return KOR_OK;
        default:
            return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_EXCEPTION_ACTION_TYPE,
                            "Invalid exception action type %d\n", action->type);
        }
    });
}
