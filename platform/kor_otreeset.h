/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_otreeset: ordered tree sets.
 *
 * A tree set holds one ordered list of rules for each value of a selector, the first field of every rule. A
 * rule matches a frame by several fields, each with a prefix of its own; the first rule that matches wins.
 * A list comes into force only when it is built: until then the classifier goes by the list as it was built
 * last.
 */
#ifndef KOR_OTREESET_H
#define KOR_OTREESET_H

#include "kor_ptn.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * One field of a vector pattern. An empty pattern matches anything: one without a data word and with the
 * field's width, or all zero, or one of the field's width that nothing was appended to.
 */
typedef struct kor_vptn_field {
    u32 header; /* 0 */
    kor_ptn pattern;
} kor_vptn_field;

/*
 * `vptn` has `count` fields, the selector first. The operations without a count look at the selector alone.
 * All return 0 or a platform status.
 */

/* Puts a rule at the end of the selector's list. */
u32 kor_ptn_otreeset_append(kor_rte rte, u32 tree_id, u32 count, const kor_vptn_field *vptn,
                            const kor_ptn_action *action);

/* Puts a rule at `index`, from 0; the rules from there on move down. */
u32 kor_ptn_otreeset_insert(kor_rte rte, u32 tree_id, u32 index, u32 count, const kor_vptn_field *vptn,
                            const kor_ptn_action *action);

/* Takes the rule at `index` out. */
u32 kor_ptn_otreeset_delete(kor_rte rte, u32 tree_id, u32 index, const kor_vptn_field *vptn);

/* Empties the list. */
u32 kor_ptn_otreeset_clear(kor_rte rte, u32 tree_id, const kor_vptn_field *vptn);

/* Puts the list as it stands into force. */
u32 kor_ptn_otreeset_build(kor_rte rte, u32 tree_id, const kor_vptn_field *vptn);

/* The number of rules in the list. */
u32 kor_ptn_otreeset_novrules(kor_rte rte, u32 tree_id, const kor_vptn_field *vptn, u32 *count);

#ifdef __cplusplus
}
#endif

#endif
