/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_port: control of a port's MAC.
 *
 * All calls but the last take a physical interface and check, in this order, what their own docstring says
 * to come first, the handle (OVK_ETHERNET_E_INVALID_IF_HANDLE), the kind (OVK_ETHERNET_E_INCOMPAT_IF_TYPE),
 * and then the rest. Any may return the system module's status for a port without a MAC channel.
 *
 * The port numbers 0 and 8, of which only 0 is in use, are taken for 10-gigabit ports: their rate, duplex
 * and auto-negotiation are fixed, and the calls for them give OVK_ETHERNET_E_INCOMPAT_PORT_TYPE.
 */
#ifndef OVK_ETHERNET_PORT_H
#define OVK_ETHERNET_PORT_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_enums.h"
#include "ovk_ethernet_status.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Sets the rate (ovk_ethernet_speed). OVK_ETHERNET_E_INVALID_OUTPUT_RATE; KOR_E_SPEED_GET (106),
 * KOR_E_SPEED_SET (107).
 */
OVK_ETHERNET_API u32 ovk_ethernet_output_rate_set(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                  u32 rate);

/* Turn the transmitter and the receiver on (not 0) or off. The platform's own status. */
OVK_ETHERNET_API u32 ovk_ethernet_interface_tx(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                               u32 enable);
OVK_ETHERNET_API u32 ovk_ethernet_interface_rx(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                               u32 enable);

/*
 * Sets half or full duplex (ovk_ethernet_duplex, 1 or 2). OVK_ETHERNET_E_INVALID_DUPLEX_MODE;
 * KOR_E_SPEED_GET (106), KOR_E_SPEED_SET (107).
 */
OVK_ETHERNET_API u32 ovk_ethernet_interface_duplex(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                   u32 mode);

/* Auto-negotiation (IEEE 802.3 Clause 28) on or off, and anew. Logged; no setting of the MAC changes. */
OVK_ETHERNET_API u32 ovk_ethernet_interface_autoneg(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                    u32 enable);
OVK_ETHERNET_API u32 ovk_ethernet_autoneg_force(ovk_module *module, ovk_ethernet_if_handle if_handle);

/*
 * The interface's MAC channel in `*channel`. KOR_E_INVALID_ARGUMENT (8) for null, before the handle's
 * checks.
 */
OVK_ETHERNET_API u32 ovk_ethernet_mac_channel_get(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                  u32 *channel);

/* A port's state. Every port is reported configured, up, negotiated, at 1G in full duplex. */
typedef struct ovk_ethernet_port_status {
    u8 port_configured;
    u8 port_up;
    u8 remote_fault;
    u8 autoneg_complete;
    u32 duplex; /* ovk_ethernet_duplex */
    u32 speed;  /* ovk_ethernet_speed */
} ovk_ethernet_port_status;

/*
 * Fills `*status`. `mask` must have one of its low six bits; `blocking` is 1 for a blocking query; both
 * answer at once. KOR_E_INVALID_ARGUMENT (8) for null `status` and for the mask.
 */
OVK_ETHERNET_API u32 ovk_ethernet_port_status_get(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                  u32 blocking, u32 mask, ovk_ethernet_port_status *status);

/*
 * What the port does about PAUSE frames: `policy` (ovk_ethernet_flow_control_policy, 1 to 5), `time` in
 * pause quanta, not 0; `enable` is handed to the MAC as it stands. KOR_E_INVALID_ARGUMENT (8);
 * KOR_E_FLOW_CONTROL (110).
 */
OVK_ETHERNET_API u32 ovk_ethernet_flow_control(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                               u32 enable, u32 policy, u32 time);

/* Loopback on (not 0) or off. It is logged; no setting of the MAC changes. */
OVK_ETHERNET_API u32 ovk_ethernet_port_loopback(ovk_module *module, ovk_ethernet_if_handle if_handle,
                                                u32 enable);

/*
 * Sets the task priority, 1 to 255, for each of the eight priority code points (IEEE 802.1Q), in the module
 * and in the switch's three virtual pipelines. Status: 0; KOR_E_INVALID_ARGUMENT (8) for null or a 0 in
 * `map`, with nothing changed; the platform's own, with the module's map and the pipelines before it
 * changed.
 */
OVK_ETHERNET_API u32 ovk_ethernet_pcp_to_task_pri_map(ovk_module *module, const u8 *map);

#ifdef __cplusplus
}
#endif

#endif
