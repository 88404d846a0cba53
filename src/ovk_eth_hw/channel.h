// SPDX-License-Identifier: Apache-2.0
//
// How every writer of port settings begins: the port number is turned into a MAC channel.
#ifndef OVK_ETH_HW_CHANNEL_H
#define OVK_ETH_HW_CHANNEL_H

#include "common/frame.h"

namespace ovk {

struct found_channel {
    u32 status;
    u32 channel;
};

// The MAC channel of a port number. On failure says so, with no hardware touched; the system module's
// status. Handed back by value, so that one place alone loads what the platform has just stored: with a
// load in each writer the processor keeps guessing wrong which store it sees.
found_channel find_channel(ovk_module *module, u32 port);

// A named internal function that works on a port's MAC channel: body(channel).
template <class Body>
u32 on_channel(caller from, ovk_module *module, u32 port, Body body)
{
    return internal_call(from, module, [&]() -> u32 {
        const found_channel found = find_channel(module, port);
        OVK_TRY(found.status);
        return body(found.channel);
    });
}

// A platform status with "it is there already" taken as success.
constexpr u32 already_is_fine(u32 status)
{
    return status == KOR_S_ALREADY ? u32{KOR_OK} : status;
}

} // namespace ovk

#endif
