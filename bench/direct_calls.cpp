// SPDX-License-Identifier: Apache-2.0
#include "calls.h"

#include "direct.h"
#include "ovk_qos.h"
#include "ovk_sys.h"

namespace {

u32 exception_rule(ovk_module *module, const kor_ptn_action *action)
{
    return bench::rule(module, "ovk_eth_exception_config", OVK_ETH_TREE_EXCEPTION_HANDLER_LOOKUP, action,
                       bench::Field{bench::domain, 2}, bench::Field{bench::type_code, 8});
}

u32 param_rule(ovk_module *module, const kor_ptn_action *action)
{
    return bench::rule(module, "ovk_eth_cpu_param", OVK_ETH_TREE_GET_CPU_PATH_PARAM, action,
                       bench::Field{bench::exception_id, 24});
}

u32 queue_rule(ovk_module *module, const kor_ptn_action *action)
{
    return bench::rule(module, "ovk_eth_cpu_qsh_queue", OVK_ETH_TREE_GET_CPU_PATH_QSH_QUEUE, action,
                       bench::Field{bench::exception_id, 24});
}

void check_action(ovk_module *module)
{
    ENTER("ovk_eth_valid_exception_action");
    EXIT("ovk_eth_valid_exception_action");
}

void report(ovk_module *module, const char *action)
{
    INFO("Configured %s action for %s exception type\n", action,
         "OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN_DEST_MAC");
}

} // namespace

u32 bench::apply(ovk_module *module, eth_tree_info &tree, const kor_ptn_action *action)
{
    u32 rc = 0;
    ENTER("ovk_eth_lpm_rule");
    TRACE(action != nullptr ? ptn_learn_event : ptn_unlearn_event, "%s: ", tree.tree_name);
    if (action != nullptr)
        rc = kor_ptn_learn(module->rte_handle, tree.tree_id, &tree.input_pattern, action);
    else
        rc = kor_ptn_unlearn(module->rte_handle, tree.tree_id, &tree.input_pattern, tree.key_bits,
                             &tree.default_action);
    EXIT("ovk_eth_lpm_rule");
    return rc;
}

u32 bench::direct_frame(ovk_module *module)
{
    ENTER("ovk_ethernet_log_enable");
    u32 rc = ovk_sys_sem_lock_wait(module->module_lock);
    INFO("Enabled log-level 0x%x for Ethernet module 0x%08x\n", 0,
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
    rc += exception_rule(module, &to_cpu);
    rc += param_rule(module, &param);
    rc += queue_rule(module, &queue);
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
    rc += param_rule(module, nullptr);
    rc += queue_rule(module, nullptr);
    rc += exception_rule(module, nullptr);
    report(module, "OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP");
    rc += kor_sem_post(module->module_lock);
    EXIT("ovk_ethernet_exception_configure");
    return rc;
}
