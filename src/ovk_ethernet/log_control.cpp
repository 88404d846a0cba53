// SPDX-License-Identifier: Apache-2.0
#include "common/frame.h"
#include "ovk_eth_helper/log_level.h"
#include "ovk_ethernet_log.h"

OVK_LOG_FILE(ovk_ethernet, 1);

using ovk::word;

u32 ovk_ethernet_log_level_set(ovk_module *module, u32 mask)
{
    return ovk::public_call(OVK_CALLER, module, OVK_LINE("Failed to set Ethernet log-level 0x%x\n", mask),
                            [&]() -> ovk::outcome {
                                ovk::store_relaxed(module->log_mask, mask);
                                OVK_INFO(module, "Ethernet module 0x%08x log-level set to 0x%x\n",
                                         word(module), mask);
                                return KOR_OK;
                            });
}

u32 ovk_ethernet_log_enable(ovk_module *module, u32 mask)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Failed to enable log 0x%x\n", mask), [&]() -> ovk::outcome {
            ovk::store_relaxed(module->log_mask, module->log_mask | mask);
            OVK_INFO(module, "Enabled log-level 0x%x for Ethernet module 0x%08x\n", mask, word(module));
            return KOR_OK;
        });
}

u32 ovk_ethernet_log_disable(ovk_module *module, u32 mask)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Failed to disable log 0x%x\n", mask), [&]() -> ovk::outcome {
            ovk::store_relaxed(module->log_mask, module->log_mask & ~mask);
            OVK_INFO(module, "Disabled log-level 0x%x for Ethernet module 0x%08x\n", mask, word(module));
            return KOR_OK;
        });
}

u32 ovk_ethernet_sys_log(ovk_module *module, u32 level)
{
    return ovk::public_call(OVK_CALLER, module, OVK_LINE("Failed to set log-level 0x%x\n", level),
                            OVK_LINE("Failed to set log-level %d\n", level), [&]() -> ovk::outcome {
                                u32 mask = 0;
                                OVK_TRY(ovk_eth_map_sys_log(module, level, &mask));
                                ovk::store_relaxed(module->log_mask, mask);
                                OVK_INFO(module, "Ethernet module 0x%08x log-level set to 0x%x\n",
                                         word(module), mask);
                                return KOR_OK;
                            });
}
