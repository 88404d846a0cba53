/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_nvm: the non-volatile heap.
 *
 * Blocks outlive a reload of the code that allocated them, so nothing in them may point into code or into
 * static data unless a service update renews it. The caller owns a block until it gives it back.
 */
#ifndef KOR_NVM_H
#define KOR_NVM_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* `count` times `size` zeroed bytes, or null when the heap is exhausted. */
void *kor_nvm_calloc(size_t count, size_t size);

/* `size` bytes of any content, or null when the heap is exhausted. */
void *kor_nvm_malloc(size_t size);

/* Gives a block back. Null is allowed and does nothing. */
void kor_nvm_free(void *block);

#ifdef __cplusplus
}
#endif

#endif
