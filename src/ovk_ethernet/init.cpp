// SPDX-License-Identifier: Apache-2.0
#include "common/frame.h"
#include "common/op.h"
#include "common/switch_ids.h"
#include "kor_nvm.h"
#include "ovk_eth_helper/log_level.h"
#include "ovk_eth_hw/bridge_table.h"
#include "ovk_eth_hw/fdb_memory.h"
#include "ovk_eth_hw/namespaces.h"
#include "ovk_eth_hw/state_memory.h"
#include "ovk_eth_hw/switch_defaults.h"
#include "ovk_eth_hw/tree_registry.h"
#include "ovk_eth_hw/virtual_pipelines.h"
#include "ovk_ethernet/services.h"
#include "ovk_ethernet_module.h"

OVK_LOG_FILE(ovk_ethernet, 4);

using ovk::word;

const ovk_eth_obj_size eth_obj_size[OVK_ETH_OBJ_SIZE_ROWS] = {
    {.name = "ovk-eth-module", .size = 87788, .head = 0, .max_count = 1},
    {.name = "ovk-eth-l2if", .size = 412, .head = 28, .max_count = 3},
    {.name = "ovk-eth-bvi", .size = 412, .head = 28, .max_count = 32},
    {.name = "ovk-eth-subif", .size = 412, .head = 28, .max_count = 64},
    {.name = "ovk-eth-mac-fdb", .size = 36, .head = 0, .max_count = 8000},
    {.name = "ovk-eth-encap-flow", .size = 40, .head = 12, .max_count = 11256},
    {.name = "ovk-eth-ingress-flow", .size = 40, .head = 12, .max_count = 60000},
    {.name = "ovk-eth-stats-flow", .size = 40, .head = 12, .max_count = 192},
    {.name = "ovk-eth-cpu-flow", .size = 40, .head = 12, .max_count = 64},
    {.name = "ovk-eth-egress-flow", .size = 40, .head = 12, .max_count = 32},
};

namespace {

// The state records that the classifier's MAC table lies in.
constexpr u32 mac_learning_first_id = 0xD0CE11;
constexpr u32 mac_learning_ids = 8200;
constexpr u32 mac_learning_record_size = 32;
static_assert(mac_learning_first_id + mac_learning_ids - 1 == 0xD0EE18);

constexpr u8 default_task_priority = 4;

void log_profile(ovk_module *module)
{
    OVK_INFO(module, "Initializing at log-level 0x%04x\n", module->log_mask);
    // What the build is sized for; nothing is decided by it at run time.
    OVK_INFO(module, "Profile - OVK_TRIMAX_PROFILE_2\n");
    u32 total = 0;
    for (const ovk_eth_obj_size &row : eth_obj_size) {
        const u32 instance = row.size + row.head;
        OVK_INFO(module, "OVK ETH NVM Usage (%s): %d Bytes per instance, %d Bytes total maximum\n",
                 row.name, instance, instance * row.max_count);
        total += instance * row.max_count;
    }
    OVK_INFO(module, "OVK ETH NVM Total Max Usage: %d Bytes\n", total);
}

// One of the few direct looks at the classifier: there is no tree behind these two, and no record but the
// object.
u32 entry_function(ovk_module *module, const char *name, u32 *id)
{
    if (const u32 rc = kor_ptn_symbol_get_id(module->rte_handle, name, id))
        return OVK_FAIL(module, KOR_E_PTN_SYMBOL, "Failed to get the ethernet entry functionID, Error: %s",
                        kor_status_get(rc));
    return KOR_OK;
}

u32 clear_mac_learning_area(ovk_module *module)
{
    for (u32 index = 0; index < mac_learning_ids; index++)
        OVK_TRY(ovk_eth_clear_se_state(module, mac_learning_first_id + index, mac_learning_record_size));
    return KOR_OK;
}

u32 register_services(ovk_module *module, const ovk_eth_module_object &object)
{
    ovk_service_record record = ovk::service_addresses();
    record.indirect_fn_id =
        static_cast<u16>(object.trees[OVK_ETH_TREE_ETHERNET_ENCAPSULATION_INDIRECT].tree_id);
    record.direct_fn_id =
        static_cast<u16>(object.trees[OVK_ETH_TREE_ETHERNET_ENCAPSULATION_DIRECT].tree_id);
    if (const u32 rc = ovk_module_service_function_register(module->parent, module, &record))
        return OVK_FAIL(module, rc, "Failed to register Ethernet module's service functions\n");
    return KOR_OK;
}

// Everything between the object's birth and its publication, in an order that hosts see.
u32 set_up(ovk_module *module, ovk_eth_module_object &object)
{
    OVK_TRY(ovk::bind_virtual_pipelines(module, object));
    OVK_TRY(ovk::create_namespaces(module, object));
    OVK_TRY(ovk::find_namespaces(module, object));
    OVK_TRY(ovk::take_fixed_ids(module, object));
    for (u8 &in_use : object.aggr_in_use)
        in_use = 0;
    OVK_TRY(ovk_eth_cache_tree_ids(module, &object));
    object.time_slot = {};
    OVK_TRY(entry_function(module, "ovk_ethernet.Process_CPU_Pkts", &object.cpu_entry_fn_id));
    OVK_TRY(
        entry_function(module, "ovk_ethernet.Process_CPU_Pkts_For_Bridging", &object.bridging_entry_fn_id));
    OVK_TRY(clear_mac_learning_area(module));
    OVK_TRY(register_services(module, object));
    OVK_TRY(ovk::allocate_fdb_memory(module, object));
    OVK_TRY(ovk::set_switch_defaults(module));
    return ovk_eth_hsw_bridge_table_entry(module, OVK_ETH_ADD, 0, nullptr, OVK_ETH_ROUTER_VLAN_ID, 1);
}

// From here on other calls may find the module.
void publish(ovk_module *module, ovk_eth_module_object &object)
{
    for (u8 &priority : object.pcp_to_task_pri)
        priority = default_task_priority;
    object.port_attributes_override = 0;
    object.fdb_events_enabled = 1;
    for (ovk_eth_intf *&owner : object.port_owner_table)
        owner = nullptr;
    ovk::store_relaxed(object.magic, OVK_ETH_MODULE_MAGIC);
    ovk::store_release<void *>(module->module_object, &object);
    OVK_INFO(module, "Ethernet module 0x%08x initialized\n", word(module));
}

u32 initialize(ovk_module *module, ovk_eth_module_object *&object)
{
    u32 mask = 0;
    OVK_TRY(ovk_eth_map_sys_log(module, ovk::load_relaxed(module->log_mask), &mask));
    ovk::store_relaxed(module->log_mask, mask);
    log_profile(module);

    object = static_cast<ovk_eth_module_object *>(kor_nvm_calloc(1, sizeof(ovk_eth_module_object)));
    if (object == nullptr)
        return OVK_FAIL_FATAL(module, KOR_E_NO_MEMORY, "Memory allocation failed\n");
    OVK_TRY(set_up(module, *object));
    publish(module, *object);
    return KOR_OK;
}

// What a failed start takes back: the object alone, if there is one.
void discard(ovk_module *module, ovk_eth_module_object *object)
{
    if (object == nullptr)
        return;
    ovk::store_relaxed(object->magic, u32{0});
    ovk::store_release<void *>(module->module_object, nullptr);
    kor_nvm_free(object);
}

} // namespace

u32 ovk_ethernet_init(ovk_module *module)
{
    const ovk::caller from = OVK_CALLER;

    if (module == nullptr) {
        OVK_FORCED(OVK_HERE, "Invalid Ethernet module handle 0x%08x\n", word(module));
        OVK_FORCED(OVK_HERE, "Ethernet module failed to initialize\n");
        return KOR_E_INVALID_HANDLE;
    }
    if (ovk_eth_valid_handle(module)) {
        OVK_FORCED(OVK_HERE, "Ethernet Module handle 0x%08x is already initialized\n", word(module));
        return KOR_OK;
    }
    ovk_eth_module_object *object = nullptr;
    const auto give_up = [&](auto &&sink) {
        OVK_LINE("Ethernet module 0x%08x failed to initialize\n", word(module))(sink);
        discard(module, object);
    };
    return ovk::framed_call(from, module, give_up,
                            [&]() -> ovk::outcome { return initialize(module, object); });
}
