/* SPDX-License-Identifier: Apache-2.0 */
/* kor_qsh: the traffic manager's shared memory. */
#ifndef KOR_QSH_H
#define KOR_QSH_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct kor_qsh_shared_param {
    u32 ns_id;
    const void *buffer;
    u32 length; /* bytes */
} kor_qsh_shared_param;

/* Writes the descriptor's bytes to its id. `flags` is 0. */
u32 kor_qsh_shared_param_mod(kor_rte rte, const kor_qsh_shared_param *param, u32 flags);

#ifdef __cplusplus
}
#endif

#endif
