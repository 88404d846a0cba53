/* SPDX-License-Identifier: Apache-2.0 */
/* ovk_sif: what the subnet and interface modules offer to their siblings. */
#ifndef OVK_SIF_H
#define OVK_SIF_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Sizes in bytes of one entry of a subnet database for keys of `key_bits` bits, plain and optimized. `flag` is
 * 0 or 1. Returns 0 or a status, with the outputs untouched.
 */
u32 ovk_sif_max_subnet_entry_sz_get(u32 key_bits, u32 flag, u32 *size, u32 *optimized_size);

#ifdef __cplusplus
}
#endif

#endif
