// SPDX-License-Identifier: Apache-2.0
/* What log lines need: texts of statuses, the clock, trace functions. */
#include "call.h"
#include "kor_status.h"
#include "kor_time.h"
#include "ovk_lttng.h"
#include "ovk_sys.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace sim {

namespace {

constexpr u32 nanoseconds_per_second = 1'000'000'000;

struct StatusText {
    u32 status;
    const char *text;
};

constexpr StatusText texts[] = {
    {KOR_OK, "success"},
    {KOR_E_INVALID_HANDLE, "invalid handle"},
    {KOR_E_INVALID_ARGUMENT, "invalid argument"},
    {KOR_E_UNSUPPORTED, "not supported"},
    {KOR_E_NO_MEMORY, "out of memory"},
    {KOR_E_VP_NOT_FOUND, "virtual pipeline not found"},
    {KOR_E_RSRC_NOT_FOUND, "namespace not found"},
    {KOR_E_RSRC_CREATE, "namespace not created"},
    {KOR_E_RSRC_DESTROY, "namespace not destroyed"},
    {KOR_E_RSRC_QUERY, "namespace not queried"},
    {KOR_E_RSRC_ALLOCATE, "ids not allocated"},
    {KOR_E_RSRC_FREE, "ids not freed"},
    {KOR_E_SE_READ, "state memory not read"},
    {KOR_E_SE_WRITE, "state memory not written"},
    {KOR_E_SUBNET_CREATE, "subnet database not created"},
    {KOR_E_SUBNET_DESTROY, "subnet database not destroyed"},
    {KOR_E_SUBNET_ADD, "subnet not added"},
    {KOR_E_SUBNET_DELETE, "subnet not deleted"},
    {KOR_E_SUBNET_FIND, "subnet not found"},
    {KOR_E_PTN_SYMBOL, "classifier symbol not found"},
    {KOR_E_PTN_LEARN, "rule not learned"},
    {KOR_E_PTN_UNLEARN, "rule not unlearned"},
    {KOR_E_BRIDGE_LEARN, "bridge entry not learned"},
    {KOR_E_BRIDGE_UNLEARN, "bridge entry not unlearned"},
    {OVK_E_INVALID_ARGUMENT, "invalid argument (unknown domain)"},
    {OVK_E_LOCK_ACQUIRE, "lock not acquired"},
    {OVK_E_LOCK_RELEASE, "lock not released"},
    {status_unknown_name, "unknown name"},
    {status_name_taken, "name is taken"},
    {status_ids_taken, "ids are taken"},
    {status_no_rule, "no such rule"},
    {status_no_cover, "no subnet covers it"},
    {status_exhausted, "host is out of memory"},
    {status_absent, "no such entry"},
    {status_too_long, "longer than what it matches"},
    {status_already, "already so, or none yet"},
    {status_no_bridge_entry, "no such bridge entry"},
    {status_injected, "injected fault"},
    {status_misuse, "wrong use of the platform"},
};

/* Texts that were asked for stay for good, a reset included. */
const char *status_text(u32 status)
{
    static std::map<u32, std::string> &known = *[] {
        auto *map = new std::map<u32, std::string>;
        for (const StatusText &row : texts)
            map->emplace(row.status, row.text);
        return map;
    }();
    std::string &text = known[status];
    if (text.empty())
        text = format(status >> 16 == 0x200 ? "Ethernet module status 0x%x" : "status 0x%x", status);
    return text.c_str();
}

/* Lets virtual time pass. */
void pass(u64 nanoseconds)
{
    kor_time &now = world().now;
    const u64 sum = now.nanoseconds + nanoseconds;
    now.seconds += static_cast<u32>(sum / nanoseconds_per_second);
    now.nanoseconds = static_cast<u32>(sum % nanoseconds_per_second);
}

std::atomic<bool> tracing{false};
std::array<std::atomic<u64>, traces::events> trace_counts{};
std::atomic<u64> forced_errors{0};
thread_local u32 asked_ctx = 0;

void keep(u32 event, const ovk_module *module, u32 line, const char *file, const char *format,
          std::va_list arguments)
{
    char buffer[1024];
    std::vsnprintf(buffer, sizeof buffer, format ? format : "%s", arguments);
    const Guard guard;
    world().traces.push_back({event, asked_ctx, module, line, file ? file : "", buffer});
}

template <u32 event>
void traced(ovk_module *module, u32 line, const char *file, const char *format, ...)
{
    trace_counts[event].fetch_add(1, std::memory_order_relaxed);
    if (!tracing.load(std::memory_order_relaxed))
        return;
    std::va_list arguments;
    va_start(arguments, format);
    keep(event, module, line, file, format, arguments);
    va_end(arguments);
}

template <u32... event>
constexpr std::array<ovk_lttng_fn, sizeof...(event)> functions(std::integer_sequence<u32, event...>)
{
    return {traced<event>...};
}

constexpr auto trace_functions = functions(std::make_integer_sequence<u32, traces::events>());

} // namespace

void traces_reset()
{
    tracing = false;
    for (auto &count : trace_counts)
        count = 0;
    forced_errors = 0;
}

void traces::on(bool on)
{
    tracing = on;
}

std::vector<traces::Record> traces::records()
{
    const Guard guard;
    return world().traces;
}

void traces::clear()
{
    const Guard guard;
    world().traces.clear();
}

u64 traces::count(u32 event)
{
    return event == forced_error ? forced_errors.load() : event < events ? trace_counts[event].load() : 0;
}

void time::set(u32 seconds, u32 nanoseconds)
{
    const Guard guard;
    world().now = {seconds + nanoseconds / nanoseconds_per_second, nanoseconds % nanoseconds_per_second};
}

void time::advance(u32 seconds, u32 nanoseconds)
{
    const Guard guard;
    pass(u64{seconds} * nanoseconds_per_second + nanoseconds);
}

} // namespace sim

using namespace sim;

const char *kor_status_get(u32 status)
{
    return platform<"kor_status_get">(With{status}, [&] { return status_text(status); });
}

const char *ovk_sys_status_get(ovk_system *, u32 status)
{
    return platform<"ovk_sys_status_get">(With{status}, [&] { return status_text(status); });
}

u32 kor_gettime(kor_time *out)
{
    return platform<"kor_gettime">(With{}, [&]() -> u32 {
        *given(out, "output") = world().now;
        return 0;
    });
}

u32 kor_usleep(u32 microseconds)
{
    return platform<"kor_usleep">(With{microseconds}, [&]() -> u32 {
        pass(u64{microseconds} * 1000);
        return 0;
    });
}

u32 ovk_lttng_fn_ptr_get(u32 trace_ctx, u32 event_index, ovk_lttng_fn *fn)
{
    return platform<"ovk_lttng_fn_ptr_get">(With{trace_ctx, event_index}, [&]() -> u32 {
        given(fn, "output");
        if (event_index >= traces::events)
            wrong("event %u", event_index);
        asked_ctx = trace_ctx;
        *fn = trace_functions[event_index];
        return 0;
    });
}

void ovk_lttng_trace_sif_force_error(ovk_module *module, u32 line, const char *file, const char *format,
                                     ...)
{
    platform<"ovk_lttng_trace_sif_force_error">(With{format}, [&] {
        if (module)
            wrong("a module, where there can't be one");
        ++forced_errors;
    });
    if (!tracing)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    keep(traces::forced_error, module, line, file, format, arguments);
    va_end(arguments);
}
