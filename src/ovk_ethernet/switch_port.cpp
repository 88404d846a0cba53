// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/switch_port.h"

#include "common/frame.h"
#include "ovk_eth_helper/interface.h"
#include "ovk_eth_hw/port_rules.h"
#include "ovk_ethernet_switching.h"

OVK_LOG_FILE(ovk_ethernet, 10);

using ovk::word;

namespace {

constexpr u32 max_aging_minutes = 61;

} // namespace

u32 ovk_ethernet_mac_aging_timer_config(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 minutes)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to get the port for interface handle 0x%08x\n", word(if_handle)),
        OVK_LINE("Failed to configure MAC aging timer \n"), [&]() -> ovk::outcome {
            OVK_TRY(ovk::check_if_handle(module, if_handle));
            if (minutes == 0 || minutes > max_aging_minutes)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT,
                                "Mac aging timer should be greater than 0 and less than 62\n");
            if (if_handle->if_type == INTERFACE_TYPE_PHY || if_handle->if_type == INTERFACE_TYPE_AGGR)
                OVK_TRY(ovk::for_each_port(*if_handle, [&](const ovk_eth_intf &port) {
                    return ovk_eth_hsw_port_mac_aging_timer_value_set(module, port.if_id, minutes);
                }));
            OVK_TRY(ovk_eth_mac_aging_timer(module, if_handle->if_id, minutes));
            OVK_INFO(module, "Configured the MAC aging timer value on Interface handle 0x%08x\n",
                     word(if_handle));
            return KOR_OK;
        });
}
