/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_gatr: the port adapter, one set of registers for each MAC channel.
 *
 * Records are in the hardware's format: explicit widths, host byte order. Bytes without a name of their own
 * belong to the hardware; whoever changes a record reads it first, unless the operation says otherwise. All
 * operations return 0 or a platform status.
 */
#ifndef KOR_GATR_H
#define KOR_GATR_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* MAC channels. The values 5 to 9 name the channels 8 to 12; all others have the digit of their name. */
enum kor_mac_channel {
    KOR_XGMAC0 = 0,
    KOR_GMAC1 = 1,
    KOR_GMAC2 = 2,
    KOR_GMAC3 = 3,
    KOR_GMAC4 = 4,
    KOR_XGMAC8 = 5,
    KOR_GMAC9 = 6,
    KOR_GMAC10 = 7,
    KOR_GMAC11 = 8,
    KOR_GMAC12 = 9,
    KOR_XGMAC16 = 16,
    KOR_GMAC17 = 17,
    KOR_GMAC18 = 18,
    KOR_GMAC19 = 19,
    KOR_GMAC20 = 20,
    KOR_GMAC32 = 32,
    KOR_GMAC33 = 33,
    KOR_GMAC48 = 48,
    KOR_GMAC49 = 49,
    KOR_GMAC64 = 64,
    KOR_GMAC65 = 65,
    KOR_GMAC80 = 80,
    KOR_GMAC81 = 81,
    KOR_GMAC96 = 96,
    KOR_GMAC97 = 97,
    KOR_GMAC112 = 112,
    KOR_GMAC113 = 113
};

/* Port adapter: the class of service, 0 to 7, for a DSCP code point (RFC 2474), 0 to 63, on all ports. */
u32 kor_gatr_common_dscp_cos_set(kor_rte rte, u32 dscp, u32 cos);

/* Receiver and transmitter, each 0 off or 1 on. */
u32 kor_gatr_port_enable_get(kor_rte rte, u32 channel, u32 *rx, u32 *tx);
u32 kor_gatr_port_enable_set(kor_rte rte, u32 channel, u32 rx, u32 tx);

/* Nominal rate (1 10M, 2 100M, 3 1G, 4 2.5G, 5 10G) and duplex (1 half, 2 full). */
u32 kor_mac_speed_duplex_get(kor_rte rte, u32 channel, u32 *speed, u32 *duplex);
u32 kor_mac_speed_duplex_set(kor_rte rte, u32 channel, u32 speed, u32 duplex);

/* PAUSE frames (IEEE 802.3 Annex 31B): `policy_bit` is one of 1, 2, 4, 8, 0x10; `time` in pause quanta. */
u32 kor_gatr_mac_flow_ctrl_set(kor_rte rte, u32 channel, u32 enable, u32 policy_bit, u32 time);

/* The MAC's own source address, 6 bytes in network order. */
u32 kor_gatr_mac_addr_set(kor_rte rte, u32 channel, const u8 *mac);

/* Unicast filter: on or off, and the three addresses that pass it. The set also turns it on or off. */
u32 kor_gatr_unicast_filter_enable(kor_rte rte, u32 channel, u32 enable);
u32 kor_gatr_unicast_filter_set(kor_rte rte, u32 channel, u32 enable, const u8 *mac1, const u8 *mac2,
                                const u8 *mac3);
u32 kor_gatr_broadcast_filter_set(kor_rte rte, u32 channel, u32 enable);

/* Q-in-Q parsing (IEEE 802.1ad), and what is done with frame check sequences. */
u32 kor_gatr_qinq_set(kor_rte rte, u32 channel, u32 enable);
u32 kor_gatr_crc_set(kor_rte rte, u32 channel, u32 append, u32 check, u32 strip);

/* The tag that the adapter puts before each frame: where it starts and stops, its most significant part. */
u32 kor_gatr_tag_config_get(kor_rte rte, u32 channel, u32 *stop, u32 *start, u32 *msb, u32 *flag);
u32 kor_gatr_tag_config_set(kor_rte rte, u32 channel, u32 stop, u32 start, u32 msb);
u32 kor_gatr_tag_enable_set(kor_rte rte, u32 channel, u32 enable);

/* Where a port's frames go: a virtual pipeline by name, for untagged (0) and tagged (1) traffic. 12 bytes.
 */
typedef struct kor_gatr_vp_params {
    u8 pcp_task_priority[8]; /* by priority code point (IEEE 802.1Q) */
    u8 default_task_priority;
    u8 reserved_9[3];
} kor_gatr_vp_params;
u32 kor_gatr_port_vp_set(kor_rte rte, u32 channel, u32 tagged, const char *vp_name,
                         const kor_gatr_vp_params *params);

/* A virtual pipeline of the switch, on all ports. 20 bytes. */
typedef struct kor_gatr_bridging_vp {
    u8 reserved_0[4];
    u8 pcp_task_priority[8];
    u8 reserved_12[8];
} kor_gatr_bridging_vp;
u32 kor_gatr_common_vps_bridging_vp_get(kor_rte rte, u32 id, kor_gatr_bridging_vp *out);
u32 kor_gatr_common_vps_bridging_vp_set(kor_rte rte, u32 id, const kor_gatr_bridging_vp *record);

/* How a port's frames enter the switch. 24 bytes. */
typedef struct kor_gatr_ingress_options {
    u8 hsw_mode;
    u8 byte_1; /* 1 in every record that is written */
    u8 reserved_2[2];
    u8 bridging;
    u8 reserved_5[15];
    u8 byte_20; /* 1 in every record that is written */
    u8 byte_21; /* likewise */
    u8 reserved_22[2];
} kor_gatr_ingress_options;
u32 kor_gatr_port_ingress_options_get(kor_rte rte, u32 channel, kor_gatr_ingress_options *out);
u32 kor_gatr_port_ingress_options_set(kor_rte rte, u32 channel, const kor_gatr_ingress_options *options);

/* How they are parsed. 16 bytes. */
typedef struct kor_gatr_parsing_options {
    u8 reserved_0[3];
    u8 byte_3; /* 1 on a port of the switch */
    u8 byte_4; /* likewise */
    u8 reserved_5[7];
    u8 untagged_discard; /* byte 12: 1 drops untagged frames */
    u8 reserved_13[3];
} kor_gatr_parsing_options;
u32 kor_gatr_port_ingress_parsing_options_get(kor_rte rte, u32 channel, kor_gatr_parsing_options *out);
u32 kor_gatr_port_ingress_parsing_options_set(kor_rte rte, u32 channel,
                                              const kor_gatr_parsing_options *options);

/* VLANs of the switch that the port's frames may enter. A set of one that is there gives 0x1081. */
u32 kor_gatr_port_ingress_vlan_set(kor_rte rte, u32 channel, u32 vlan, u32 flag);
u32 kor_gatr_port_ingress_vlan_rem(kor_rte rte, u32 channel, u32 vlan);

/* Customer VLAN id of a frame to VLAN of the switch. To remove one that has no VLAN succeeds. */
u32 kor_gatr_port_ingress_qinq_cvlan_map_set(kor_rte rte, u32 channel, u32 cvlan, u32 vlan);
u32 kor_gatr_port_ingress_qinq_cvlan_map_rem(kor_rte rte, u32 channel, u32 cvlan);

/* The VLAN of the switch that untagged frames take. */
u32 kor_gatr_port_default_vlan_set(kor_rte rte, u32 channel, u16 vlan);

/* The MAC's 64-bit counters, each with its 32-bit halves swapped. `clear` is 1 to zero them on reading. */
enum {
    KOR_GATR_TX_COUNTERS = 27,
    KOR_GATR_RX_COUNTERS = 28
};
u32 kor_gatr_mac_statistics_get(kor_rte rte, u32 channel, u64 *tx, u64 *rx, u32 clear);

/* The port's counter registers, and whether reading clears them. */
u32 kor_gatr_port_counter_reg_mode_set(kor_rte rte, u32 channel, u32 clear_on_read);
u32 kor_gatr_port_counter_reg_get(kor_rte rte, u32 channel, u32 *a, u32 *b, u32 *c);

#ifdef __cplusplus
}
#endif

#endif
