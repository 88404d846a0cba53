// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/statistics.h"

#include "common/frame.h"
#include "kor_time.h"
#include "ovk_eth_helper/interface.h"
#include "ovk_eth_helper/names.h"

OVK_LOG_FILE(ovk_ethernet, 11);

using ovk::outcome;
using ovk::word;

namespace {

constexpr u32 microseconds_per_millisecond = 1000;

u32 check_record(ovk_module *module, const void *record)
{
    if (record != nullptr)
        return KOR_OK;
    return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null stats pointer parameter\n");
}

u32 check_handle_and_record(ovk_module *module, ovk_ethernet_if_handle if_handle, const void *record)
{
    OVK_TRY(ovk::check_if_handle(module, if_handle));
    return check_record(module, record);
}

// What the classifier dropped was never received at layer 2. Frames and octets are 64 bits, the sums of
// errors 32.
void derive(ovk_eth_l2_stats &l2, const ovk_eth_port_stats &port, const ovk_eth_if_stats &intf)
{
    const auto low = [](u64 counter) { return static_cast<u32>(counter); };
    const u32 mac_errors = intf.bad_length_pkts + intf.rx_802_3_pkts_not_supported;

    l2.rx_bytes = port.rx_octets - intf.ieee_802_3_dropped_bytes - port.rx_bad_octets;
    l2.rx_ucast = port.rx_frm - port.rx_bad_frm - port.rx_mcast - port.rx_bcast - intf.rx_error_ucast -
                  (port.rx_ctl + port.rx_pause);
    l2.rx_mcast_pkts = port.rx_mcast - intf.rx_error_mcast;
    l2.rx_bcast_pkts = port.rx_bcast - intf.rx_error_bcast;
    l2.rx_errors =
        low(port.rx_align + port.rx_fcs + port.rx_osize + port.rx_code + mac_errors + port.rx_usize);
    l2.rx_unknown_proto = intf.no_flow_id_defined;
    l2.rx_alignment = low(port.rx_align);
    l2.rx_fcs_errors = low(port.rx_fcs);
    l2.rx_too_long = low(port.rx_osize);
    l2.rx_mac_control = low(port.rx_ctl + port.rx_pause);
    l2.rx_invalid_symbol = low(port.rx_code);
    l2.rx_mac_errors = mac_errors;
    l2.rx_unknown_vlan = intf.rx_invalid_vlan;
    l2.rx_discards = intf.rx_unexpected_dest_mac + intf.bvi_src_mac;
    l2.tx_bytes = port.tx_octets;
    l2.tx_pkts = port.tx_frm - port.tx_bad_frm - port.tx_mcast - port.tx_bcast;
    l2.tx_mcast_pkts = port.tx_mcast;
    l2.tx_bcast_pkts = port.tx_bcast;
}

u32 poll_crc_errors(ovk_module *module, ovk_ethernet_if_handle if_handle, u64 threshold,
                    ovk_ethernet_crcerror_callback callback, u32 interval_ms)
{
    for (;;) {
        ovk_eth_port_stats stats = {};
        // A public call under the lock that is held already: the platform lets the holder in again.
        OVK_TRY(ovk_ethernet_port_statistics_get(module, if_handle, &stats, 0));
        const u64 sum = stats.tx_fcs + stats.rx_fcs;
        if (sum >= threshold) {
            callback(if_handle, reinterpret_cast<void *>(callback), sum);
            OVK_INFO(module, "CRC Error threshold exceeded for interface 0x%08x\n", word(if_handle));
            OVK_INFO(module, "Ending polling for CRC errors for interface 0x%08x\n", word(if_handle));
            return KOR_OK;
        }
        (void)kor_usleep(interval_ms * microseconds_per_millisecond);
    }
}

} // namespace

u32 ovk_ethernet_port_statistics_get(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                     ovk_eth_port_stats *stats, u32 clear_on_read)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Failed to get port stats for interface 0x%08x\n", word(if_handle)),
        [&]() -> outcome {
            OVK_TRY(check_handle_and_record(module, if_handle, stats));
            OVK_TRY(ovk::check_phy(module, if_handle));
            const u32 if_num = if_handle->phy.attrs.if_num;
            if (const u32 status = ovk_eth_port_stats_get(module, if_num, stats, clear_on_read))
                return OVK_FAIL(module, status, "Failed to get port stats from RTE\n");
            OVK_INFO(module, "Retrieved the port stats for interface 0x%08x\n", word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_l2_interface_statistics_get(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                             ovk_eth_l2_stats *stats)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to get L2 interface stats for interface 0x%08x\n", word(if_handle)),
        [&]() -> outcome {
            ovk_eth_if_stats intf_stats;
            ovk_eth_port_stats port_stats;

            OVK_TRY(check_handle_and_record(module, if_handle, stats));
            OVK_TRY(ovk::check_port_or_aggregate(module, if_handle));
            OVK_TRY(ovk_eth_if_stats_get(module, if_handle->stats_ns_id, &intf_stats));
            // An aggregate's id has a MAC channel of its own.
            OVK_TRY(ovk_eth_port_stats_get(module, if_handle->if_id, &port_stats, 0));
            derive(*stats, port_stats, intf_stats);
            OVK_INFO(module, "Retrieved the L2 interface stats for interface 0x%08x\n", word(if_handle));
            return KOR_OK;
        });
}

u32 ovk_ethernet_interface_statistics_get(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                          ovk_eth_if_stats *stats)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to get interface stats for interface 0x%08x\n", word(if_handle)),
        [&]() -> outcome {
            OVK_TRY(check_handle_and_record(module, if_handle, stats));
            if (if_handle->if_type < INTERFACE_TYPE_PHY || if_handle->if_type > INTERFACE_TYPE_AGGR)
                return OVK_FAIL(module, OVK_ETHERNET_E_INVALID_IF_TYPE, "Invalid Interface type %s\n",
                                ovk_eth_intf_type_name(if_handle->if_type));
            // Unlike its siblings it has no line for success.
            return ovk_eth_if_stats_get(module, if_handle->stats_ns_id, stats);
        });
}

u32 ovk_ethernet_global_statistics_get(ovk_module *module, ovk_eth_global_stats *stats)
{
    return ovk::public_call(
        OVK_CALLER, module, OVK_LINE("Failed to get global stats for Ethernet module\n"), [&]() -> outcome {
            OVK_TRY(check_record(module, stats));
            OVK_TRY(ovk_eth_global_stats_get(module, ovk::object_of(module).global_stats_ns_id, stats));
            OVK_INFO(module, "Retrieved the global stats for Ethernet module\n");
            return KOR_OK;
        });
}

u32 ovk_ethernet_report_crcerror(ovk_module *module, ovk_ethernet_if_handle if_handle, u64 threshold,
                                 ovk_ethernet_crcerror_callback callback, u32 interval_ms)
{
    return ovk::public_call(
        OVK_CALLER, module,
        OVK_LINE("Failed to poll for CRC errors for interface 0x%08x\n", word(if_handle)),
        [&]() -> outcome {
            if (callback == nullptr)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Null stats pointer parameter\n");
            if (interval_ms == 0)
                return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT,
                                "Polling frequency must be greater than 0\n");
            return poll_crc_errors(module, if_handle, threshold, callback, interval_ms);
        });
}
