// SPDX-License-Identifier: Apache-2.0
// A module handle on a simulated chip.
#include "host.h"

extern "C" ovk_module *host_module()
{
    static sim::Host host;
    return host.module();
}
