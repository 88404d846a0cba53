// SPDX-License-Identifier: Apache-2.0
//
// The one way to build a key, and the actions that go with it.
//
// A key is the ordered list of its fields, appended to the tree's scratch pattern, most significant bit
// first. Fewer bits than the tree's width make a prefix. The statuses of all pattern operations are summed,
// and whoever writes the rule tests the sum.
//
//     rule_key(module, OVK_ETH_TREE_VALIDATE_VLAN_ID).add(port, 8).add(vlan_id, 12)
#ifndef OVK_ETH_COMMON_RULE_KEY_H
#define OVK_ETH_COMMON_RULE_KEY_H

#include "common/mac.h"
#include "common/module_object.h"
#include "common/op.h"
#include "ovk_ptn.h"

namespace ovk {

struct rule_key {
    eth_tree_info &tree;
    u32 status;

    rule_key(const ovk_module *module, ovk_eth_tree index)
        : tree(tree_of(module, index)), status(ovk_ptn_clear(&tree.input_pattern))
    {
    }

    rule_key &add(u32 value, u32 bits)
    {
        status += ovk_ptn_extend(&tree.input_pattern, value, bits);
        return *this;
    }

    rule_key &add_mac(const u8 *mac, u32 prefix_bits = OVK_ETH_MAC_BITS)
    {
        append_mac_prefix(mac, prefix_bits, [this](u32 value, u32 bits) { add(value, bits); });
        return *this;
    }
};

constexpr kor_ptn_action value_action(u32 value)
{
    return {.type = KOR_PTN_ACTION_VALUE, .w1 = value, .w2 = 0};
}

constexpr kor_ptn_action function_action(u32 function_id)
{
    return {.type = KOR_PTN_ACTION_FUNCTION, .w1 = function_id, .w2 = 0};
}

constexpr kor_ptn_action data_action(u32 w1, u32 w2)
{
    return {.type = KOR_PTN_ACTION_DATA, .w1 = w1, .w2 = w2};
}

} // namespace ovk

#endif
