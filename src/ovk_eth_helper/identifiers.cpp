// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_helper/identifiers.h"

#include "common/module_object.h"

namespace {

// Port number by switch index.
constexpr u8 ports[] = {0,    1,    2,    3,    4,    0x10, 0x11, 0x12, 0x13, 0x14, 0x20,
                        0x21, 0x30, 0x31, 0x40, 0x41, 0x50, 0x51, 0x60, 0x61, 0x70, 0x71};
static_assert(sizeof ports == OVK_ETH_SWITCH_PORTS);

} // namespace

u32 ovk_eth_create_hsw_if_id(u32 if_num)
{
    for (u32 index = 0; index < OVK_ETH_SWITCH_PORTS; index++)
        if (ports[index] == if_num)
            return index;
    return 0;
}

u32 ovk_eth_create_port_id(u32 hsw_if_id)
{
    return hsw_if_id < OVK_ETH_SWITCH_PORTS ? ports[hsw_if_id] : 0;
}
