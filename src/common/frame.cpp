// SPDX-License-Identifier: Apache-2.0
#include "common/frame.h"

namespace ovk {

// The module's own mask plays no part: it isn't the module that is in trouble. That there is a parent with
// a system module is the host's side of giving a lock, so neither is tested before it is used.
u32 log_lock_failure(ovk_module *module, site where, u32 status, const char *text)
{
    const ovk_system *parent = module->parent;
    ovk_module *system = parent->sys_module;
    if (passes(load_relaxed(parent->global_log_mask), log_class::error) ||
        (system != nullptr && passes(load_relaxed(system->log_mask), log_class::error))) {
        print_head(system->module_name, log_class::error, where);
        print_line(text);
    }
    trace_message(system, log_class::error, where, text);
    return status;
}

} // namespace ovk
