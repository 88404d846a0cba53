// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw_helper/rule_engine.h"

#include "ovk_eth_hw_helper/pattern.h"

OVK_LOG_FILE(ovk_eth_hw_helper, 1);

using ovk::one_bit_wider;
using ovk::print_rule;

namespace {

u32 learn(ovk_module *module, eth_tree_info &tree, const kor_ptn_action &action)
{
    kor_ptn &pattern = tree.input_pattern;
    const auto print = [&] { print_rule(pattern, action); };

    OVK_LOG_RECORD(module, ptn_learn, print, "%s: ", tree.tree_name);
    if (const u32 rc = kor_ptn_learn(module->rte_handle, tree.tree_id, &pattern, &action))
        return OVK_FAIL(module, KOR_E_PTN_LEARN, "RTE Error: %s, Failed to learn the input pattern\n",
                        kor_status_get(rc));
    if (tree.has_subnet_db != 1)
        return KOR_OK;

    const u32 rc = one_bit_wider(pattern, [&] {
        OVK_LOG_RECORD(module, subnet_add, print, "%s: ", tree.tree_name);
        return kor_subnet_add_subnet(tree.subnet_db, &pattern, &action);
    });
    if (rc != KOR_OK)
        return OVK_FAIL(module, KOR_E_SUBNET_ADD, "RTE Error: %s, Failed to add input pattern to subnet\n",
                        kor_status_get(rc));
    return KOR_OK;
}

u32 unlearn(ovk_module *module, eth_tree_info &tree, kor_ptn_action &covering)
{
    kor_ptn &pattern = tree.input_pattern;
    const bool has_db = tree.has_subnet_db == 1;
    u32 length = tree.key_bits;
    const kor_ptn_action *replacement = &tree.default_action;

    if (has_db) {
        const u32 rc = one_bit_wider(pattern, [&] {
            const u32 found = kor_subnet_find_higher_subnet(tree.subnet_db, &pattern, &length, &covering);
            OVK_LOG_RECORD(
                module, subnet_get, [&] { print_rule(pattern, covering); }, "%s: ", tree.tree_name);
            return found;
        });
        if (rc != KOR_OK)
            return OVK_FAIL(module, KOR_E_SUBNET_FIND, "RTE Error: %s, Failed to find higher subnet\n",
                            kor_status_get(rc));
        length -= 1;
        replacement = &covering;
    }

    const auto print = [&] { print_rule(pattern, *replacement); };
    OVK_LOG_RECORD(module, ptn_unlearn, print, "%s: ", tree.tree_name);
    if (const u32 rc = kor_ptn_unlearn(module->rte_handle, tree.tree_id, &pattern, length, replacement))
        return OVK_FAIL(module, KOR_E_PTN_UNLEARN, "RTE Error: %s, Failed to unlearn the input pattern\n",
                        kor_status_get(rc));
    if (!has_db)
        return KOR_OK;

    const u32 rc = one_bit_wider(pattern, [&] {
        OVK_LOG_RECORD(module, subnet_delete, print, "%s: ", tree.tree_name);
        return kor_subnet_del_subnet(tree.subnet_db, &pattern);
    });
    if (rc != KOR_OK)
        return OVK_FAIL(module, KOR_E_SUBNET_DELETE,
                        "RTE Error: %s, Failed to delete from subnet database\n", kor_status_get(rc));
    return KOR_OK;
}

} // namespace

u32 ovk_eth_lpm_rule(ovk_module *module, eth_tree_info *tree, u32 op, kor_ptn_action *action)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        return op == OVK_ETH_REMOVE ? unlearn(module, *tree, *action) : learn(module, *tree, *action);
    });
}
