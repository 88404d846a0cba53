// SPDX-License-Identifier: Apache-2.0
//
// What the switch front end and the port adapter are set to before any port is in service.
#ifndef OVK_ETH_HW_SWITCH_DEFAULTS_H
#define OVK_ETH_HW_SWITCH_DEFAULTS_H

#include "common/frame.h"

namespace ovk {

// No age hysteresis, and class of service n for code point n and back, n from 0 to 7. The status is the
// failed operation's own.
u32 set_switch_defaults(ovk_module *module);

} // namespace ovk

#endif
