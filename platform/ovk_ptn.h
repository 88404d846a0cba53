/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ptn: building and printing classifier patterns.
 *
 * A pattern's object belongs to whoever made the pattern, until ovk_ptn_free(). Patterns aren't locked.
 */
#ifndef OVK_PTN_H
#define OVK_PTN_H

#include "kor_otreeset.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Makes an empty pattern of `width` bits in `*pattern`. Returns 0 or a platform status (no memory). */
u32 ovk_ptn_new(u32 width, kor_ptn *pattern);

/* Empties the pattern for another use: `length` is 0 again. */
u32 ovk_ptn_clear(kor_ptn *pattern);

/*
 * Appends the low `bits` bits of `value` (0 to 32), most significant first, and raises `length`. A key may
 * grow past the pattern's width, up to 256 bits. Appending 0 bits succeeds.
 */
u32 ovk_ptn_extend(kor_ptn *pattern, u32 value, u32 bits);

/* Frees the pattern's object, by the record's words. A record without an object is freed all the same. */
u32 ovk_ptn_free(struct kor_ptn_data *data, u32 length, u32 width);

/* Print a pattern or an action to standard output, without a newline. */
void ovk_ptn_print(struct kor_ptn_data *data, u32 length, u32 width);
void ovk_ptn_action_print(u32 type, u32 w1, u32 w2);

/* The same for `count` fields of a vector pattern. */
void ovk_vptn_print(u32 count, const kor_vptn_field *vptn);

#ifdef __cplusplus
}
#endif

#endif
