// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/port_state.h"

#include "common/frame.h"
#include "common/module_object.h"
#include "kor_se.h"
#include "kor_vp.h"
#include "ovk_ethernet_enums.h"

OVK_LOG_FILE(ovk_eth_hw, 12);

namespace {

// An interface's entry of the flow data: the MAC in native words, as the hardware's header builder takes
// it.
struct intf_flow_data {
    u32 reserved_0[2];
    u32 mac_high;   // octet 0 in the top byte
    u16 mac_low;    // octet 4 in the high byte
    u8 header_word; // always 8
    u8 reserved_15;
    u8 reserved_16[KOR_VP_FLOW_DATA_SIZE - 16];
};
static_assert(sizeof(intf_flow_data) == KOR_VP_FLOW_DATA_SIZE && offsetof(intf_flow_data, mac_high) == 8 &&
              offsetof(intf_flow_data, header_word) == 14);

// The same in state memory.
struct intf_se_info {
    u8 mac[OVK_ETH_MAC_BYTES]; // network order
    u8 reserved_6;
    u8 llc_snap; // 0 for Ethernet II framing, 1 for any other
};
static_assert(sizeof(intf_se_info) == 8);

constexpr u32 second_bank_offset = 256;

u32 write_flow_data(ovk_module *module, u32 if_id, const intf_flow_data &data)
{
    const kor_vp vp = ovk::object_of(module).vp_egress_encap_ipv4;
    for (u32 bank = 0; bank < 2; bank++)
        OVK_TRY_RTE(module, kor_vp_flow_data_write(vp, bank, if_id + (bank * second_bank_offset), &data),
                    KOR_E_VP_FLOW_DATA, "RTE Error: %s, Failed to write flow data\n");
    return KOR_OK;
}

u32 write_info(ovk_module *module, u32 index, const intf_se_info &info)
{
    OVK_TRY_RTE(module, kor_se_state_set(module->rte_handle, index, 0, &info, sizeof info), KOR_E_SE_WRITE,
                "RTE Error: %s, Failed to write to SE memory\n");
    return KOR_OK;
}

} // namespace

u32 ovk_eth_intf_flow_data_set(ovk_module *module, u32 if_id, const u8 *mac, u32 /*encap_type*/)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        intf_flow_data data = {};
        data.mac_high = u32{mac[0]} << 24 | u32{mac[1]} << 16 | u32{mac[2]} << 8 | u32{mac[3]};
        data.mac_low = static_cast<u16>(mac[4] << 8 | mac[5]);
        data.header_word = 8;
        return write_flow_data(module, if_id, data);
    });
}

u32 ovk_eth_intf_flow_data_clear(ovk_module *module, u32 if_id)
{
    return ovk::internal_call(OVK_CALLER, module, [&] { return write_flow_data(module, if_id, {}); });
}

u32 ovk_eth_if_info_se_set(ovk_module *module, u32 index, const u8 *mac, u32 encap_type)
{
    return ovk::internal_call(OVK_CALLER, module, [&] {
        intf_se_info info = {};
        ovk::copy_mac(info.mac, mac);
        info.llc_snap = encap_type == OVK_ETHERNET_ENCAP_DIX ? 0 : 1;
        return write_info(module, index, info);
    });
}

u32 ovk_eth_if_info_se_reset(ovk_module *module, u32 index)
{
    return ovk::internal_call(OVK_CALLER, module, [&] { return write_info(module, index, {}); });
}
