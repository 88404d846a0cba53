/* SPDX-License-Identifier: Apache-2.0 */
/*
 * libovk-ethernet: one service interface for layer 2 on the control plane of a network processor.
 *
 * Plain C, usable from C11 and C++20. Start with ovk_ethernet_module.h for the life of a module and
 * ovk_ethernet_api.h for what holds for every call.
 */
#ifndef OVK_ETHERNET_H
#define OVK_ETHERNET_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_enums.h"
#include "ovk_ethernet_exception.h"
#include "ovk_ethernet_flow.h"
#include "ovk_ethernet_interface.h"
#include "ovk_ethernet_log.h"
#include "ovk_ethernet_module.h"
#include "ovk_ethernet_port.h"
#include "ovk_ethernet_statistics.h"
#include "ovk_ethernet_status.h"
#include "ovk_ethernet_switching.h"
#include "ovk_ethernet_vlan.h"

#endif
