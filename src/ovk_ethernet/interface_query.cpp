// SPDX-License-Identifier: Apache-2.0
#include "common/frame.h"
#include "ovk_eth_helper/identifiers.h"
#include "ovk_eth_helper/interface.h"
#include "ovk_eth_helper/names.h"
#include "ovk_ethernet_interface.h"

OVK_LOG_FILE(ovk_ethernet, 6);

using ovk::word;

namespace {

bool is_owner_index(u32 port)
{
    return ovk::is_port_number(port) ||
           (port >= OVK_ETH_FIRST_AGGR_ID && port < OVK_ETH_FIRST_AGGR_ID + OVK_ETH_AGGREGATES);
}

// The handle is alive; if not, the caller's value reads 0.
u32 check_handle_or_zero(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 *out)
{
    const u32 status = ovk::check_if_handle(module, if_handle);
    if (status != KOR_OK && out != nullptr)
        *out = 0;
    return status;
}

} // namespace

u32 ovk_ethernet_port_number_get(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 *if_num)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to get the port for interface handle 0x%08x\n", word(if_handle)),
        OVK_LINE("Failed to get the port number for interface handle 0x%08x\n", word(if_handle)),
        [&]() -> ovk::outcome {
            OVK_TRY(check_handle_or_zero(module, if_handle, if_num));
            if (if_num == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null parameter pointer\n");
            if (if_handle->if_type != INTERFACE_TYPE_PHY) {
                *if_num = 0;
                return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_IF_TYPE,
                                "Incompatible Interface type %s. Must be INTERFACE_TYPE_PHY\n",
                                ovk_eth_intf_type_name(if_handle->if_type));
            }
            *if_num = if_handle->phy.attrs.if_num;
            OVK_INFO(module, "Retrieved the port number %d for Interface handle 0x%08x\n", *if_num,
                     word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_interface_handle_get(ovk_module *module, u32 port, ovk_ethernet_if_handle *if_handle)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Failed to get interface handle for port %d\n", port),
        OVK_LINE("Failed to get the interface handle for port %d\n", port), [&]() -> ovk::outcome {
            if (if_handle == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null Interface Handle Pointer\n");
            *if_handle = nullptr;
            if (!is_owner_index(port))
                return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_PORT_NUMBER, "Invalid port number %d\n",
                                port);
            ovk_eth_intf *owner = ovk::object_of(module).port_owner_table[port];
            if (owner == nullptr)
                return OVK_FAIL(module, OVK_ETHERNET_E_NON_EXISTENT_INTF,
                                "Interface handle for port %d does not exist\n", port);
            *if_handle = owner;
            OVK_INFO(module, "Retrieved the Interface handle 0x%08x for port %d\n", word(owner), port);
            return KOR_OK;
        });
}

u32 ovk_ethernet_interface_id_get(ovk_module *module, ovk_ethernet_if_handle if_handle, u32 *id)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to retrieve Interface ID for interface handle 0x%08x", word(if_handle)),
        [&]() -> ovk::outcome {
            OVK_TRY(check_handle_or_zero(module, if_handle, id));
            if (id == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null Interface ID pointer\n");
            *id = if_handle->if_id;
            OVK_INFO(module, "Retrieved Interface ID 0x%x for interface handle 0x%08x\n", *id,
                     word(if_handle));
            return KOR_OK;
        });
}
