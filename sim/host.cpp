// SPDX-License-Identifier: Apache-2.0
#include "host.h"

#include "world.h"

namespace sim {

Host::Host(u32 log_level, const char *module_name)
{
    sys_.guard = OVK_MODULE_GUARD;
    sys_.module_name = "ovk_sys";
    sys_.trace_ctx = sys_trace_ctx;
    sys_.parent = &parent_;
    parent_.sys_module = &sys_;
    module_.guard = OVK_MODULE_GUARD;
    module_.log_mask = log_level;
    module_.module_name = module_name;
    module_.trace_ctx = module_trace_ctx;
    module_.module_lock = &lock_;
    module_.parent = &parent_;
    sys_.rte_handle = module_.rte_handle = chip_add();
    const Guard guard;
    lock_init(lock_);
    epoch_ = world().epoch;
}

Host::~Host()
{
    bool alive = false;
    {
        const Guard guard;
        alive = epoch_ == world().epoch; // a reset took the chip, and its handle may be another's now
    }
    if (alive)
        chip_remove(rte());
}

} // namespace sim
