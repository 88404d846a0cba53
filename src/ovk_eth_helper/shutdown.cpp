// SPDX-License-Identifier: Apache-2.0
#include "common/frame.h"
#include "common/op.h"
#include "common/switch_ids.h"
#include "kor_nvm.h"
#include "ovk_eth_helper/log_level.h"
#include "ovk_eth_hw/bridge_table.h"
#include "ovk_eth_hw/fdb_memory.h"
#include "ovk_eth_hw/namespaces.h"
#include "ovk_eth_hw/tree_registry.h"
#include "ovk_ethernet_module.h"

OVK_LOG_FILE(ovk_eth_helper, 3);

u32 ovk_ethernet_shutdown(ovk_module *module)
{
    return ovk::public_call(OVK_CALLER, module, OVK_LINE("Ethernet module failed to shutdown\n"),
                            OVK_LINE("Ethernet module 0x%08x failed to shutdown\n", ovk::word(module)),
                            [&]() -> ovk::outcome {
                                ovk_eth_module_object &object = ovk::object_of(module);

                                OVK_TRY(ovk_eth_clear_tree_ids(module));
                                OVK_TRY(ovk_eth_hsw_bridge_table_entry(module, OVK_ETH_REMOVE, 0, nullptr,
                                                                       OVK_ETH_ROUTER_VLAN_ID, 1));
                                OVK_TRY(ovk::free_fixed_ids(module, object));
                                OVK_TRY(ovk::destroy_namespaces(module, object));
                                ovk::free_fdb_memory(object);

                                // The handle goes back to what the host gave: a system level, and no
                                // object.
                                ovk::store_relaxed(module->log_mask, ovk_eth_map_eth_log(module));
                                ovk::store_release<void *>(module->module_object, nullptr);
                                ovk::store_relaxed(object.magic, u32{0});
                                kor_nvm_free(&object);
                                OVK_INFO(module, "Ethernet module 0x%08x shutdown\n", ovk::word(module));
                                return KOR_OK;
                            });
}
