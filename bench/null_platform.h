// SPDX-License-Identifier: Apache-2.0
//
// The platform that does nothing: every operation of platform/ returns at once, so that what a call takes
// on it is the library's own time. Queries give plausible values, the heap is a real one, a pattern keeps
// its length.
//
// Built twice. Compiled with OVK_RECORD_CALLS it also writes down each call with its arguments, and the
// operation alone, by which calls are counted; without, no operation has a branch for that.
#ifndef OVK_BENCH_NULL_PLATFORM_H
#define OVK_BENCH_NULL_PLATFORM_H

#include "ovk_module.h"

#include <string>
#include <vector>

namespace null_platform {

// One platform call. Of addresses only those stand in the text that must be the same in another run of the
// same call; of a trace call the formatted message, without its position.
struct Call {
    std::string operation;
    std::string arguments;
    bool operator==(const Call &) const = default;
};

// Those made since the last look, in order. Always empty in the build that doesn't record.
std::vector<Call> take_calls();

// A module handle as a host fills it in, with all log masks 0.
class Host {
  public:
    Host();
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    ovk_module *module() { return &module_; }

  private:
    kor_sem lock_{};
    ovk_module sys_{};
    ovk_system parent_{};
    ovk_module module_{};
};

} // namespace null_platform

#endif
