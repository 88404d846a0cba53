// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/channel.h"

OVK_LOG_FILE(ovk_eth_hw, 10);

ovk::found_channel ovk::find_channel(ovk_module *module, u32 port)
{
    u32 channel = 0;
    if (const u32 rc = ovk_sys_mac_channel_id_get(module->parent, port, &channel))
        return {OVK_FAIL(module, rc, "ovk_sys_mac_channel_id_get failed for port %d\n", port), channel};
    return {KOR_OK, channel};
}
