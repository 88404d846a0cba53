/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_subnet: prefix databases beside the classifier's trees.
 *
 * A database remembers prefixes and their actions, so that the rule that covers a removed one can be found.
 * It is created one bit wider than its tree and takes patterns whose `width` (or `length`) word was raised
 * by one for the call; the bits themselves are those that were appended. The first zero-length entry is its
 * root, which is never replaced or removed.
 */
#ifndef KOR_SUBNET_H
#define KOR_SUBNET_H

#include "kor_ptn.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef u32 kor_subnet;

/* Makes an empty database for patterns of `width` bits. The two flag words are 0. */
u32 kor_subnet_create(u32 width, u32 flags, u32 hint, kor_subnet *out);

/* Frees the database. `*db` is read, not cleared. */
u32 kor_subnet_destroy(kor_subnet *db);

/* Adds the entry, or replaces the action of one that is there. */
u32 kor_subnet_add_subnet(kor_subnet db, const kor_ptn *pattern, const kor_ptn_action *action);

/* Removes the entry. Removing what isn't there succeeds. */
u32 kor_subnet_del_subnet(kor_subnet db, const kor_ptn *pattern);

/*
 * The longest entry that is strictly shorter than `pattern` and covers it; the root as the last resort.
 * `*length` is the entry's prefix length plus one. `pattern` itself need not be in the database.
 */
u32 kor_subnet_find_higher_subnet(kor_subnet db, const kor_ptn *pattern, u32 *length,
                                  kor_ptn_action *action);

#ifdef __cplusplus
}
#endif

#endif
