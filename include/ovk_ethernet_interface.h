/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_interface: interfaces, what every service is configured on.
 *
 * Port numbers: a group in the high nibble and an index in the low. Groups 0 and 1 have indices 0 to 4,
 * groups 2 to 7 have 0 and 1: 22 ports. The aggregate ids 0x80 and 0x81 share the number space.
 *
 * Life of a physical interface:
 *
 *   1. ovk_ethernet_interface_create() takes the port into service. The handle is the record's address,
 *      good until the delete and owned by the library.
 *   2. Services are configured on it, by the calls of this and the other headers.
 *   3. ovk_ethernet_interface_delete(). What hangs on the interface isn't looked at: take it down before.
 *
 * A dead handle is told from a live one by a word in its record, so it may be tried for as long as its
 * memory isn't in use for something else.
 *
 * Statuses that mean the same in every call that takes an interface handle:
 *   OVK_ETHERNET_E_INVALID_IF_HANDLE   null or dead; also a port that is a member of an aggregate, where a
 *                                      call configures a port by itself
 *   OVK_ETHERNET_E_INCOMPAT_IF_TYPE    an interface of a kind that the call isn't for
 *   OVK_ETHERNET_E_INCOMPAT_FWD_MODE   the right kind, in a forwarding mode that the call isn't for
 */
#ifndef OVK_ETHERNET_INTERFACE_H
#define OVK_ETHERNET_INTERFACE_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_enums.h"
#include "ovk_ethernet_status.h"

#ifdef __cplusplus
extern "C" {
#endif

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

/* An aggregate (IEEE 802.1AX) as it is to be created. */
typedef struct ovk_ethernet_aggr_intf_attrs {
    u8 src_mac[6];  /* unicast MAC address of the aggregate, network order */
    u32 encap_type; /* OVK_ETHERNET_ENCAP_DIX or OVK_ETHERNET_ENCAP_LLC_SNAP */
    u32 fwd_mode;   /* ovk_ethernet_fwd_mode, 1 to 5 */
    u32 qos_mode;   /* 1 or 2 */
} ovk_ethernet_aggr_intf_attrs;

/* A switch virtual interface as it is to be created. */
typedef struct ovk_ethernet_svi_data {
    u32 flags;  /* bit 0: `bg_id` given (mandatory); bit 1: `c_vlan` given */
    u16 bg_id;  /* bridge group, 0 to 63 */
    u16 c_vlan; /* customer VLAN id, 0 to 4095 */
} ovk_ethernet_svi_data;

/*
 * Takes a port into service. `attrs` is copied. On success `*if_handle` is the interface's handle; on any
 * failure behind the null checks it is 0, but for OVK_E_LOCK_RELEASE, after which it is the handle if the
 * interface was made.
 *
 * Status: 0;
 *   KOR_E_INVALID_ARGUMENT (8)                `attrs` or `if_handle` is null; returns at once
 *   OVK_ETHERNET_E_INVALID_PORT_NUMBER, OVK_ETHERNET_E_INVALID_FWD_MODE,
 *   OVK_ETHERNET_E_INVALID_OUTPUT_RATE, OVK_ETHERNET_E_INVALID_ENCAP, OVK_ETHERNET_E_INVALID_MAC_ADDR,
 *   OVK_ETHERNET_E_INCOMPAT_PORT_TYPE         an attribute, in this order; the last is a 10G port that
 *                                             isn't full duplex or wants auto-negotiation
 *   OVK_ETHERNET_E_INTF_ALREADY_EXISTS        the port is in service
 *   KOR_E_NO_MEMORY (18)                      the record or the port's VLAN table
 *   the status of the step that failed: the system and interface modules' own, a rule's, those of
 *   kor_status.h for state memory, flow data and port settings, the run-time environment's own for receiver
 *   and transmitter
 *
 * A failure frees the record and nothing else. Rules and settings that were made stay until a later create
 * of the port overwrites them; the VLAN table and the interface id are lost.
 */
OVK_ETHERNET_API u32 ovk_ethernet_interface_create(ovk_module *module, const ovk_ethernet_intf_attrs *attrs,
                                                   ovk_ethernet_if_handle *if_handle);

/*
 * Takes a port out of service. Sub-interfaces, flows, VLANs and aggregates on it aren't looked at.
 *
 * Status: 0; OVK_ETHERNET_E_INVALID_IF_HANDLE; OVK_ETHERNET_E_INCOMPAT_IF_TYPE (not a physical interface);
 * OVK_ETHERNET_E_INCONSIST_IF_STATE (the port's owner is another record); the status of the step that
 * failed, as for create; that of receiver and transmitter is the sum of both.
 *
 * VLANs, egress rules and ageing that weren't taken down pass to the port's next owner.
 *
 * A failure behind the checks leaves the handle alive, the earlier steps done and the port's VLAN table
 * freed: neither this call nor one on its VLANs may be made on it again.
 */
OVK_ETHERNET_API u32 ovk_ethernet_interface_delete(ovk_module *module, ovk_ethernet_if_handle if_handle);

/*
 * With the low byte of `value` not 0 the host owns the ports' MAC settings: creating and deleting an
 * interface leaves rate, duplex, auto-negotiation, receiver, transmitter and counters alone, and the
 * attributes for them aren't checked. Returns 0.
 */
OVK_ETHERNET_API u32 ovk_ethernet_port_attributes_override(ovk_module *module, u32 value);

/*
 * The port number of a physical interface, in `*if_num`; 0 there when the handle is refused.
 * Status: 0; OVK_ETHERNET_E_INVALID_IF_HANDLE; KOR_E_INVALID_ARGUMENT (8, null `if_num`);
 * OVK_ETHERNET_E_INCOMPAT_IF_TYPE.
 */
OVK_ETHERNET_API u32 ovk_ethernet_port_number_get(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                  u32 *if_num);

/*
 * The interface of a port number or aggregate id, in `*if_handle`; null there otherwise.
 * Status: 0; KOR_E_INVALID_ARGUMENT (8, null `if_handle`); OVK_ETHERNET_E_INVALID_PORT_NUMBER;
 * OVK_ETHERNET_E_NON_EXISTENT_INTF.
 */
OVK_ETHERNET_API u32 ovk_ethernet_interface_handle_get(ovk_module *module, u32 port,
                                                       ovk_ethernet_if_handle *if_handle);

/*
 * The interface id, up to 20 bits, of an interface of any kind, in `*id`; 0 there when the handle is
 * refused. Status: 0; OVK_ETHERNET_E_INVALID_IF_HANDLE; KOR_E_INVALID_ARGUMENT (8, null `id`).
 */
OVK_ETHERNET_API u32 ovk_ethernet_interface_id_get(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                   u32 *id);

/*
 * Lets a routed port or aggregate receive unicast frames for any address (`mode` not 0) or only for its own
 * (0). Status: 0; OVK_ETHERNET_E_INVALID_IF_HANDLE; OVK_ETHERNET_E_INCOMPAT_FWD_MODE (not HIGHER_LAYER);
 * OVK_ETHERNET_E_INCOMPAT_IF_TYPE; KOR_E_UNICAST_FILTER (103); the system module's own. On an aggregate
 * members that were set before a failure stay so.
 */
OVK_ETHERNET_API u32 ovk_ethernet_promiscuous_mode(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                   u32 mode);

/*
 * Turns flow look-up on (exactly 1) or off on the two sides of a switched port or aggregate.
 * Status: 0; OVK_ETHERNET_E_INVALID_IF_HANDLE; OVK_ETHERNET_E_INCOMPAT_FWD_MODE (not a switched mode);
 * OVK_ETHERNET_E_INCOMPAT_IF_TYPE; a rule's. On an aggregate members that were written before a failure
 * stay so.
 */
OVK_ETHERNET_API u32 ovk_ethernet_flow_filter(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                              u32 in_filter, u32 out_filter);

/*
 * A second unicast address, 6 bytes in network order, that a routed port accepts beside its own. There is
 * one such address: adding replaces, deleting goes back to the port's own. Status: 0;
 * OVK_ETHERNET_E_INVALID_IF_HANDLE; OVK_ETHERNET_E_INCOMPAT_FWD_MODE (not HIGHER_LAYER);
 * OVK_ETHERNET_E_INCOMPAT_IF_TYPE (not a physical interface); KOR_E_INVALID_ARGUMENT (8, null `mac`);
 * OVK_ETHERNET_E_INVALID_MAC_ADDR (a group address); KOR_E_UNICAST_FILTER_MACS (105); the system module's
 * own.
 */
OVK_ETHERNET_API u32 ovk_ethernet_recv_mac_add(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                               const u8 *mac);
OVK_ETHERNET_API u32 ovk_ethernet_recv_mac_del(ovk_module *module, ovk_ethernet_if_handle if_handle);

#ifdef __cplusplus
}
#endif

#endif
