// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/fdb_memory.h"

#include "common/frame.h"
#include "kor_nvm.h"

OVK_LOG_FILE(ovk_eth_hw, 7);

u32 ovk::allocate_fdb_memory(ovk_module *module, ovk_eth_module_object &object)
{
    for (ovk_eth_fdb_bucket *&head : object.mac_fdb_hash) {
        head = static_cast<ovk_eth_fdb_bucket *>(kor_nvm_calloc(1, sizeof(ovk_eth_fdb_bucket)));
        if (head == nullptr)
            OVK_FAIL(module, KOR_E_NO_MEMORY, "Failed to allocate memory for MAC FDB Hash Index\n");
    }
    for (ovk_eth_fdb_node *&node : object.mac_fdb_nodes) {
        node = static_cast<ovk_eth_fdb_node *>(kor_nvm_calloc(1, sizeof(ovk_eth_fdb_node)));
        if (node == nullptr)
            return OVK_FAIL(module, KOR_E_NO_MEMORY, "Failed to allocate memory for MAC FDB\n");
    }
    object.mac_fdb_count = 0;
    object.mac_fdb_lock = static_cast<kor_sem *>(kor_nvm_malloc(sizeof(kor_sem)));
    if (object.mac_fdb_lock != nullptr)
        (void)kor_sem_init(object.mac_fdb_lock, 1, 1);
    return KOR_OK;
}

void ovk::free_fdb_memory(ovk_eth_module_object &object)
{
    for (u32 index = 0; index < OVK_ETH_FDB_BUCKETS; index++)
        if (object.mac_fdb_hash[index] != nullptr)
            kor_nvm_free(object.mac_fdb_hash[index]);
    for (u32 index = 0; index < OVK_ETH_FDB_NODES; index++)
        kor_nvm_free(object.mac_fdb_nodes[index]);
    if (object.mac_fdb_lock != nullptr)
        kor_nvm_free(object.mac_fdb_lock);
}
