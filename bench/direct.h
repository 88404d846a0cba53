// SPDX-License-Identifier: Apache-2.0
//
// What the direct sides are written with: trace points, and the calls that write a rule. Private to their
// sources; whatever uses the macros has a `module`.
#ifndef OVK_BENCH_DIRECT_H
#define OVK_BENCH_DIRECT_H

#include "common/module_object.h"
#include "kor_ptn.h"
#include "ovk_lttng.h"
#include "ovk_ptn.h"

// A trace point: look-up and call.
#define TRACE(event, ...) bench::trace_point(module, event, __LINE__, __VA_ARGS__)
#define INFO(...) TRACE(0, __VA_ARGS__)
#define ENTER(function) TRACE(8, nullptr, function)
#define EXIT(function) TRACE(9, nullptr, function)
#define HW(...) TRACE(14, __VA_ARGS__)

namespace bench {

inline constexpr u32 ptn_learn_event = 15;
inline constexpr u32 ptn_unlearn_event = 16;

template <class... Args>
void trace_point(ovk_module *module, u32 event, u32 line, const char *format, Args... args)
{
    ovk_lttng_fn trace = nullptr;
    ovk_lttng_fn_ptr_get(module->trace_ctx, event, &trace);
    trace(module, line, "direct_calls", format, args...);
}

// The rule at the tree's pattern: learnt with the action, or, without one, unlearnt.
u32 apply(ovk_module *module, eth_tree_info &tree, const kor_ptn_action *action);

// From the entry of a named function to its exit.
struct Passage {
    ovk_module *module;
    const char *function;

    Passage(ovk_module *in, const char *name) : module(in), function(name) { ENTER(function); }
    ~Passage() { EXIT(function); }
    Passage(const Passage &) = delete;
    Passage &operator=(const Passage &) = delete;
};

struct Field {
    u32 value;
    u32 bits;
};

// A rule under a key, in the named function.
template <class... Fields>
u32 rule(ovk_module *module, const char *function, ovk_eth_tree index, const kor_ptn_action *action,
         Fields... key)
{
    const Passage passage(module, function);
    eth_tree_info &tree = ovk::tree_of(module, index);
    u32 rc = ovk_ptn_clear(&tree.input_pattern);
    ((rc += ovk_ptn_extend(&tree.input_pattern, key.value, key.bits)), ...);
    return rc + apply(module, tree, action);
}

} // namespace bench

#endif
