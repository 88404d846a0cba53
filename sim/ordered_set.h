// SPDX-License-Identifier: Apache-2.0
/*
 * OrderedSet: an ordered tree set, one list of rules for each value of the selector.
 *
 * A list is kept twice: as it is being edited, and as it was built last. Only the second is in force. A
 * rule matches when each of its fields is a prefix of the frame's; an empty field is a prefix of anything.
 * The first rule that matches wins, at a cost of one look at each rule before it.
 */
#ifndef OVK_SIM_ORDERED_SET_H
#define OVK_SIM_ORDERED_SET_H

#include "bits.h"
#include "kor_ptn.h"

#include <map>
#include <optional>
#include <vector>

namespace sim {

struct OrderedRule {
    std::vector<Bits> fields; /* the selector first */
    kor_ptn_action action{};
};

struct OrderedList {
    std::vector<OrderedRule> edited;
    std::vector<OrderedRule> in_force;
};

/* The rule that a frame hit: its place in the list in force, and what it does. */
struct Hit {
    u32 index = 0;
    kor_ptn_action action{};
};

struct OrderedSet {
    static constexpr u32 most_fields = 6; /* of all sets in the programme */

    std::vector<u32> widths;          /* of the fields, in bits */
    std::map<u32, OrderedList> lists; /* by selector; one that was emptied may stay */

    /* What the selector's list in force does with a frame of these fields. */
    std::optional<Hit> match(u32 selector, const std::vector<Bits> &frame) const;
};

} // namespace sim

#endif
