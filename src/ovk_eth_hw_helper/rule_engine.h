// SPDX-License-Identifier: Apache-2.0
//
// The rule engine: the only way in which rules reach the classifier.
//
// The classifier's trees keep only the expanded result of their rules. When a rule goes away, somebody has
// to say what stands there afterwards: the default action in a tree whose rules are all full width, else
// the action of the next shorter rule that covers it. For the latter a subnet database stands beside the
// tree, and the engine keeps the two in step.
//
// Invariant: a tree with a database has the same prefix rules as its database. Only a platform failure
// between the two updates breaks it, and nothing repairs it then: what was done stays.
//
// The database is one bit wider than the tree, so that its root and a rule of length zero stay distinct;
// the engine raises the pattern's `width` by one around each database operation and has it back on every
// exit.
//
// Cost: one classifier update and at most two database operations; no allocation. Under the module lock.
#ifndef OVK_ETH_HW_HELPER_RULE_ENGINE_H
#define OVK_ETH_HW_HELPER_RULE_ENGINE_H

#include "common/frame.h"
#include "common/rule_key.h"

// Applies the rule in `tree->input_pattern`: `op` 2 unlearns, anything else learns, which also replaces. On
// an unlearn from a tree with a database `action` is overwritten with the covering rule's.
//
// 0, or KOR_E_PTN_LEARN, KOR_E_SUBNET_ADD (the rule is in the tree), KOR_E_SUBNET_FIND (nothing changed),
// KOR_E_PTN_UNLEARN (the database keeps its entry), KOR_E_SUBNET_DELETE (the tree has lost the rule).
u32 ovk_eth_lpm_rule(ovk_module *module, eth_tree_info *tree, u32 op, kor_ptn_action *action);

namespace ovk {

// Tests a key, for a writer whose action may fail: its own status if it is bad, after reporting it.
inline u32 check_key(ovk_module *module, site where, const rule_key &key)
{
    if (key.status != KOR_OK) [[unlikely]]
        return log_failure(module, log_class::error, where, key.status,
                           "Could not build the input pattern\n");
    return KOR_OK;
}

// The end of every writer: tests the key, applies the rule, and reports a failure at the writer's own
// position. The action counts for OVK_ETH_ADD alone; any other `op` passes an all-zero one. The status is
// the key's sum or the engine's.
inline u32 write_rule(ovk_module *module, site where, const rule_key &key, u32 op, kor_ptn_action action)
{
    OVK_TRY(check_key(module, where, key));
    if (op != OVK_ETH_ADD)
        action = {};
    const u32 status = ovk_eth_lpm_rule(module, &key.tree, op, &action);
    if (status != KOR_OK) [[unlikely]]
        return log_failure(module, log_class::error, where, status, "Failed to update LPM Tree\n");
    return KOR_OK;
}

} // namespace ovk

#define OVK_CHECK_KEY(module, key) ovk::check_key(module, OVK_HERE, key)
#define OVK_WRITE_RULE(module, key, op, action) ovk::write_rule(module, OVK_HERE, key, op, action)

#endif
