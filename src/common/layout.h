// SPDX-License-Identifier: Apache-2.0
//
// Two data models. Records that the contract with the host fixes are those of the target, a 32-bit
// little-endian machine; the same source compiled natively gives wider ones. OVK_TARGET_SIZE and
// OVK_TARGET_OFFSET pin the target's numbers and say nothing where pointers are wider.
#ifndef OVK_ETH_COMMON_LAYOUT_H
#define OVK_ETH_COMMON_LAYOUT_H

#include <cstddef>

#include "kor_types.h"

inline constexpr bool ovk_target_layout = sizeof(void *) == 4;

#define OVK_TARGET_SIZE(type, size) static_assert(!ovk_target_layout || sizeof(type) == (size))
#define OVK_TARGET_OFFSET(type, field, offset)                                                             \
    static_assert(!ovk_target_layout || offsetof(type, field) == (offset))

#endif
