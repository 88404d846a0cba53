// SPDX-License-Identifier: Apache-2.0
//
// The one frame of all calls.
//
//     u32 ovk_ethernet_x(ovk_module *module, u32 y)
//     {
//         return ovk::public_call(
//             OVK_CALLER, module, OVK_LINE("Failed to x %d\n", y), [&]() -> ovk::outcome {
//                 if (y > 7)
//                     return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Invalid y %d\n", y);
//                 return write_y(module, y);
//             });
//     }
//
// public_call() does, in order: the handle test, the entry log, the lock, the body, the operation's failure
// pair, the release, the exit log. What differs from call to call is said where it differs:
//
//   - a call whose line for a bad module handle isn't its failure line hands over both;
//   - an exit that the failure pair is left out on returns ovk::without_closing(status);
//   - initialisation, which wants a handle that is not valid yet, enters behind the handle test, by
//   framed_call().
//
// A failed acquire returns at once, without exit log or pair. A failed release overwrites the body's
// status. Both are reported in the name of the parent's system module, which a host that gives a lock must
// have given too; no test for it is made.
//
// internal_call() is the logging part alone, for functions that run under their caller's lock.
//
// Cost: with logging off, the lock operations, two trace look-ups and two trace calls.
#ifndef OVK_ETH_COMMON_FRAME_H
#define OVK_ETH_COMMON_FRAME_H

#include "common/log.h"
#include "common/module_object.h"
#include "kor_status.h"

namespace ovk {

// Who is calling: for the entry and exit lines, and for what the frame itself reports. These share one
// position, that of the line above the one that names the caller, which no message of the call's own has.
struct caller {
    site where;
    const char *function;
};
#define OVK_CALLER                                                                                         \
    (ovk::caller{{ovk_this_file.module, (ovk_this_file.number * 1000) + __LINE__ - 1}, __func__})

// One step of several: ends the function with the step's status unless that is 0.
#define OVK_TRY(step)                                                                                      \
    do {                                                                                                   \
        if (const u32 ovk_step_status = (step))                                                            \
            return ovk_step_status;                                                                        \
    } while (false)

// A platform operation as a step: on failure ends the function with `status`, after a message whose first
// argument is the text of the platform's own status.
#define OVK_TRY_RTE(module, operation, status, format, ...)                                                \
    do {                                                                                                   \
        if (const u32 ovk_platform_status = (operation))                                                   \
            return OVK_FAIL(module, status, format,                                                        \
                            kor_status_get(ovk_platform_status) __VA_OPT__(, ) __VA_ARGS__);               \
    } while (false)

// What a body ends with. A status converts to one whose failure pair is logged.
struct outcome {
    u32 status;
    bool closing = true;

    outcome(u32 status_in) : status(status_in) {}
    outcome(u32 status_in, bool closing_in) : status(status_in), closing(closing_in) {}
};

inline outcome without_closing(u32 status)
{
    return {status, false};
}

// A lock operation failed: `text` goes out in the system module's name, and the status comes back.
u32 log_lock_failure(ovk_module *module, site where, u32 status, const char *text);

// 0, or OVK_E_LOCK_ACQUIRE / OVK_E_LOCK_RELEASE after reporting it. Without a lock there is nothing to do.
inline u32 acquire_lock(ovk_module *module, site where)
{
    if (module->module_lock == nullptr || ovk_sys_sem_lock_wait(module->module_lock) == KOR_OK)
        return KOR_OK;
    return log_lock_failure(module, where, OVK_E_LOCK_ACQUIRE, "Failed to acquire lock\n");
}

inline u32 release_lock(ovk_module *module, site where)
{
    if (module->module_lock == nullptr || kor_sem_post(module->module_lock) == KOR_OK)
        return KOR_OK;
    return log_lock_failure(module, where, OVK_E_LOCK_RELEASE, "Failed to release lock\n");
}

// The frame from the entry log on.
template <class Closing, class Body>
u32 framed_call(caller from, ovk_module *module, Closing closing, Body body)
{
    log_passage(module, log_class::entry, from.where, from.function);
    if (const u32 failed = acquire_lock(module, from.where))
        return failed;
    const outcome result = body();
    u32 status = result.status;
    if (status != KOR_OK && result.closing)
        closing([&](site where, const char *format, auto... args) {
            log_failure(module, log_class::error, where, status, format, args...);
        });
    if (const u32 failed = release_lock(module, from.where))
        status = failed;
    log_passage(module, log_class::exit, from.where, from.function);
    return status;
}

// A line to the no-module sink.
template <class Line>
void give_forced(Line line)
{
    line([](site where, const char *format, auto... args) { log_forced(where, format, args...); });
}

template <class Invalid, class Closing, class Body>
u32 public_call(caller from, ovk_module *module, Invalid invalid, Closing closing, Body body)
{
    if (!ovk_eth_valid_handle(module)) {
        OVK_FORCED(from.where, "Invalid Ethernet module handle 0x%08x\n", word(module));
        give_forced(invalid);
        return KOR_E_INVALID_HANDLE;
    }
    return framed_call(from, module, closing, body);
}

template <class Closing, class Body>
u32 public_call(caller from, ovk_module *module, Closing closing, Body body)
{
    return public_call(from, module, closing, closing, body);
}

template <class Body>
auto internal_call(caller from, ovk_module *module, Body body)
{
    log_passage(module, log_class::entry, from.where, from.function);
    const auto result = body();
    log_passage(module, log_class::exit, from.where, from.function);
    return result;
}

} // namespace ovk

#endif
