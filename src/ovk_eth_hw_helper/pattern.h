// SPDX-License-Identifier: Apache-2.0
//
// What a pattern goes through on its way to the classifier: printing with its action, and the step to a
// database's width.
#ifndef OVK_ETH_HW_HELPER_PATTERN_H
#define OVK_ETH_HW_HELPER_PATTERN_H

#include "ovk_ptn.h"

namespace ovk {

inline void print_rule(const kor_ptn &pattern, const kor_ptn_action &action)
{
    ovk_ptn_print(pattern.data, pattern.length, pattern.width);
    ovk_ptn_action_print(action.type, action.w1, action.w2);
}

// Runs a database operation on the pattern as databases want it: one bit wider than the tree.
template <class Operation>
u32 one_bit_wider(kor_ptn &pattern, Operation operation)
{
    pattern.width += 1;
    const u32 rc = operation();
    pattern.width -= 1;
    return rc;
}

} // namespace ovk

#endif
