// SPDX-License-Identifier: Apache-2.0
//
// How the operations of the platform that does nothing write down that they were called. Private to its
// sources.
#ifndef OVK_BENCH_NULL_CALLS_H
#define OVK_BENCH_NULL_CALLS_H

#include "kor_types.h"

#include <string>

namespace null_platform {

#ifdef OVK_RECORD_CALLS
inline constexpr bool recording = true;
#else
inline constexpr bool recording = false;
#endif

inline constexpr u32 some_id = 0x100;
inline constexpr u32 some_handle = 0x5A000001;

[[gnu::format(printf, 2, 3)]] void record(const char *operation, const char *format, ...);

std::string hex(const void *bytes, size_t count);

} // namespace null_platform

// Stands first in each operation. A constant condition, so nothing is left of it where calls aren't
// recorded.
#define CALLED(...) (null_platform::recording ? null_platform::record(__func__, __VA_ARGS__) : void())

// For CALLED: the words of a pattern and of an action; so many bytes; those of a record.
#define PATTERN(pattern) static_cast<void *>((pattern)->data), (pattern)->length, (pattern)->width
#define ACTION(action) (action)->type, (action)->w1, (action)->w2
#define BYTES(bytes, count) null_platform::hex(bytes, count).c_str()
#define RECORD(record) BYTES(record, sizeof *(record))

// A whole operation that gives nothing back: what is written down of its parameters, and these.
#define ARGUMENTS(...) __VA_ARGS__
#define OPERATION(name, format, arguments, ...)                                                            \
    u32 name(__VA_ARGS__)                                                                                  \
    {                                                                                                      \
        CALLED(format, ARGUMENTS arguments);                                                               \
        return 0;                                                                                          \
    }

#endif
