// SPDX-License-Identifier: Apache-2.0
#include "calls.h"

#include "common/module_object.h"
#include "kor_ptn.h"
#include "ovk_lttng.h"
#include "ovk_ptn.h"
#include "ovk_qos.h"
#include "ovk_sys.h"

// A trace point: look-up and call.
#define TRACE(event, ...) trace_point(module, event, __LINE__, __VA_ARGS__)
#define ENTER(function) TRACE(8, nullptr, function)
#define EXIT(function) TRACE(9, nullptr, function)

namespace {

constexpr u32 ptn_learn_event = 15;
constexpr u32 ptn_unlearn_event = 16;

template <class... Args>
void trace_point(ovk_module *module, u32 event, u32 line, const char *format, Args... args)
{
    ovk_lttng_fn trace = nullptr;
    ovk_lttng_fn_ptr_get(module->trace_ctx, event, &trace);
    trace(module, line, "direct_calls", format, args...);
}

u32 apply(ovk_module *module, u32 event, eth_tree_info &tree, const kor_ptn_action &action)
{
    u32 rc = 0;
    ENTER("ovk_eth_lpm_rule");
    TRACE(event, "%s: ", tree.tree_name);
    if (event == ptn_learn_event)
        rc = kor_ptn_learn(module->rte_handle, tree.tree_id, &tree.input_pattern, &action);
    else
        rc = kor_ptn_unlearn(module->rte_handle, tree.tree_id, &tree.input_pattern, tree.key_bits, &action);
    EXIT("ovk_eth_lpm_rule");
    return rc;
}

u32 exception_rule(ovk_module *module, u32 event, const kor_ptn_action *action)
{
    eth_tree_info &tree = ovk::tree_of(module, OVK_ETH_TREE_EXCEPTION_HANDLER_LOOKUP);
    ENTER("ovk_eth_exception_config");
    u32 rc = ovk_ptn_clear(&tree.input_pattern);
    rc += ovk_ptn_extend(&tree.input_pattern, bench::domain, 2);
    rc += ovk_ptn_extend(&tree.input_pattern, bench::type_code, 8);
    rc += apply(module, event, tree, action != nullptr ? *action : tree.default_action);
    EXIT("ovk_eth_exception_config");
    return rc;
}

u32 cpu_rule(ovk_module *module, u32 event, const char *function, ovk_eth_tree index,
             const kor_ptn_action *action)
{
    eth_tree_info &tree = ovk::tree_of(module, index);
    ENTER(function);
    u32 rc = ovk_ptn_clear(&tree.input_pattern);
    rc += ovk_ptn_extend(&tree.input_pattern, bench::exception_id, 24);
    rc += apply(module, event, tree, action != nullptr ? *action : tree.default_action);
    EXIT(function);
    return rc;
}

u32 param_rule(ovk_module *module, u32 event, const kor_ptn_action *action)
{
    return cpu_rule(module, event, "ovk_eth_cpu_param", OVK_ETH_TREE_GET_CPU_PATH_PARAM, action);
}

u32 queue_rule(ovk_module *module, u32 event, const kor_ptn_action *action)
{
    return cpu_rule(module, event, "ovk_eth_cpu_qsh_queue", OVK_ETH_TREE_GET_CPU_PATH_QSH_QUEUE, action);
}

void check_action(ovk_module *module)
{
    ENTER("ovk_eth_valid_exception_action");
    EXIT("ovk_eth_valid_exception_action");
}

void report(ovk_module *module, const char *action)
{
    TRACE(0, "Configured %s action for %s exception type\n", action,
          "OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN_DEST_MAC");
}

} // namespace

u32 bench::direct_frame(ovk_module *module)
{
    ENTER("ovk_ethernet_log_enable");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    TRACE(0, "Enabled log-level 0x%x for Ethernet module 0x%08x\n", 0,
          static_cast<u32>(reinterpret_cast<uintptr_t>(module)));
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_log_enable");
    return rc;
}

u32 bench::direct_send_to_cpu(ovk_module *module)
{
    ENTER("ovk_ethernet_exception_configure");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    u32 queue_id = 0;
    rc += ovk_qos_queue_id_get(module->parent, queue_handle, &queue_id);
    check_action(module);
    const kor_ptn_action to_cpu = {KOR_PTN_ACTION_DATA, exception_id,
                                   0x200000 + priority * 0x10000 + cpu_queue};
    const kor_ptn_action param = {KOR_PTN_ACTION_DATA, cpu_param, 0};
    const kor_ptn_action queue = {KOR_PTN_ACTION_DATA, queue_id, 1};
    rc += exception_rule(module, ptn_learn_event, &to_cpu);
    rc += param_rule(module, ptn_learn_event, &param);
    rc += queue_rule(module, ptn_learn_event, &queue);
    report(module, "OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU");
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_exception_configure");
    return rc;
}

u32 bench::direct_drop(ovk_module *module)
{
    ENTER("ovk_ethernet_exception_configure");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    check_action(module);
    rc += param_rule(module, ptn_unlearn_event, nullptr);
    rc += queue_rule(module, ptn_unlearn_event, nullptr);
    rc += exception_rule(module, ptn_unlearn_event, nullptr);
    report(module, "OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP");
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_exception_configure");
    return rc;
}
