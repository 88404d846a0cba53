// SPDX-License-Identifier: Apache-2.0
//
// Counters as text: each record is described as a table, and one printer serves all.
#include "common/frame.h"
#include "ovk_ethernet_statistics.h"

#include <cstddef>
#include <cstring>
#include <span>

namespace {

struct counter_row {
    const char *name; // as printed, the colon included where it has one
    size_t offset;    // in the record
    u32 size;         // 4 or 8 bytes
    bool always;      // shown also when it is 0
};

#define COUNTER(record, field, name, always)                                                               \
    {                                                                                                      \
        name, offsetof(record, field), sizeof(record::field), always                                       \
    }

// Ports: one column of names, without a colon but for the first line.
#define PORT_COUNTER(field) COUNTER(ovk_eth_port_stats, field, #field, false)
constexpr counter_row port_counters[] = {
    COUNTER(ovk_eth_port_stats, tx_octets, "tx_octets:", false),
    PORT_COUNTER(tx_bad_octets),
    COUNTER(ovk_eth_port_stats, tx_frm, "tx_frm", true),
    PORT_COUNTER(tx_bad_frm),
    PORT_COUNTER(tx_mcast),
    PORT_COUNTER(tx_bcast),
    PORT_COUNTER(tx_pause),
    PORT_COUNTER(tx_fcs),
    PORT_COUNTER(tx_defer),
    PORT_COUNTER(tx_xsdfr),
    PORT_COUNTER(tx_1col),
    PORT_COUNTER(tx_mcol),
    PORT_COUNTER(tx_lcol),
    PORT_COUNTER(tx_xscol),
    PORT_COUNTER(tx_frag),
    PORT_COUNTER(tx_usize),
    PORT_COUNTER(tx_64),
    PORT_COUNTER(tx_65),
    PORT_COUNTER(tx_128),
    PORT_COUNTER(tx_256),
    PORT_COUNTER(tx_512),
    PORT_COUNTER(tx_1024),
    PORT_COUNTER(tx_1519),
    PORT_COUNTER(tx_osize),
    PORT_COUNTER(tx_jab),
    PORT_COUNTER(tx_urun),
    PORT_COUNTER(tx_stat_ovfl),
    PORT_COUNTER(rx_octets),
    PORT_COUNTER(rx_bad_octets),
    COUNTER(ovk_eth_port_stats, rx_frm, "rx_frm", true),
    PORT_COUNTER(rx_bad_frm),
    PORT_COUNTER(rx_mcast),
    PORT_COUNTER(rx_bcast),
    PORT_COUNTER(rx_ctl),
    PORT_COUNTER(rx_pause),
    PORT_COUNTER(rx_unk_op),
    PORT_COUNTER(rx_fcs),
    PORT_COUNTER(rx_align),
    PORT_COUNTER(rx_length),
    PORT_COUNTER(rx_code),
    PORT_COUNTER(rx_frag),
    PORT_COUNTER(rx_usize),
    PORT_COUNTER(rx_64),
    PORT_COUNTER(rx_65),
    PORT_COUNTER(rx_128),
    PORT_COUNTER(rx_256),
    PORT_COUNTER(rx_512),
    PORT_COUNTER(rx_1024),
    PORT_COUNTER(rx_1519),
    PORT_COUNTER(rx_osize),
    PORT_COUNTER(rx_jab),
    PORT_COUNTER(rx_drop),
    PORT_COUNTER(rx_carrier),
    PORT_COUNTER(rx_urun),
    PORT_COUNTER(rx_stat_ovfl),
};

// The words that the classifier keeps for itself have no name and aren't shown.
#define IF_COUNTER(field, name) COUNTER(ovk_eth_if_stats, field, name ":", false)
constexpr counter_row if_counters[] = {
    IF_COUNTER(rx_no_fwd_setup, "Rx No Fwd Setup"),
    COUNTER(ovk_eth_if_stats, tx_encap_packets, "Tx Encap Packets:", true),
    IF_COUNTER(tx_invalid_vlan, "Tx Invalid VLAN"),
    IF_COUNTER(rx_no_stag_mapping, "Rx No Stag Mapping"),
    IF_COUNTER(tx_no_configured_port, "Tx No Configured Port"),
    IF_COUNTER(tx_no_multicast_group, "Tx No Multicast Group"),
    IF_COUNTER(rx_invalid_vlan, "Rx Invalid VLAN"),
    IF_COUNTER(rx_unsupported_802_3, "Rx Unsupported 802.3"),
    IF_COUNTER(rx_unknown_association, "Rx Unknown Association"),
    IF_COUNTER(rx_assocation_rule_drop, "Rx Assocation Rule Drop"),
    IF_COUNTER(rx_unknown_dmac, "Rx Unknown DMAC"),
    IF_COUNTER(tx_mtu_failed, "Tx MTU Failed"),
    IF_COUNTER(tx_unresolved_arp, "Tx Unresolved ARP"),
    IF_COUNTER(tx_no_output_qos_policy, "Tx No Output QoS Policy"),
    IF_COUNTER(tx_no_binding_available, "Tx No Binding Available"),
    IF_COUNTER(rx_invalid_num_tags, "Rx Invalid Num tags"),
    IF_COUNTER(no_flow_id_defined, "No Flow ID defined"),
    IF_COUNTER(rx_tx_pdus_discarded, "Rx/Tx PDUs Discarded"),
    IF_COUNTER(tx_policing_red_color, "Tx Policing Red Color"),
    IF_COUNTER(source_mac_timer_expiries, "Source MAC Timer Expiries"),
    IF_COUNTER(link_aggr_timer_expiries, "Link Aggr Timer Expiries"),
    IF_COUNTER(stp_state_port_disabled, "STP State Port Disabled"),
    IF_COUNTER(stp_filtered, "STP Filtered (non-fwding)"),
    IF_COUNTER(invalid_source_mac, "Invalid Source MAC"),
    IF_COUNTER(unknown_virtual_intf, "Unknown Virtual Intf"),
    IF_COUNTER(hsw_mac_learn_msgs, "HSW MAC Learn Msgs"),
    IF_COUNTER(hsw_mac_age_out_msgs, "HSW MAC Age Out Msgs"),
    IF_COUNTER(hsw_mac_evicted_msgs, "HSW MAC Evicted Msgs"),
    IF_COUNTER(no_bvi_encap_smac, "No BVI Encap SMAC"),
    IF_COUNTER(no_bvi_encap_proto, "No BVI Encap Proto"),
    IF_COUNTER(loop_back_failure, "Loop Back Failure"),
    IF_COUNTER(rx_unexpected_dest_mac, "Rx Unexpected Dest MAC"),
    IF_COUNTER(rx_error_ucast, "Rx Error UCAST"),
    IF_COUNTER(rx_error_mcast, "Rx Error MCAST"),
    IF_COUNTER(rx_error_bcast, "Rx Error BCAST"),
    IF_COUNTER(bad_length_pkts, "Bad Length Pkts"),
    IF_COUNTER(rx_802_3_pkts_not_supported, "Rx 802.3 Pkts Not Supported"),
    IF_COUNTER(ieee_802_3_dropped_bytes, "IEEE 802.3 Dropped bytes"),
    IF_COUNTER(rx_802_3_pkts_exception, "Rx 802.3 Pkts Exception"),
    IF_COUNTER(bvi_src_mac, "BVI SRC MAC"),
    IF_COUNTER(no_mirror_port, "No Mirror Port"),
    IF_COUNTER(hsw_error_pkts, "HSW Error Pkts"),
};

#define GLOBAL_COUNTER(field, name, always) COUNTER(ovk_eth_global_stats, field, name ":", always)
constexpr counter_row global_counters[] = {
    GLOBAL_COUNTER(packets_on_unknown_interface, "Packets On Unknown Interface", false),
    GLOBAL_COUNTER(invalid_encap_type, "Invalid Encap Type", false),
    GLOBAL_COUNTER(static_mac_entry_unknown, "Static MAC Entry Unknown", false),
    GLOBAL_COUNTER(cpu_path_params_unknown, "CPU Path Params Unknown", false),
    GLOBAL_COUNTER(hash_operation_failures, "hash Operation Failures", false),
    GLOBAL_COUNTER(stopping_expired_timers, "Stopping Expired Timers", false),
    GLOBAL_COUNTER(number_of_hash_entries_added, "Number of Hash Entries Added", false),
    GLOBAL_COUNTER(number_of_packets_sent_to_ph, "Number of Packets sent to PH", true),
    GLOBAL_COUNTER(number_of_packets_sent_to_bdl, "Number of Packets sent to BDL", true),
    GLOBAL_COUNTER(packets_on_unknown_port, "Packets On Unknown Port", false),
    GLOBAL_COUNTER(number_of_packets_recd_from_bdl, "Number of Packets recd from BDL", true),
    GLOBAL_COUNTER(unknown_dmac_for_encap_flow, "Unknown DMAC for encap flow", false),
    GLOBAL_COUNTER(no_link_found_in_aggregate, "No link found in aggregate", false),
    GLOBAL_COUNTER(unknown_interface_namespace_id, "Unknown Interface Namespace ID", false),
    GLOBAL_COUNTER(cpu_flow_pkts_bound_to_ipv4, "CPU Flow Pkts bound to IPv4", true),
    GLOBAL_COUNTER(egress_time_index_allocation_failure, "Egress time index allocation failure", false),
    GLOBAL_COUNTER(tx_no_encap_flow_found, "Tx No Encap Flow found", false),
    GLOBAL_COUNTER(tx_time_stamp_capture_not_configured, "Tx time stamp capture not configured", false),
    GLOBAL_COUNTER(port_mirroring_halted_due_to_bp, "Port Mirroring halted due to BP", false),
    GLOBAL_COUNTER(time_stamp_allocation_requests, "Time Stamp allocation requests", false),
    GLOBAL_COUNTER(time_stamp_free_requests, "Time Stamp free requests", false),
    GLOBAL_COUNTER(time_stamp_successful_replies, "Time Stamp successful replies", false),
    GLOBAL_COUNTER(pakcet_capture_count, "Pakcet capture count", false),
};

// Traffic is always shown, drops and errors when there are any.
#define L2_TRAFFIC(field) COUNTER(ovk_eth_l2_stats, field, #field ":", true)
#define L2_DROP(field) COUNTER(ovk_eth_l2_stats, field, #field ":", false)
constexpr counter_row l2_counters[] = {
    L2_TRAFFIC(rx_bytes),      L2_TRAFFIC(rx_ucast),       L2_TRAFFIC(rx_mcast_pkts),
    L2_TRAFFIC(rx_bcast_pkts), L2_DROP(rx_errors),         L2_DROP(rx_unknown_proto),
    L2_DROP(rx_alignment),     L2_DROP(rx_fcs_errors),     L2_DROP(rx_too_long),
    L2_DROP(rx_mac_control),   L2_DROP(rx_invalid_symbol), L2_DROP(rx_mac_errors),
    L2_DROP(rx_unknown_vlan),  L2_DROP(rx_discards),       L2_TRAFFIC(tx_bytes),
    L2_TRAFFIC(tx_pkts),       L2_TRAFFIC(tx_mcast_pkts),  L2_TRAFFIC(tx_bcast_pkts),
};

u64 value_of(const u8 *record, const counter_row &row)
{
    if (row.size == sizeof(u64)) {
        u64 wide = 0;
        std::memcpy(&wide, record + row.offset, sizeof wide);
        return wide;
    }
    u32 narrow = 0;
    std::memcpy(&narrow, record + row.offset, sizeof narrow);
    return narrow;
}

// `name_width` is that of the names' column, `value_width` that of the values'.
void print_counters(const char *title, std::span<const counter_row> rows, const void *record,
                    int name_width, int value_width)
{
    std::fputs(title, stdout);
    for (const counter_row &row : rows) {
        const u64 value = value_of(static_cast<const u8 *>(record), row);
        if (value != 0 || row.always)
            std::printf("\t%-*s\t%*llu\n", name_width, row.name, value_width,
                        static_cast<unsigned long long>(value));
    }
}

constexpr int port_name_width = 22;
constexpr int port_value_width = 20;
constexpr int name_width = 27;
constexpr int value_width = 10;

} // namespace

u32 ovk_ethernet_port_stats_print(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    ovk_eth_port_stats stats = {};
    OVK_TRY(ovk_ethernet_port_statistics_get(module, if_handle, &stats, 0));
    print_counters(
        "\nEthernet Port Stats (Counters with non-zero count only except for tx_frm and rx_frm):\n",
        port_counters, &stats, port_name_width, port_value_width);
    return KOR_OK;
}

u32 ovk_ethernet_if_stats_print(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    ovk_eth_if_stats stats = {};
    OVK_TRY(ovk_ethernet_interface_statistics_get(module, if_handle, &stats));
    print_counters("\nEthernet Interface Stats (Drop counters with zero count not shown):\n", if_counters,
                   &stats, name_width, value_width);
    return KOR_OK;
}

u32 ovk_ethernet_global_stats_print(ovk_module *module)
{
    ovk_eth_global_stats stats = {};
    OVK_TRY(ovk_ethernet_global_statistics_get(module, &stats));
    print_counters("\nEthernet Globbal Stats (Drop counters with zero count not shown):\n", global_counters,
                   &stats, name_width, value_width);
    return KOR_OK;
}

u32 ovk_ethernet_l2_interface_statistics_print(ovk_module *module, ovk_ethernet_if_handle if_handle)
{
    ovk_eth_l2_stats stats = {};
    OVK_TRY(ovk_ethernet_l2_interface_statistics_get(module, if_handle, &stats));
    print_counters("\nEthernet L2 Interface Stats: (Drop counters with zero count not shown):\n",
                   l2_counters, &stats, name_width, value_width);
    return KOR_OK;
}
