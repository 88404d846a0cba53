// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_helper/interface.h"

#include "common/frame.h"
#include "common/mac.h"
#include "ovk_eth_helper/identifiers.h"
#include "ovk_eth_helper/names.h"

OVK_LOG_FILE(ovk_eth_helper, 4);

namespace {

u32 incompatible_type(ovk_module *module, u32 type)
{
    return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_IF_TYPE, "Incompatible Interface type %s\n",
                    ovk_eth_intf_type_name(type));
}

u32 compatible_mode(ovk_module *module, u32 mode, u32 modes)
{
    if ((ovk::mode_bit(mode) & modes) != 0)
        return KOR_OK;
    return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_FWD_MODE, "Incompatible Intf forwarding mode %s\n",
                    ovk_eth_fwd_mode_name(mode));
}

bool is_port_or_aggregate(const ovk_eth_intf &intf)
{
    return intf.if_type == INTERFACE_TYPE_PHY || intf.if_type == INTERFACE_TYPE_AGGR;
}

bool is_fwd_mode(u32 mode)
{
    return mode > OVK_ETHERNET_FWD_MODE_INVALID && mode < OVK_ETHERNET_FWD_MODE_MAX;
}

// What ports and aggregates are checked for alike.
u32 valid_encap_and_mac(ovk_module *module, u32 encap_type, const u8 *mac)
{
    if (encap_type != OVK_ETHERNET_ENCAP_DIX && encap_type != OVK_ETHERNET_ENCAP_LLC_SNAP)
        return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_ENCAP, "Invalid encapsulation type %s\n",
                        ovk_ethernet_encap_type_name(encap_type));
    if (ovk::is_group_mac(mac))
        return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_MAC_ADDR,
                        "Source MAC address " OVK_ETH_MAC_FORMAT " must not be multicast\n",
                        OVK_ETH_MAC_ARGS(mac));
    return KOR_OK;
}

} // namespace

u32 ovk::check_if_handle(ovk_module *module, ovk_ethernet_if_handle handle)
{
    if (ovk_eth_valid_if_handle(handle))
        return KOR_OK;
    return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_IF_HANDLE, "Invalid Interface handle 0x%08x\n",
                    word(handle));
}

u32 ovk::check_phy(ovk_module *module, ovk_ethernet_if_handle handle)
{
    return handle->if_type == INTERFACE_TYPE_PHY ? u32{KOR_OK} : incompatible_type(module, handle->if_type);
}

u32 ovk::check_port_or_aggregate(ovk_module *module, ovk_ethernet_if_handle handle)
{
    return is_port_or_aggregate(*handle) ? u32{KOR_OK} : incompatible_type(module, handle->if_type);
}

u32 ovk::check_no_member(ovk_module *module, ovk_ethernet_if_handle handle)
{
    if (handle->in_aggregate != 1)
        return KOR_OK;
    return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_IF_HANDLE,
                    "Invalid Uasge: Interface handle is a part of Aggregated link 0x%08x\n", word(handle));
}

u32 ovk::check_mode(ovk_module *module, ovk_ethernet_if_handle handle, u32 modes)
{
    OVK_TRY(check_port_or_aggregate(module, handle));
    return compatible_mode(module, mode_of(*handle), modes);
}

u32 ovk::check_phy_mode(ovk_module *module, ovk_ethernet_if_handle handle, u32 modes)
{
    OVK_TRY(check_phy(module, handle));
    return compatible_mode(module, handle->phy.attrs.fwd_mode, modes);
}

u32 ovk_eth_get_if_type_mode(ovk_module *module, ovk_ethernet_if_handle handle, u32 *type, u32 *mode)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        OVK_TRY(ovk::check_if_handle(module, handle));
        *type = handle->if_type;
        switch (handle->if_type) {
        case INTERFACE_TYPE_PHY:
        case INTERFACE_TYPE_AGGR:
            *mode = ovk::mode_of(*handle);
            return KOR_OK;
        case INTERFACE_TYPE_VLAN:
        case INTERFACE_TYPE_SWITCH_VIRTUAL:
            *mode = OVK_ETHERNET_FWD_MODE_HIGHER_LAYER;
            return KOR_OK;
        default:
            return incompatible_type(module, handle->if_type);
        }
    });
}

u32 ovk_eth_is_routed_intf(ovk_module *module, ovk_ethernet_if_handle handle)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        OVK_TRY(ovk::check_if_handle(module, handle));
        return is_port_or_aggregate(*handle)
                   ? compatible_mode(module, ovk::mode_of(*handle), ovk::routed_mode)
                   : u32{KOR_OK};
    });
}

u32 ovk_eth_assert_switch_port(ovk_module *module, ovk_ethernet_if_handle handle)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        OVK_TRY(ovk::check_if_handle(module, handle));
        return ovk::check_mode(module, handle, ovk::switched_modes);
    });
}

u32 ovk_eth_valid_intf_attrs(ovk_module *module, const ovk_ethernet_intf_attrs *attrs)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        const bool host_owns_mac = ovk::object_of(module).port_attributes_override != 0;

        if (!ovk::is_port_number(attrs->if_num))
            return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_PORT_NUMBER, "Invalid port number %d\n",
                            attrs->if_num);
        if (!is_fwd_mode(attrs->fwd_mode))
            return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_FWD_MODE, "Unsupported Forwarding Mode %d\n",
                            attrs->fwd_mode);
        if (!host_owns_mac &&
            (attrs->output_rate < OVK_ETHERNET_SPEED_10M || attrs->output_rate > OVK_ETHERNET_SPEED_10G))
            return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_OUTPUT_RATE, "Invalid output rate %s\n",
                            ovk_eth_port_rate_name(attrs->output_rate));
        OVK_TRY(valid_encap_and_mac(module, attrs->encap_type, attrs->src_mac));
        if (!host_owns_mac && attrs->output_rate == OVK_ETHERNET_SPEED_10G &&
            (attrs->full_duplex != 1 || attrs->autoneg == 1))
            return OVK_FAIL(module, OVK_ETHERNET_E_INCOMPAT_PORT_TYPE,
                            "Incompatible duplex/autoneg setting for port configured as XGMAC port\n");
        return KOR_OK;
    });
}

u32 ovk_eth_valid_aggr_intf_attrs(ovk_module *module, const ovk_ethernet_aggr_intf_attrs *attrs)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        if (!is_fwd_mode(attrs->fwd_mode))
            return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_FWD_MODE, "Invalid Forwarding Mode %s\n",
                            ovk_eth_fwd_mode_name(attrs->fwd_mode));
        OVK_TRY(valid_encap_and_mac(module, attrs->encap_type, attrs->src_mac));
        if (attrs->qos_mode != 1 && attrs->qos_mode != 2)
            return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_QOS_MODE,
                            "Invalid qos mode for aggregated link \n");
        return KOR_OK;
    });
}
