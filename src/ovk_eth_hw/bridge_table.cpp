// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/bridge_table.h"

#include <cstddef>
#include <cstring>

#include "common/op.h"
#include "kor_gatr_switch.h"

OVK_LOG_FILE(ovk_eth_hw, 3);

static_assert(sizeof(kor_gatr_bridge_key) == 16 && offsetof(kor_gatr_bridge_key, mac) == 6);
static_assert(sizeof(kor_gatr_bridge_entry) == 32 && offsetof(kor_gatr_bridge_entry, port) == 16 &&
              offsetof(kor_gatr_bridge_entry, mac_flags) == 22 &&
              offsetof(kor_gatr_bridge_entry, age) == 26 &&
              offsetof(kor_gatr_bridge_entry, bridge_group) == 28 &&
              offsetof(kor_gatr_bridge_entry, destination_index) == 30);

namespace {

constexpr u8 default_destination = 200;

} // namespace

u32 ovk_eth_hsw_bridge_table_entry(ovk_module *module, u32 op, u32 port, const u8 *mac, u32 bg_id,
                                   u8 is_default)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        kor_gatr_bridge_entry entry = {};
        entry.key.bridge_group = static_cast<u16>(bg_id);
        if (is_default != 0) {
            entry.key.kind = KOR_GATR_BRIDGE_DEFAULT;
            entry.destination_index = default_destination;
        } else {
            entry.key.kind = KOR_GATR_BRIDGE_MAC;
            std::memcpy(entry.key.mac, mac, sizeof entry.key.mac);
            entry.destination_index = static_cast<u8>(port + 1);
            std::memset(entry.mac_flags, 1, sizeof entry.mac_flags);
        }

        if (op != OVK_ETH_ADD) {
            if (const u32 rc = kor_gatr_switch_bridge_entry_unlearn(module->rte_handle, &entry.key))
                return OVK_FAIL(module, KOR_E_BRIDGE_UNLEARN,
                                "RTE Error: %s, Failed to remove entry from HSW Bridging table\n",
                                kor_status_get(rc));
            return KOR_OK;
        }
        entry.port = static_cast<u8>(port);
        entry.bridge_group = static_cast<u16>(bg_id);
        if (const u32 rc = kor_gatr_switch_bridge_entry_learn(module->rte_handle, &entry))
            return OVK_FAIL(module, KOR_E_BRIDGE_LEARN,
                            "RTE Error: %s, Failed to add entry to HSW Bridging table\n",
                            kor_status_get(rc));
        return KOR_OK;
    });
}
