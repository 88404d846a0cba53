// SPDX-License-Identifier: Apache-2.0
//
// The one way to log.
//
// A line belongs to a class. The class says which bits of a log mask let it be printed and which trace
// event it goes to. It is printed when it passes in the parent's global mask or in the module's own; the
// trace function gets it whatever the masks say. A printed line is a head, a position, and the message.
//
// Position. Each source file declares its source module and a number with OVK_LOG_FILE; a line's position
// is number * 1000 + source line, so "ovk_ethernet:12045" is line 45 of that module's file 12.
// `scripts/where` turns one back into a path.
//
// Messages. A text without arguments is printed as a line: it ends in exactly one newline. A text with
// arguments is a printf format, checked by the compiler, and printed as it stands. The trace call always
// carries the text as it stands and its arguments.
//
// A failure is a pair of lines at one position: what happened, then the status's text. OVK_FAIL writes the
// pair and yields the status, so that a check reads `return OVK_FAIL(module, status, "...", ...)`.
//
// Cost: with all bits off, two mask loads, one trace look-up and one trace call for each line; nothing is
// formatted and no time is read. Masks are read without a lock. Nothing here allocates or fails: the
// outcome of printing and tracing isn't looked at.
#ifndef OVK_ETH_COMMON_LOG_H
#define OVK_ETH_COMMON_LOG_H

#include <cstdio>

#include "common/atomics.h"
#include "ovk_ethernet_log.h"
#include "ovk_lttng.h"
#include "ovk_module.h"
#include "ovk_sys.h"

namespace ovk {

struct source_file {
    const char *module;
    u32 number;
};

// Where a log line stands.
struct site {
    const char *file;
    u32 line;
};

#define OVK_LOG_FILE(module, number)                                                                       \
    static constexpr ovk::source_file ovk_this_file                                                        \
    {                                                                                                      \
#module, number                                                                                    \
    }
#define OVK_HERE (ovk::site{ovk_this_file.module, (ovk_this_file.number * 1000) + __LINE__})

enum class log_class : u8 {
    info,
    error,
    fatal,
    warning,
    entry,
    exit,
    hw,
    ptn_learn,
    ptn_unlearn,
    subnet_add,
    subnet_delete,
    subnet_get,
    vptn_learn,
    vptn_unlearn,
    vptn_clear,
    vptn_build,
    se_write,
    se_read,
    qsh_read,
    count
};

struct log_class_row {
    log_class id;
    const char *word; // in the head of the line
    u8 level;         // printed when the mask's level is above this; unused when `flag` is set
    u16 flag;         // printed when the mask has this bit
    u8 event;         // trace event
};

inline constexpr log_class_row log_classes[] = {
    {.id = log_class::info, .word = "info", .level = 14, .flag = 0, .event = 0},
    {.id = log_class::error, .word = "ERROR", .level = 2, .flag = 0, .event = 2},
    {.id = log_class::fatal, .word = "FATAL", .level = 0, .flag = 0, .event = 4},
    {.id = log_class::warning, .word = "Warning", .level = 6, .flag = 0, .event = 6},
    {.id = log_class::entry, .word = "function", .level = 0, .flag = OVK_ETHERNET_LOG_FUNCTION, .event = 8},
    {.id = log_class::exit, .word = "function", .level = 0, .flag = OVK_ETHERNET_LOG_FUNCTION, .event = 9},
    {.id = log_class::hw, .word = "hw", .level = 0, .flag = OVK_ETHERNET_LOG_HW, .event = 14},
    {.id = log_class::ptn_learn,
     .word = "ptn_learn",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_PTN,
     .event = 15},
    {.id = log_class::ptn_unlearn,
     .word = "ptn_unlearn",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_PTN,
     .event = 16},
    {.id = log_class::subnet_add,
     .word = "subnet_add",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_SUBNET,
     .event = 17},
    {.id = log_class::subnet_delete,
     .word = "subnet_delete",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_SUBNET,
     .event = 18},
    {.id = log_class::subnet_get,
     .word = "subnet_get",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_SUBNET,
     .event = 19},
    {.id = log_class::vptn_learn,
     .word = "vptn_learn",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_PTN,
     .event = 20},
    {.id = log_class::vptn_unlearn,
     .word = "vptn_unlearn",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_PTN,
     .event = 21},
    {.id = log_class::vptn_clear,
     .word = "vptn_clear",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_PTN,
     .event = 22},
    {.id = log_class::vptn_build,
     .word = "vptn_build",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_PTN,
     .event = 23},
    {.id = log_class::se_write,
     .word = "se_write",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_STATE,
     .event = 27},
    {.id = log_class::se_read, .word = "se_read", .level = 0, .flag = OVK_ETHERNET_LOG_STATE, .event = 28},
    {.id = log_class::qsh_read,
     .word = "qsh_read",
     .level = 0,
     .flag = OVK_ETHERNET_LOG_STATE,
     .event = 29},
};

consteval bool log_classes_in_order()
{
    u8 index = 0;
    for (const log_class_row &row : log_classes)
        if (row.id != static_cast<log_class>(index++))
            return false;
    return index == static_cast<u8>(log_class::count);
}
static_assert(log_classes_in_order());

constexpr const log_class_row &row_of(log_class cls)
{
    return log_classes[static_cast<u8>(cls)];
}

constexpr bool passes(u32 mask, log_class cls)
{
    const log_class_row &row = row_of(cls);
    return row.flag != 0 ? (mask & row.flag) != 0 : (mask & OVK_ETHERNET_LOG_LEVEL) > row.level;
}

inline bool prints(const ovk_module *module, log_class cls)
{
    return passes(load_relaxed(module->log_mask), cls) ||
           (module->parent != nullptr && passes(load_relaxed(module->parent->global_log_mask), cls));
}

// A handle as the u32 that messages show.
inline u32 word(const volatile void *handle)
{
    return static_cast<u32>(reinterpret_cast<uintptr_t>(handle));
}

// The first two writes of a line.
void print_head(const char *name, log_class cls, site where);

// A text without arguments: one newline at its end, whether or not it has one.
void print_line(const char *text);

template <class... Args>
void print_message(const char *format, Args... args)
{
    if constexpr (sizeof...(Args) == 0)
        print_line(format);
    else
        std::printf(format, args...);
}

// Stands where the platform gives no trace function.
void trace_nothing(ovk_module *module, u32 line, const char *file, const char *format, ...);

// Makes the trace call. The function isn't tested: a load that a branch waits for, right behind the
// platform's store to the same place, takes longer than all the rest.
template <class... Args>
void trace_message(ovk_module *module, log_class cls, site where, const char *format, Args... args)
{
    ovk_lttng_fn trace = trace_nothing;
    // A lock failure comes here with the parent's system module, untested as its caller says.
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference)
    (void)ovk_lttng_fn_ptr_get(module->trace_ctx, row_of(cls).event, &trace);
    trace(module, where.line, where.file, format, args...);
}

template <class... Args>
[[gnu::cold, gnu::noinline]] void print_whole(const ovk_module *module, log_class cls, site where,
                                              const char *format, Args... args)
{
    print_head(module->module_name, cls, where);
    print_message(format, args...);
}

template <class... Args>
inline void log_message(ovk_module *module, log_class cls, site where, const char *format, Args... args)
{
    if (prints(module, cls)) [[unlikely]]
        print_whole(module, cls, where, format, args...);
    trace_message(module, cls, where, format, args...);
}

// The second line of a pair.
void log_status(ovk_module *module, log_class cls, site where, u32 status);

template <class... Args>
[[gnu::cold, gnu::noinline]] u32 log_failure(ovk_module *module, log_class cls, site where, u32 status,
                                             const char *format, Args... args)
{
    log_message(module, cls, where, format, args...);
    log_status(module, cls, where, status);
    return status;
}

// A class line whose end the platform's own printers write: head, format, `print()`, newline. The trace
// call carries the format and its arguments.
template <class Print, class... Args>
[[gnu::cold, gnu::noinline]] void print_record(const ovk_module *module, log_class cls, site where,
                                               Print print, const char *format, Args... args)
{
    print_head(module->module_name, cls, where);
    print_message(format, args...);
    print();
    std::putchar('\n');
}

template <class Print, class... Args>
inline void log_record(ovk_module *module, log_class cls, site where, Print print, const char *format,
                       Args... args)
{
    if (prints(module, cls)) [[unlikely]]
        print_record(module, cls, where, print, format, args...);
    trace_message(module, cls, where, format, args...);
}

// Entry and exit events carry the function's name and a null format. The time is read only for a printed
// line.
void print_time_stamped(ovk_module *module, log_class cls, site where, const char *function);

inline void log_passage(ovk_module *module, log_class cls, site where, const char *function)
{
    if (prints(module, cls))
        print_time_stamped(module, cls, where, function);
    trace_message(module, cls, where, nullptr, function);
}

// An error with no valid module behind it: no mask and no name are to be had, so it is printed always.
template <class... Args>
[[gnu::noinline]] void log_forced(site where, const char *format, Args... args)
{
    print_head("ovk_unknown", log_class::error, where);
    print_message(format, args...);
    ovk_lttng_trace_sif_force_error(nullptr, where.line, where.file, format, args...);
}

} // namespace ovk

// Declared and never defined: lets the compiler check a format that then goes to a template.
void ovk_format_check(const char *format, ...) __attribute__((format(printf, 1, 2)));
#define OVK_CHECKED(...) (false ? ovk_format_check(__VA_ARGS__) : void())

#define OVK_LOG(module, cls, ...)                                                                          \
    (OVK_CHECKED(__VA_ARGS__), ovk::log_message(module, ovk::log_class::cls, OVK_HERE, __VA_ARGS__))
#define OVK_INFO(module, ...) OVK_LOG(module, info, __VA_ARGS__)
#define OVK_WARN(module, ...) OVK_LOG(module, warning, __VA_ARGS__)

#define OVK_FAIL_AS(module, cls, status, ...)                                                              \
    (OVK_CHECKED(__VA_ARGS__), ovk::log_failure(module, ovk::log_class::cls, OVK_HERE, status, __VA_ARGS__))
#define OVK_FAIL(module, status, ...) OVK_FAIL_AS(module, error, status, __VA_ARGS__)
#define OVK_FAIL_FATAL(module, status, ...) OVK_FAIL_AS(module, fatal, status, __VA_ARGS__)

#define OVK_FORCED(where, ...) (OVK_CHECKED(__VA_ARGS__), ovk::log_forced(where, __VA_ARGS__))

// OVK_LOG_RECORD(module, ptn_learn, [&] { ovk_ptn_print(...); }, "%s: ", name)
#define OVK_LOG_RECORD(module, cls, print, ...)                                                            \
    (OVK_CHECKED(__VA_ARGS__), ovk::log_record(module, ovk::log_class::cls, OVK_HERE, print, __VA_ARGS__))

// A message to be given later, to whatever sink it is handed: sink(site, format, args...). The arguments
// are taken by reference and evaluated only when the message goes out.
#define OVK_LINE(...) (OVK_CHECKED(__VA_ARGS__), [&](auto &&ovk_sink) { ovk_sink(OVK_HERE, __VA_ARGS__); })

#endif
