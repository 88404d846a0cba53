/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_interface: the records that describe interfaces.
 *
 * Port numbers: a group in the high nibble and an index in the low. Groups 0 and 1 have indices 0 to 4,
 * groups 2 to 7 have 0 and 1: 22 ports.
 */
#ifndef OVK_ETHERNET_INTERFACE_H
#define OVK_ETHERNET_INTERFACE_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_enums.h"

/* A physical interface as it is to be created. */
typedef struct ovk_ethernet_intf_attrs {
    u32 if_num;      /* port number */
    u32 fwd_mode;    /* ovk_ethernet_fwd_mode, 1 to 5 */
    u32 output_rate; /* ovk_ethernet_speed */
    u8 tx_enable;    /* non-zero: transmitter on */
    u8 rx_enable;    /* non-zero: receiver on */
    u8 full_duplex;  /* non-zero: full duplex; 1 on a 10G port */
    u8 autoneg;      /* non-zero: auto-negotiation on (IEEE 802.3 Clause 28); not 1 on a 10G port */
    u8 src_mac[6];   /* unicast MAC address of the port, network order */
    u32 encap_type;  /* OVK_ETHERNET_ENCAP_DIX or OVK_ETHERNET_ENCAP_LLC_SNAP */
} ovk_ethernet_intf_attrs;

/* A switch virtual interface as it is to be created. */
typedef struct ovk_ethernet_svi_data {
    u32 flags;  /* bit 0: `bg_id` given (mandatory); bit 1: `c_vlan` given */
    u16 bg_id;  /* bridge group, 0 to 63 */
    u16 c_vlan; /* customer VLAN id, 0 to 4095 */
} ovk_ethernet_svi_data;

#endif
