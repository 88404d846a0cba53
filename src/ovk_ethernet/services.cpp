// SPDX-License-Identifier: Apache-2.0
#include "ovk_ethernet/services.h"

#include "common/frame.h"
#include "common/layout.h"
#include "ovk_eth_helper/names.h"
#include "ovk_eth_hw/tree_registry.h"
#include "ovk_eth_hw/virtual_pipelines.h"
#include "ovk_ethernet_log.h"
#include "ovk_ethernet_module.h"

OVK_LOG_FILE(ovk_ethernet, 3);

OVK_TARGET_SIZE(ovk_service_record, 76);
OVK_TARGET_OFFSET(ovk_service_record, custom_bind, 20);
OVK_TARGET_OFFSET(ovk_service_record, custom_unbind, 24);
OVK_TARGET_OFFSET(ovk_service_record, get_imc, 40);
OVK_TARGET_OFFSET(ovk_service_record, get_entry_func, 44);
OVK_TARGET_OFFSET(ovk_service_record, indirect_fn_id, 50);
OVK_TARGET_OFFSET(ovk_service_record, direct_fn_id, 54);
OVK_TARGET_OFFSET(ovk_service_record, sys_log, 64);
OVK_TARGET_OFFSET(ovk_service_record, error_name, 68);

namespace {

// The four binding slots stay null until the module has module binding.
constexpr ovk_service_record services = {
    .shutdown = ovk_ethernet_shutdown,
    .custom_bind = nullptr,
    .custom_unbind = nullptr,
    .get_imc = nullptr,
    .get_entry_func = nullptr,
    .sys_log = ovk_ethernet_sys_log,
    .error_name = ovk_eth_error_name,
};

} // namespace

ovk_service_record ovk::service_addresses()
{
    return services;
}

u32 ovk_ethernet_service_function_update(ovk_module *module)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Ethernet module failed to register service fns\n"),
        [&]() -> ovk::outcome {
            ovk_eth_module_object &object = ovk::object_of(module);

            OVK_TRY(ovk::bind_virtual_pipelines(module, object));
            const ovk_service_record record = ovk::service_addresses();
            if (const u32 rc = ovk_module_service_function_update(module->parent, module, &record))
                return OVK_FAIL(module, rc, "Failed to register Ethernet module's service functions\n");
            for (u32 index = 1; index < OVK_ETH_TREE_COUNT; index++)
                if (const u32 status = ovk_ethernet_update_tree_info(module, index, &object.trees[index]))
                    return OVK_FAIL_FATAL(module, status, "Failed to update XGR tree info for idx %d\n",
                                          index);
            return KOR_OK;
        });
}
