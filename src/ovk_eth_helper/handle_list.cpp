// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_helper/handle_list.h"

#include "common/frame.h"

OVK_LOG_FILE(ovk_eth_helper, 5);

namespace {

// Index of the handle, or the count if it isn't listed.
u32 index_of(const ovk_eth_module_object &object, ovk_ethernet_if_handle handle)
{
    u32 index = 0;
    while (index < object.if_handle_count && object.if_handles[index] != handle)
        index++;
    return index;
}

} // namespace

u32 ovk_eth_if_handle_list_add(ovk_module *module, ovk_ethernet_if_handle handle)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        ovk_eth_module_object &object = ovk::object_of(module);
        if (object.if_handle_count == OVK_ETH_MAX_IF_HANDLES)
            return OVK_FAIL(module, KOR_E_LIST_FULL,
                            "Cannot add any more interfaces.Reached the maximum number of %d interfaces\n",
                            OVK_ETH_MAX_IF_HANDLES);
        object.if_handles[object.if_handle_count++] = handle;
        return KOR_OK;
    });
}

u32 ovk_eth_if_handle_list_find(ovk_module *module, ovk_ethernet_if_handle handle)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        const ovk_eth_module_object &object = ovk::object_of(module);
        return index_of(object, handle) < object.if_handle_count ? 1 : 0;
    });
}

u32 ovk_eth_if_handle_list_rem(ovk_module *module, ovk_ethernet_if_handle handle)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        ovk_eth_module_object &object = ovk::object_of(module);
        const u32 index = index_of(object, handle);
        if (index == object.if_handle_count)
            return OVK_FAIL(module, 1, "Cannot find the interface handle to be removed");
        const u32 last = --object.if_handle_count;
        object.if_handles[index] = object.if_handles[last];
        object.if_handles[last] = nullptr;
        return KOR_OK;
    });
}
