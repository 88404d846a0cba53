// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/state_memory.h"

#include "kor_qsh.h"
#include "kor_se.h"
#include "ovk_print.h"

OVK_LOG_FILE(ovk_eth_hw, 2);

namespace {

// What both functions write. Sizes aren't checked: no caller has one above its memory's limit.
constexpr u8 zeroes[256] = {};

} // namespace

u32 ovk_eth_clear_se_state(ovk_module *module, u32 ns_id, u32 size)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        OVK_LOG_RECORD(
            module, se_write, [&] { ovk_byte_string_print(zeroes, size); }, "NS ID 0x%08x idx %d: ", ns_id,
            0);
        if (const u32 rc = kor_se_state_set(module->rte_handle, ns_id, 0, zeroes, size))
            return OVK_FAIL(module, KOR_E_SE_WRITE,
                            "RTE Error: %s, Failed to reset counters in SE memory\n", kor_status_get(rc));
        return KOR_OK;
    });
}

u32 ovk_eth_clear_shared_namespace_state(ovk_module *module, u32 ns_id, u32 size)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        const kor_qsh_shared_param param = {.ns_id = ns_id, .buffer = zeroes, .length = size};
        if (const u32 rc = kor_qsh_shared_param_mod(module->rte_handle, &param, 0))
            return OVK_FAIL(module, KOR_E_SE_READ,
                            "RTE Error: %s, Failed to initialize QSH shared memory\n", kor_status_get(rc));
        return KOR_OK;
    });
}
