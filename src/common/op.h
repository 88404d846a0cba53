// SPDX-License-Identifier: Apache-2.0
#ifndef OVK_ETH_COMMON_OP_H
#define OVK_ETH_COMMON_OP_H

#include "kor_types.h"

// What a writer is asked to do. For the action any other value counts as a removal, for the rule engine as
// an addition; both stay so.
enum ovk_eth_op : u32 {
    OVK_ETH_ADD = 1,
    OVK_ETH_REMOVE = 2
};

#endif
