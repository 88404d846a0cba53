/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_statistics: counters of ports, interfaces and the module.
 *
 * Port counters come from the MAC; interface and global counters are those that the classifier's functions
 * keep. Records are the caller's and are filled during the call; after a failed read they are partly
 * filled. Every get call gives KOR_E_INVALID_ARGUMENT (8) for a null record, after the handle's check and
 * before the kind's.
 */
#ifndef OVK_ETHERNET_STATISTICS_H
#define OVK_ETHERNET_STATISTICS_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_status.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Counters of a MAC: 27 of the transmitter, 28 of the receiver. */
typedef struct ovk_eth_port_stats {
    u64 tx_octets;
    u64 tx_bad_octets;
    u64 tx_frm;
    u64 tx_bad_frm;
    u64 tx_mcast;
    u64 tx_bcast;
    u64 tx_pause;
    u64 tx_fcs;
    u64 tx_defer;
    u64 tx_xsdfr;
    u64 tx_1col;
    u64 tx_mcol;
    u64 tx_lcol;
    u64 tx_xscol;
    u64 tx_frag;
    u64 tx_usize;
    u64 tx_64;
    u64 tx_65;
    u64 tx_128;
    u64 tx_256;
    u64 tx_512;
    u64 tx_1024;
    u64 tx_1519;
    u64 tx_osize;
    u64 tx_jab;
    u64 tx_urun;
    u64 tx_stat_ovfl;
    u64 rx_octets;
    u64 rx_bad_octets;
    u64 rx_frm;
    u64 rx_bad_frm;
    u64 rx_mcast;
    u64 rx_bcast;
    u64 rx_ctl;
    u64 rx_pause;
    u64 rx_unk_op;
    u64 rx_fcs;
    u64 rx_align;
    u64 rx_length;
    u64 rx_code;
    u64 rx_frag;
    u64 rx_usize;
    u64 rx_64;
    u64 rx_65;
    u64 rx_128;
    u64 rx_256;
    u64 rx_512;
    u64 rx_1024;
    u64 rx_1519;
    u64 rx_osize;
    u64 rx_jab;
    u64 rx_drop;
    u64 rx_carrier;
    u64 rx_urun;
    u64 rx_stat_ovfl;
} ovk_eth_port_stats;

/*
 * Counters of an interface, 232 bytes, where the classifier has them. The words without a meaning of their
 * own are the classifier's; those called raw are in network byte order.
 */
typedef struct ovk_eth_if_stats {
    u32 unnamed_0[7];
    u32 rx_no_fwd_setup;
    u32 tx_encap_packets;
    u32 unnamed_36;
    u32 tx_invalid_vlan;
    u32 rx_no_stag_mapping;
    u32 tx_no_configured_port;
    u32 tx_no_multicast_group;
    u32 rx_invalid_vlan;
    u32 rx_unsupported_802_3;
    u32 rx_unknown_association;
    u32 rx_assocation_rule_drop;
    u32 rx_unknown_dmac;
    u32 raw_76;
    u32 tx_mtu_failed;
    u32 tx_unresolved_arp;
    u32 tx_no_output_qos_policy;
    u32 raw_92;
    u32 tx_no_binding_available;
    u32 rx_invalid_num_tags;
    u32 no_flow_id_defined;
    u32 unnamed_108;
    u32 rx_tx_pdus_discarded;
    u32 raw_116;
    u32 tx_policing_red_color;
    u32 source_mac_timer_expiries;
    u32 link_aggr_timer_expiries;
    u32 stp_state_port_disabled;
    u32 stp_filtered;
    u32 invalid_source_mac;
    u32 unknown_virtual_intf;
    u32 hsw_mac_learn_msgs;
    u32 hsw_mac_age_out_msgs;
    u32 hsw_mac_evicted_msgs;
    u32 no_bvi_encap_smac;
    u32 no_bvi_encap_proto;
    u32 loop_back_failure;
    u32 rx_unexpected_dest_mac;
    u64 rx_error_ucast;
    u64 rx_error_mcast;
    u64 rx_error_bcast;
    u32 bad_length_pkts;
    u32 rx_802_3_pkts_not_supported;
    u64 ieee_802_3_dropped_bytes;
    u32 rx_802_3_pkts_exception;
    u32 bvi_src_mac;
    u32 no_mirror_port;
    u32 hsw_error_pkts;
} ovk_eth_if_stats;

/* Counters of the module. */
typedef struct ovk_eth_global_stats {
    u32 packets_on_unknown_interface;
    u32 invalid_encap_type;
    u32 static_mac_entry_unknown;
    u32 cpu_path_params_unknown;
    u32 hash_operation_failures;
    u32 stopping_expired_timers;
    u32 number_of_hash_entries_added;
    u32 number_of_packets_sent_to_ph;
    u32 number_of_packets_sent_to_bdl;
    u32 packets_on_unknown_port;
    u32 number_of_packets_recd_from_bdl;
    u32 unknown_dmac_for_encap_flow;
    u32 no_link_found_in_aggregate;
    u32 unknown_interface_namespace_id;
    u32 cpu_flow_pkts_bound_to_ipv4;
    u32 egress_time_index_allocation_failure;
    u32 tx_no_encap_flow_found;
    u32 tx_time_stamp_capture_not_configured;
    u32 port_mirroring_halted_due_to_bp;
    u32 time_stamp_allocation_requests;
    u32 time_stamp_free_requests;
    u32 time_stamp_successful_replies;
    u32 pakcet_capture_count;
} ovk_eth_global_stats;

/* Layer 2 counters of a port or aggregate: received frames less those that the classifier dropped. */
typedef struct ovk_eth_l2_stats {
    u64 rx_bytes;
    u64 rx_ucast;
    u64 rx_mcast_pkts;
    u64 rx_bcast_pkts;
    u32 rx_errors;
    u32 rx_unknown_proto;
    u32 rx_alignment;
    u32 rx_fcs_errors;
    u32 rx_too_long;
    u32 rx_mac_control;
    u32 rx_invalid_symbol;
    u32 rx_mac_errors;
    u32 rx_unknown_vlan;
    u32 rx_discards;
    u64 tx_bytes;
    u64 tx_pkts;
    u64 tx_mcast_pkts;
    u64 tx_bcast_pkts;
} ovk_eth_l2_stats;

/*
 * A physical interface's MAC counters. `clear_on_read` is 1 to zero them. Status: 0;
 * OVK_ETHERNET_E_INVALID_IF_HANDLE; OVK_ETHERNET_E_INCOMPAT_IF_TYPE; KOR_E_MAC_STATS (108); the system
 * module's own.
 */
OVK_ETHERNET_API u32 ovk_ethernet_port_statistics_get(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                      ovk_eth_port_stats *stats, u32 clear_on_read);

/*
 * Layer 2 counters of a physical or aggregated interface, derived from the two other records. Status: 0;
 * OVK_ETHERNET_E_INVALID_IF_HANDLE; OVK_ETHERNET_E_INCOMPAT_IF_TYPE; KOR_E_SE_READ (43); KOR_E_MAC_STATS
 * (108); the system module's own. Nothing is derived when either read fails.
 */
OVK_ETHERNET_API u32 ovk_ethernet_l2_interface_statistics_get(ovk_module *module,
                                                              ovk_ethernet_if_handle if_handle,
                                                              ovk_eth_l2_stats *stats);

/*
 * The classifier's counters of an interface of any kind. Status: 0; OVK_ETHERNET_E_INVALID_IF_HANDLE;
 * OVK_ETHERNET_E_INVALID_IF_TYPE; KOR_E_SE_READ (43).
 */
OVK_ETHERNET_API u32 ovk_ethernet_interface_statistics_get(ovk_module *module,
                                                           ovk_ethernet_if_handle if_handle,
                                                           ovk_eth_if_stats *stats);

/* The module's counters. Status: 0; KOR_E_SE_READ (43). */
OVK_ETHERNET_API u32 ovk_ethernet_global_statistics_get(ovk_module *module, ovk_eth_global_stats *stats);

/* Gets the CRC errors seen so far, and the address that it was registered by. */
typedef void (*ovk_ethernet_crcerror_callback)(ovk_ethernet_if_handle if_handle, void *callback, u64 sum);

/*
 * Polls a port's CRC errors of both directions every `interval_ms` milliseconds, 1 to 4294967 (more wraps
 * in the conversion to microseconds), until they reach `threshold`, calls `callback` once and returns. The
 * module's lock is held for all of that time, the callback included, and taken again for each poll.
 *
 * Status: 0; KOR_E_INVALID_ARGUMENT (8, null `callback` or an interval of 0); what
 * ovk_ethernet_port_statistics_get() returns when a poll fails.
 */
OVK_ETHERNET_API u32 ovk_ethernet_report_crcerror(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                  u64 threshold, ovk_ethernet_crcerror_callback callback,
                                                  u32 interval_ms);

/*
 * Print the records that the get calls give to standard output, counters of 0 left out but for a few. The
 * status is the get call's; after a failure no counters are printed.
 */
OVK_ETHERNET_API u32 ovk_ethernet_port_stats_print(ovk_module *module, ovk_ethernet_if_handle if_handle);
OVK_ETHERNET_API u32 ovk_ethernet_if_stats_print(ovk_module *module, ovk_ethernet_if_handle if_handle);
OVK_ETHERNET_API u32 ovk_ethernet_global_stats_print(ovk_module *module);
OVK_ETHERNET_API u32 ovk_ethernet_l2_interface_statistics_print(ovk_module *module,
                                                                ovk_ethernet_if_handle if_handle);

#ifdef __cplusplus
}
#endif

#endif
