// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_helper/log_level.h"

#include "common/frame.h"

OVK_LOG_FILE(ovk_eth_helper, 1);

u32 ovk_eth_map_sys_log(ovk_module *module, u32 level, u32 *out)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        switch (level) {
        case 0:
        case 1:
        case 3:
        case 7:
        case 15:
            *out = level;
            return KOR_OK;
        default:
            OVK_WARN(module, "Unsupported log-level in Ethernet!");
            return KOR_E_UNSUPPORTED;
        }
    });
}

u32 ovk_eth_map_eth_log(ovk_module *module)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        const u32 mask = ovk::load_relaxed(module->log_mask);
        if ((mask & 8) != 0)
            return 15;
        if ((mask & 4) != 0)
            return 7;
        if ((mask & 2) != 0)
            return 3;
        return mask != 0 ? 1 : 0;
    });
}
