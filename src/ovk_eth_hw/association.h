// SPDX-License-Identifier: Apache-2.0
//
// Writers of the association tree set: one ordered list of rules for each interface, the first that matches
// wins.
//
// A list exists from ovk_eth_default_association() with op 1, at the interface's creation, to the one with
// another op at its deletion; its last rule is always the default. A change comes into force with the build
// that each writer ends with, and a failed build leaves the list changed and not in force. Each change
// costs a build of one list; the patterns live for one call. Under the module lock.
#ifndef OVK_ETH_HW_ASSOCIATION_H
#define OVK_ETH_HW_ASSOCIATION_H

#include "ovk_ethernet_flow.h"

// Op 1 puts the default rule into the interface's list, any other op empties the list.
// 0, the key's status, KOR_E_OTREESET_DEFAULT or KOR_E_OTREESET_BUILD. A list that can't be emptied is
// warned of.
u32 ovk_eth_default_association(ovk_module *module, u32 op, u32 selector);

// Op 1 inserts a rule at `index`, before the default; op 2 takes the rule at `index` out, and reads no
// argument behind it. `flag` counts with FORWARD. 0; KOR_E_OTREESET_COUNT; KOR_E_INVALID_ARGUMENT for an
// index at or behind the default, another op or a wrong action type; the key's status;
// KOR_E_OTREESET_INSERT, KOR_E_OTREESET_DELETE, KOR_E_OTREESET_BUILD.
u32 ovk_eth_association(ovk_module *module, u32 op, u32 selector, u32 index,
                        const ovk_ethernet_ingress_extended_flow_data *rule,
                        const ovk_ethernet_flow_action *action, u8 flag, u32 flow_id);

#endif
