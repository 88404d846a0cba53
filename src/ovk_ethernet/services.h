// SPDX-License-Identifier: Apache-2.0
//
// The service record that the module hands to the host: its entry points by slot.
#ifndef OVK_ETHERNET_SERVICES_H
#define OVK_ETHERNET_SERVICES_H

#include "ovk_module.h"

namespace ovk {

// The addresses, in this load of the code. The two function ids are left 0; initialisation adds them.
ovk_service_record service_addresses();

} // namespace ovk

#endif
