/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_ethernet_log: what the module prints.
 *
 * A line is printed on standard output when its class passes in the module's `log_mask` or in the parent's
 * `global_log_mask`. The trace functions get every line whatever the masks say.
 *
 *   low nibble, a level     above 0 FATAL, above 2 ERROR, above 6 Warning, 15 info
 *   0x10                    function entry and exit
 *   0x20                    port adapter and switch settings ("hw")
 *   0x40                    classifier rules
 *   0x80                    state memory
 *   0x100                   subnet databases
 *
 * Higher bits are stored and mean nothing. All four calls run under the module's lock and return 0 unless
 * their own docstring or ovk_ethernet_api.h says more; a change is reported at info level, under the new
 * mask.
 */
#ifndef OVK_ETHERNET_LOG_H
#define OVK_ETHERNET_LOG_H

#include "ovk_ethernet_api.h"
#include "ovk_ethernet_status.h"

#ifdef __cplusplus
extern "C" {
#endif

enum ovk_ethernet_log_flag {
    OVK_ETHERNET_LOG_LEVEL = 0xF,
    OVK_ETHERNET_LOG_FUNCTION = 0x10,
    OVK_ETHERNET_LOG_HW = 0x20,
    OVK_ETHERNET_LOG_PTN = 0x40,
    OVK_ETHERNET_LOG_STATE = 0x80,
    OVK_ETHERNET_LOG_SUBNET = 0x100
};

/* Sets `log_mask` to `mask` as it stands. */
OVK_ETHERNET_API u32 ovk_ethernet_log_level_set(ovk_module *module, u32 mask);

/* Adds the bits of `mask`. */
OVK_ETHERNET_API u32 ovk_ethernet_log_enable(ovk_module *module, u32 mask);

/* Takes the bits of `mask` away. */
OVK_ETHERNET_API u32 ovk_ethernet_log_disable(ovk_module *module, u32 mask);

/*
 * The system's log level (0, 1, 3, 7 or 15) as the whole of `log_mask`: flag bits are cleared. Any other
 * level gives KOR_E_UNSUPPORTED (15) and leaves the mask.
 */
OVK_ETHERNET_API u32 ovk_ethernet_sys_log(ovk_module *module, u32 level);

#ifdef __cplusplus
}
#endif

#endif
