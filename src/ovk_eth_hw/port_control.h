// SPDX-License-Identifier: Apache-2.0
//
// Settings of a port's MAC. `port` is a port number. Enables and rates are read first and written only when
// they change. Under the module lock.
//
// A writer that needs a MAC channel may also return the system module's status for a port without one.
#ifndef OVK_ETH_HW_PORT_CONTROL_H
#define OVK_ETH_HW_PORT_CONTROL_H

#include "ovk_ethernet_port.h"

// The platform's own status.
u32 ovk_eth_if_tx_enable(ovk_module *module, u32 port);
u32 ovk_eth_if_tx_disable(ovk_module *module, u32 port);
u32 ovk_eth_if_rx_enable(ovk_module *module, u32 port);
u32 ovk_eth_if_rx_disable(ovk_module *module, u32 port);

// KOR_E_SPEED_GET, KOR_E_SPEED_SET. The duplex stays with a change of rate, the rate with a change of
// duplex.
u32 ovk_eth_if_speed_set(ovk_module *module, u32 port, u32 rate);
u32 ovk_eth_if_full_duplex_set(ovk_module *module, u32 port);
u32 ovk_eth_if_full_duplex_reset(ovk_module *module, u32 port);

// These only say what they would do: the MAC has no setting that they reach.
u32 ovk_eth_if_autoneg_enable(ovk_module *module, u32 port);
u32 ovk_eth_if_autoneg_disable(ovk_module *module, u32 port);
u32 ovk_eth_if_autoneg_force(ovk_module *module, u32 port);
u32 ovk_eth_if_loopback(ovk_module *module, u32 port, u32 enable);

// Reports every port as configured, up, negotiated, at 1G in full duplex. `mask` is the MAC's.
u32 ovk_eth_port_status(ovk_module *module, u32 port, u32 blocking, u32 mask,
                        ovk_ethernet_port_status *status);

// KOR_E_FLOW_CONTROL.
u32 ovk_eth_if_flow_control_set(ovk_module *module, u32 port, u32 enable, u32 policy_bit, u32 time);

namespace ovk {

// As log lines say it.
inline const char *enabled_word(u32 on)
{
    return on != 0 ? "Enabled" : "Disabled";
}

// Writes the module's PCP map into the switch's three virtual pipelines, in order. The platform's own
// status.
u32 write_task_priorities(ovk_module *module, const u8 *map);

} // namespace ovk

#endif
