/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_status: the run-time environment's generic status codes and their texts.
 *
 * 0 is success. Everything else is a failure, and callers compare with 0 or with one value, never with a
 * range. The codes below are those that a service module sets from its own checks; an operation may return
 * others, which travel to the caller unchanged.
 */
#ifndef KOR_STATUS_H
#define KOR_STATUS_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum kor_status {
    KOR_OK = 0,
    KOR_E_INVALID_HANDLE = 1,
    KOR_E_INVALID_ARGUMENT = 8,
    KOR_E_UNSUPPORTED = 15,
    KOR_E_NO_MEMORY = 18,
    KOR_E_VP_NOT_FOUND = 20,
    KOR_E_RSRC_NOT_FOUND = 25,
    KOR_E_RSRC_CREATE = 26,
    KOR_E_RSRC_DESTROY = 27,
    KOR_E_RSRC_QUERY = 28,
    KOR_E_RSRC_ALLOCATE = 29,
    KOR_E_RSRC_FREE = 30,
    KOR_E_SE_READ = 43, /* also a failed clear of the traffic manager's shared memory */
    KOR_E_SE_WRITE = 44,
    KOR_E_SUBNET_CREATE = 58,
    KOR_E_SUBNET_DESTROY = 59,
    KOR_E_SUBNET_ADD = 60,
    KOR_E_SUBNET_DELETE = 61,
    KOR_E_SUBNET_FIND = 62,
    KOR_E_PTN_SYMBOL = 63,
    KOR_E_PTN_LEARN = 64,
    KOR_E_PTN_UNLEARN = 65,
    KOR_E_BRIDGE_LEARN = 153,
    KOR_E_BRIDGE_UNLEARN = 154,

    /* A domain that no module knows; the family's own argument code. */
    OVK_E_INVALID_ARGUMENT = 0x30008,
    /* The module lock. Kept apart from all other codes, so that a host can tell them. */
    OVK_E_LOCK_ACQUIRE = 0x300A5,
    OVK_E_LOCK_RELEASE = 0x100A5
};

/* Text of a status that came out of a kor_ operation. Any code has one; the text stays the platform's. */
const char *kor_status_get(u32 status);

#ifdef __cplusplus
}
#endif

#endif
