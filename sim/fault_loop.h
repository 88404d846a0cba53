// SPDX-License-Identifier: Apache-2.0
/*
 * for_each_fault: runs a scenario with its first, then its second, … platform call failing, until a run in
 * which no fault fired.
 *
 *     struct Create {
 *         sim::Host host;
 *         Create() { ... }                          // set-up, without faults
 *         void run() { status = ... }               // the calls under test
 *         void check(const sim::Fault *fault) {}    // null in the last run, in which nothing failed
 *     };
 *     const u32 faults = sim::for_each_fault([] { return Create(); });
 *
 * Each run starts from reset(). By check() no fault is armed any more. Returns the number of faults
 * injected.
 */
#ifndef OVK_SIM_FAULT_LOOP_H
#define OVK_SIM_FAULT_LOOP_H

#include "core.h"

#include <stdexcept>

namespace sim {

struct Fault {
    u32 number; /* the how manieth call of those that the sweep counts, from 1 */
    std::string operation;
    u32 status;
};

template <class Make>
u32 for_each_fault(Make make, const faults::Sweep &sweep = {})
{
    for (u32 number = 1;; ++number) {
        reset();
        auto scenario = make();
        if (!faults::fail_any(number, sweep))
            throw std::invalid_argument("the sweep names an operation that can't fail");
        scenario.run();
        const std::vector<std::string> fired = faults::fired();
        faults::clear();
        if (fired.empty()) {
            scenario.check(nullptr);
            return number - 1;
        }
        const Fault fault{number, fired.front(), sweep.status};
        scenario.check(&fault);
    }
}

} // namespace sim

#endif
