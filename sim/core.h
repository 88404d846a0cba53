// SPDX-License-Identifier: Apache-2.0
/*
 * What a test or a tool asks of the simulator as a whole: start over, what was called, what is to fail,
 * what was misused, virtual time, traces, heap and locks. Everything here may be called from any thread.
 */
#ifndef OVK_SIM_CORE_H
#define OVK_SIM_CORE_H

#include "ovk_module.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/* Statuses of the simulated platform. The library must pass on or map what it doesn't know. */
inline constexpr u32 status_unknown_name =
    0x1001; /* no such symbol, pipeline, namespace, queue, module or port */
inline constexpr u32 status_name_taken = 0x1002; /* namespace is there already */
inline constexpr u32 status_ids_taken = 0x1003;  /* one of the fixed ids is out */
inline constexpr u32 status_no_rule = 0x1004;    /* unlearn of an absent rule */
inline constexpr u32 status_no_cover = 0x1005;   /* database without a root that could cover */
inline constexpr u32 status_exhausted = 0x1006;  /* the host itself is out of memory */
inline constexpr u32 status_absent = 0x1007;   /* removal of what isn't there; a place past a list's end */
inline constexpr u32 status_too_long = 0x1008; /* a field of a rule is longer than what it matches */
inline constexpr u32 status_already = 0x1081;  /* a set finds the thing there, a read finds none yet */
inline constexpr u32 status_no_bridge_entry = 0x10DE; /* unlearn of an absent bridge entry */
inline constexpr u32 status_injected = 0x7F0A;        /* what a fault gives unless told otherwise */
inline constexpr u32 status_misuse = 0x7F0B;          /* the call was wrong; misuse() says how */

/*
 * The state of a process that has just started: no chips, heap freed (quarantine too), time 0, journal and
 * traces off and empty, no faults, no misuse. Hosts made before are dead; no thread may be in a call.
 */
void reset();

/* One line for each call that broke the rules: the operation and what was wrong. Empty in a good run. */
std::vector<std::string> misuse();
void misuse_clear();

/*
 * The journal: each platform call in order. An entry reads "name(arguments)", with " -> status" behind it
 * when the call failed. Output pointers and addresses are left out, so that two runs compare as text.
 */
void journal_on(bool on);
namespace journal {
std::vector<std::string> ops(std::string_view prefix = {}); /* names; those that begin with `prefix` */
std::vector<std::string> entries(std::string_view prefix = {});
std::vector<std::string> writes();        /* names of the calls that change a chip's or the host's state */
std::vector<std::string> write_entries(); /* the same calls in full */
void clear();

/* Calls since the last reset or counts_clear(); counted with the journal off too. */
u64 count(std::string_view op);
u64 write_count();
void counts_clear();
} // namespace journal

/*
 * Faults. An operation that returns a status returns the given one and does nothing else; an allocation
 * returns null. (A failed kor_sem_post leaves the lock held.) Several may be armed; each fires once but
 * those of fail_always(). The functions return false for an operation that isn't known or can't fail, or
 * status 0.
 */
namespace faults {
const std::vector<std::string> &operations();
bool known(std::string_view op);

bool fail(std::string_view op, u32 nth = 1, u32 status = status_injected);
bool fail_always(std::string_view op, u32 status = status_injected);

/* Which calls a sweep over all operations counts. */
struct Sweep {
    std::vector<std::string> except; /* operations that are left alone */
    u32 per_operation = 0;           /* counts only the first so many calls of each; 0: all */
    u32 status = status_injected;
};
bool fail_any(u32 nth, const Sweep &sweep = {});

std::vector<std::string>
fired(); /* operations, in the order in which faults fired since the last clear() */
void clear();
} // namespace faults

/* kor_gettime() reads this clock; it moves only here and by kor_usleep(), which returns at once. */
namespace time {
void set(u32 seconds, u32 nanoseconds);
void advance(u32 seconds, u32 nanoseconds = 0);
} // namespace time

namespace traces {
inline constexpr u32 events = 32;           /* event indices below this have a function */
inline constexpr u32 forced_error = 0xFFFF; /* event of an error that has no module */

struct Record {
    u32 event;
    u32 trace_ctx; /* the context for which the calling thread last asked a function */
    const ovk_module *module;
    u32 line;
    std::string file;
    std::string text; /* formatted; of entry and exit events the function's name */
};

void on(bool on); /* whether records are kept; counts always are */
std::vector<Record> records();
void clear();
u64 count(u32 event);
} // namespace traces

namespace heap {
std::size_t live_blocks();
std::size_t live_bytes();
std::map<std::size_t, std::size_t> live_sizes(); /* block size -> blocks */

/* Freed blocks stay readable, the last `bytes` of them. Without limit at first; benchmarks set one. */
void quarantine_limit(std::size_t bytes);
} // namespace heap

/* How often its holder holds the lock; 0 when it is free. Nothing for memory that isn't a lock. */
std::optional<u32> lock_depth(const kor_sem *lock);

/* Patterns made and not freed. */
std::size_t live_patterns();

} // namespace sim

#endif
