/* SPDX-License-Identifier: Apache-2.0 */
/* kor_se: state memory, records that the classifier reads and counts in, addressed by a namespace id. */
#ifndef KOR_SE_H
#define KOR_SE_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Writes `size` bytes of `buffer` at byte `offset` of the record `ns_id`. */
u32 kor_se_state_set(kor_rte rte, u32 ns_id, u32 offset, const void *buffer, u32 size);

/* Reads `size` bytes at byte `offset` of the record `ns_id`. */
u32 kor_se_state_get(kor_rte rte, u32 ns_id, u32 offset, void *buffer, u32 size);

#ifdef __cplusplus
}
#endif

#endif
