/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_flow: the records that describe flows.
 *
 * In each record `flags` says which of the match fields count. MAC addresses are in network order; their
 * lengths are prefix lengths in bits, 0 to 48. LLC headers (IEEE 802.2) are three bytes, DSAP first.
 */
#ifndef OVK_ETHERNET_FLOW_H
#define OVK_ETHERNET_FLOW_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_enums.h"
#include "ovk_qos.h"

/* A simple ingress or egress flow. */
typedef struct ovk_ethernet_ingress_flow_data {
    u32 flags; /* bit 0: interface (mandatory); 1: ether type; 2: LLC header; 3: destination MAC */
    ovk_ethernet_if_handle if_handle;
    u16 ether_type; /* at least 1536 */
    u8 llc[3];
    u8 dmac[6];
    u8 dmac_len;
} ovk_ethernet_ingress_flow_data;

typedef ovk_ethernet_ingress_flow_data ovk_ethernet_egress_flow_data;

/* A flow that the host CPU originates. */
typedef struct ovk_ethernet_cpu_flow_data {
    u32 flags; /* bit 0: ether type; 1: LLC header; 2: interface; 3: VLAN */
    u16 ether_type;
    u8 llc[3];
    ovk_ethernet_if_handle if_handle;
    u16 vlan_id; /* below 4096 */
} ovk_ethernet_cpu_flow_data;

/* What a flow's rule does, by `type`, an ovk_ethernet_association_rule_type. Priorities are 0 to 7. */
typedef struct ovk_ethernet_flow_action {
    u32 type;
    ovk_ethernet_if_handle out_if_handle; /* SEND_TO_PORT */
    u8 priority;                          /* SEND_TO_CPU, SEND_TO_BDL */
    u8 spare;
    u16 bdl_value;       /* SEND_TO_BDL */
    u32 cpu_param : 24;  /* SEND_TO_CPU: carried to the CPU path */
    u32 cpu_word_lo : 8; /* SEND_TO_CPU: low byte of the queue number */
    union {
        u8 cpu_word_hi;                    /* SEND_TO_CPU: high byte of the queue number */
        ovk_queue_handle bdl_queue_handle; /* SEND_TO_BDL */
    };
    ovk_queue_handle cpu_queue_handle; /* SEND_TO_CPU; 0: none */
} ovk_ethernet_flow_action;

/* An association flow, one rule of a port's ordered set. */
typedef struct ovk_ethernet_ingress_extended_flow_data {
    u32 flags; /* bit 0: ether type; 1: destination MAC; 2: source MAC; 3: VLAN; 4: PCP; 5: LLC header */
    u16 ether_type;
    u8 llc[3];
    u8 dmac[6];
    u8 dmac_len;
    u8 smac[6];
    u8 smac_len;
    u16 vlan_id; /* below 4096 */
    u8 pcp;      /* below 8 (IEEE 802.1Q priority code point) */
} ovk_ethernet_ingress_extended_flow_data;

/* A policing flow. */
typedef struct ovk_ethernet_policing_flow_data {
    u32 level; /* ovk_ethernet_policing_level */
    u8 direction;
    ovk_ethernet_if_handle if_handle;
    u16 vlan_id; /* below 4096 */
    u8 priority; /* below 8 */
    u8 mac[6];   /* unicast */
} ovk_ethernet_policing_flow_data;

#endif
