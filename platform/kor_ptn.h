/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_ptn: the programmable packet classifier's functions and lookup trees.
 *
 * The classifier runs a programme of named functions, some of which are lookup trees. A tree maps a key of
 * fixed width to an action by longest prefix. It keeps only the expanded result: whoever removes a rule
 * says what is to stand in its place.
 *
 * Records that pass between host and classifier are those of the target, three words each.
 */
#ifndef KOR_PTN_H
#define KOR_PTN_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * A pattern: the key of a rule, or a prefix of one. Built with the ovk_ptn_ operations. `data` is the
 * platform's own object, which knows the bits appended so far; `length` counts them, `width` is the width
 * in bits that the pattern is matched at.
 */
typedef struct kor_ptn {
    struct kor_ptn_data *data;
    u32 length;
    u32 width;
} kor_ptn;

enum kor_ptn_action_type {
    KOR_PTN_ACTION_VALUE = 0,    /* `w1` is a value */
    KOR_PTN_ACTION_FUNCTION = 1, /* `w1` is the id of a classifier function to go to */
    KOR_PTN_ACTION_DATA = 4      /* `w1` and `w2` are returned to the classifier function */
};

typedef struct kor_ptn_action {
    u32 type;
    u32 w1;
    u32 w2;
} kor_ptn_action;

/* Id of the programme's function or tree `name`, prefix included ("ovk_ethernet.Discard_Pdu"). */
u32 kor_ptn_symbol_get_id(kor_rte rte, const char *name, u32 *out);

/* Writes the rule `pattern` -> `action` into the tree; replaces a rule that stands at the same pattern. */
u32 kor_ptn_learn(kor_rte rte, u32 tree_id, const kor_ptn *pattern, const kor_ptn_action *action);

/*
 * Removes the rule at `pattern` and writes `replacement` over its range, as a prefix of
 * `replacement_length` bits. Longer rules below the pattern stay.
 */
u32 kor_ptn_unlearn(kor_rte rte, u32 tree_id, const kor_ptn *pattern, u32 replacement_length,
                    const kor_ptn_action *replacement);

#ifdef __cplusplus
}
#endif

#endif
