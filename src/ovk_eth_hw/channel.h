// SPDX-License-Identifier: Apache-2.0
//
// How every writer of port settings begins: the port number is turned into a MAC channel.
#ifndef OVK_ETH_HW_CHANNEL_H
#define OVK_ETH_HW_CHANNEL_H

#include "common/frame.h"

namespace ovk {

// The MAC channel of a port number. On failure says so, with no hardware touched; the system module's
// status.
u32 find_channel(ovk_module *module, u32 port, u32 *channel);

// A named internal function that works on a port's MAC channel: body(channel).
template <class Body>
u32 on_channel(caller from, ovk_module *module, u32 port, Body body)
{
    return internal_call(from, module, [&]() -> u32 {
        u32 channel = 0;
        OVK_TRY(find_channel(module, port, &channel));
        return body(channel);
    });
}

// A platform status with "it is there already" taken as success.
constexpr u32 already_is_fine(u32 status)
{
    return status == KOR_S_ALREADY ? u32{KOR_OK} : status;
}

} // namespace ovk

#endif
