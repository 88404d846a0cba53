/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_types: the word types that every platform and library header speaks.
 *
 * The chip's control processor is a 32-bit little-endian machine. All counts, ids, statuses and handles of
 * the run-time environment are u32 on every data model; only what is truly an address is a pointer.
 */
#ifndef KOR_TYPES_H
#define KOR_TYPES_H

#include <stddef.h>
#include <stdint.h>

typedef uint8_t u8;
typedef uint16_t u16;
typedef uint32_t u32;
typedef uint64_t u64;
typedef int16_t i16;
typedef int32_t i32;

/* A handle of the run-time environment, passed first to most kor_ operations. */
typedef u32 kor_rte;

#endif
