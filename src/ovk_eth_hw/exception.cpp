// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/exception.h"

#include "common/intf.h"
#include "ovk_eth_helper/exception.h"
#include "ovk_eth_hw_helper/rule_engine.h"

OVK_LOG_FILE(ovk_eth_hw, 4);

using ovk::rule_key;

namespace {

constexpr u32 id_bits = 24;

// What the classifier is to do, in the second action word.
constexpr u32 to_port = 0x100000;
constexpr u32 to_cpu = 0x200000;
constexpr u32 to_bdl = 0x300000;

constexpr u32 queue_given(u32 queue_id)
{
    return queue_id != OVK_ETH_NO_QUEUE_ID ? 1 : 0;
}

u32 make_rule_action(ovk_module *module, u32 id, const ovk_ethernet_exception_action &action, u32 queue_id,
                     kor_ptn_action &out)
{
    switch (action.type) {
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU: {
        const auto &cpu = action.send_to_cpu;
        const u32 queue = (cpu.cpu_queue.hi * 0x100u) + cpu.cpu_queue.lo;
        out = ovk::data_action(id, to_cpu + ((cpu.priority & 7u) * 0x10000) + queue);
        return KOR_OK;
    }
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_BDL: {
        const auto &bdl = action.send_to_bdl;
        out = ovk::data_action(id, to_bdl + ((bdl.priority & 7u) * 0x10000) + bdl.bdl_queue);
        return KOR_OK;
    }
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_PORT: {
        // The priority stands one bit higher here than in the others.
        const auto &port = action.send_to_port;
        out =
            ovk::data_action(queue_id, to_port + port.if_handle->if_id + ((port.priority & 7u) * 0x20000));
        return KOR_OK;
    }
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_TVU_FUNC: {
        u32 function_id = 0;
        const char *name = action.send_to_tvu_func.function_name;
        if (const u32 rc = kor_ptn_symbol_get_id(module->rte_handle, name, &function_id))
            return OVK_FAIL(module, KOR_E_PTN_SYMBOL,
                            "RTE Error: %s, Failed to return ID for the XGR function\n",
                            kor_status_get(rc));
        out = ovk::function_action(function_id);
        return KOR_OK;
    }
    default:
        return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Invalid exception action type specified!\n");
    }
}

} // namespace

u32 ovk_eth_exception_config(ovk_module *module, u32 op, u32 domain, u32 type,
                             const ovk_ethernet_exception_action *action, u32 queue_id)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        rule_key key(module, OVK_ETH_TREE_EXCEPTION_HANDLER_LOOKUP);
        key.add(domain, 2).add(ovk_eth_get_exception_code(type), 8);
        OVK_TRY(OVK_CHECK_KEY(module, key));
        kor_ptn_action rule_action = {};
        if (op == OVK_ETH_ADD)
            OVK_TRY(make_rule_action(module, ovk_eth_exception_id(domain, type), *action, queue_id,
                                     rule_action));
        return OVK_WRITE_RULE(module, key, op, rule_action);
    });
}

u32 ovk_eth_cpu_param(ovk_module *module, u32 op, u32 id, u32 value)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(module, rule_key(module, OVK_ETH_TREE_GET_CPU_PATH_PARAM).add(id, id_bits),
                              op, ovk::data_action(value & 0xFFFFFF, 0));
    });
}

u32 ovk_eth_cpu_qsh_queue(ovk_module *module, u32 op, u32 id, u32 queue_id)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(module,
                              rule_key(module, OVK_ETH_TREE_GET_CPU_PATH_QSH_QUEUE).add(id, id_bits), op,
                              ovk::data_action(queue_id, queue_given(queue_id)));
    });
}

u32 ovk_eth_cpu_qsh_and_bdl_queue(ovk_module *module, u32 op, u32 id, u32 queue_id, u32 extra)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return OVK_WRITE_RULE(
            module, rule_key(module, OVK_ETH_TREE_GET_CPU_PATH_QSH_AND_BDL_QUEUE).add(id, id_bits), op,
            ovk::data_action(queue_id, (extra << 16) + queue_given(queue_id)));
    });
}
