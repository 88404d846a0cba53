// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/tree_registry.h"

#include <cstring>

#include "common/frame.h"
#include "common/tree_list.h"
#include "ovk_eth_hw_helper/pattern.h"
#include "ovk_sif.h"

OVK_LOG_FILE(ovk_eth_hw, 1);

namespace {

void copy_name(char (&out)[OVK_ETH_TREE_NAME_SIZE], const char *name)
{
    std::strncpy(out, name != nullptr ? name : "", sizeof out);
}

void copy_row(const eth_tree_row &row, eth_tree_info &info)
{
    info.key_bits = row.key_bits;
    info.default_action = row.default_action;
    info.has_subnet_db = row.has_subnet_db;
    info.dump_groups = row.dump_groups;
    copy_name(info.tree_name, row.tree_name);
    copy_name(info.default_name, row.default_name);
}

u32 resolve_names(ovk_module *module, eth_tree_info &info)
{
    if (const u32 rc = kor_ptn_symbol_get_id(module->rte_handle, info.tree_name, &info.tree_id))
        return OVK_FAIL(module, KOR_E_PTN_SYMBOL,
                        "RTE Error: %s, Failed to return ID for the XGR tree function %s\n",
                        kor_status_get(rc), info.tree_name);
    if (info.default_action.type != KOR_PTN_ACTION_FUNCTION)
        return KOR_OK;
    if (const u32 rc =
            kor_ptn_symbol_get_id(module->rte_handle, info.default_name, &info.default_action.w1))
        return OVK_FAIL(module, KOR_E_PTN_SYMBOL,
                        "RTE Error: %s, Failed to return ID for the XGR flow function %s\n",
                        kor_status_get(rc), info.default_name);
    return KOR_OK;
}

// The database's zero-length entry, which carries the tree's default action.
u32 add_root(ovk_module *module, const eth_tree_info &info, kor_ptn &root)
{
    const u32 rc = ovk::one_bit_wider(root, [&] {
        const auto print = [&] { ovk::print_rule(root, info.default_action); };
        OVK_LOG_RECORD(module, subnet_add, print, "%s: ", info.tree_name);
        return kor_subnet_add_subnet(info.subnet_db, &root, &info.default_action);
    });
    if (rc != KOR_OK)
        return OVK_FAIL(module, KOR_E_SUBNET_ADD,
                        "RTE Error: %s, Failed to add default input pattern to subnet\n",
                        kor_status_get(rc));
    return KOR_OK;
}

void log_sizing(ovk_module *module, const eth_tree_row &row)
{
    u32 size = 0;
    u32 optimized_size = 0;
    // A size that can't be told is reported as 0.
    (void)ovk_sif_max_subnet_entry_sz_get(row.key_bits, row.size_flag, &size, &optimized_size);
    OVK_INFO(module, "%s: Width %d, Expected Entries %d\n\t Subnet Size %d, Optimized Subnet Size %d\n",
             row.tree_name, row.key_bits, row.expected_entries, size * row.expected_entries,
             optimized_size * row.expected_entries);
}

u32 make_database(ovk_module *module, const eth_tree_row &row, eth_tree_info &info)
{
    if (const u32 rc = kor_subnet_create(info.key_bits + 1, 0, 0, &info.subnet_db))
        return OVK_FAIL(module, KOR_E_SUBNET_CREATE, "RTE Error: %s, Failed to create subnet database\n",
                        kor_status_get(rc));
    kor_ptn root = {};
    u32 status = ovk_ptn_new(info.key_bits, &root);
    if (status != KOR_OK)
        OVK_FAIL(module, status, "Could not build the default input pattern\n");
    else if ((status = add_root(module, info, root)) == KOR_OK)
        log_sizing(module, row);
    // Also a pattern that couldn't be made: freeing an all-zero one does nothing.
    (void)ovk_ptn_free(root.data, root.length, root.width);
    return status;
}

} // namespace

u32 ovk_eth_get_xgr_tree_info(ovk_module *module, u32 index, eth_tree_info *info)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        info->dump_groups = 0;
        const eth_tree_row *row = eth_tree_row_of(index);
        if (row == nullptr)
            return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Invalid XGR function\n");
        copy_row(*row, *info);
        OVK_TRY(resolve_names(module, *info));

        info->input_pattern = {};
        if (info->key_bits != 0 && ovk_ptn_new(info->key_bits, &info->input_pattern) != KOR_OK)
            return OVK_FAIL(module, KOR_E_NO_MEMORY, "Failed to allocate memory for input patternn");

        info->subnet_db = 0;
        return info->has_subnet_db == 1 ? make_database(module, *row, *info) : u32{KOR_OK};
    });
}

u32 ovk_eth_cache_tree_ids(ovk_module *module, ovk_eth_module_object *module_object)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        for (u32 index = 1; index < OVK_ETH_TREE_COUNT; index++)
            if (const u32 status = ovk_eth_get_xgr_tree_info(module, index, &module_object->trees[index]))
                return OVK_FAIL(module, status, "Failed to cache Ethernet module's tree IDs\n");
        return KOR_OK;
    });
}

u32 ovk_eth_del_xgr_tree_info(ovk_module *module, eth_tree_info *info)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        if (info->has_subnet_db == 1) {
            if (const u32 rc = kor_subnet_destroy(&info->subnet_db))
                return OVK_FAIL(module, KOR_E_SUBNET_DESTROY,
                                "RTE Error: %s, Failed to destroy subnet database for %s\n",
                                kor_status_get(rc), info->tree_name);
            info->has_subnet_db = 0;
            info->subnet_db = 0;
        }
        // Entries without a key have an all-zero pattern, and go the same way.
        const kor_ptn pattern = info->input_pattern;
        const u32 status = ovk_ptn_free(pattern.data, pattern.length, pattern.width);
        // A shutdown that fails further on leaves the module alive: it must not find a freed pattern.
        if (status == KOR_OK)
            info->input_pattern = {};
        return status;
    });
}

u32 ovk_eth_clear_tree_ids(ovk_module *module)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        for (u32 index = 1; index < OVK_ETH_TREE_COUNT; index++)
            if (const u32 status = ovk_eth_del_xgr_tree_info(module, &ovk::object_of(module).trees[index]))
                return OVK_FAIL(module, status, "Failed to clear Ethernet module's tree IDs\n");
        return KOR_OK;
    });
}

u32 ovk_ethernet_update_tree_info(ovk_module *module, u32 index, eth_tree_info *info)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        const eth_tree_row *row = eth_tree_row_of(index);
        if (row == nullptr)
            return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Invalid XGR Tree function %d\n", index);
        info->dump_fn = row->dump_fn;
        return KOR_OK;
    });
}
