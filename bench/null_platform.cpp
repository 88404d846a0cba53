// SPDX-License-Identifier: Apache-2.0
#include "null_platform.h"

#include "kor_gatr.h"
#include "kor_nvm.h"
#include "kor_qsh.h"
#include "kor_rsrc.h"
#include "kor_se.h"
#include "kor_status.h"
#include "kor_subnet.h"
#include "kor_time.h"
#include "kor_vp.h"
#include "ovk_lttng.h"
#include "ovk_print.h"
#include "ovk_ptn.h"
#include "ovk_qos.h"
#include "ovk_sif.h"
#include "ovk_sys.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

constexpr u32 some_id = 0x100;
constexpr u32 some_handle = 0x5A000001;

#ifdef OVK_RECORD_CALLS
constexpr bool recording = true;
#else
constexpr bool recording = false;
#endif

std::vector<null_platform::Call> calls;

std::string show(const char *format, va_list arguments)
{
    char text[512];
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): callers have started it
    std::vsnprintf(text, sizeof text, format, arguments);
    return text;
}

[[gnu::format(printf, 2, 3)]] void record(const char *operation, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    calls.push_back({operation, show(format, arguments)});
    va_end(arguments);
}

} // namespace

// Stands first in each operation. A constant condition, so nothing is left of it where calls aren't
// recorded.
#define CALLED(...) (recording ? record(__func__, __VA_ARGS__) : void())

// The words of a pattern and of an action, for CALLED.
#define PATTERN(pattern) static_cast<void *>((pattern)->data), (pattern)->length, (pattern)->width
#define ACTION(action) (action)->type, (action)->w1, (action)->w2

std::vector<null_platform::Call> null_platform::take_calls()
{
    return std::exchange(calls, {});
}

null_platform::Host::Host()
{
    sys_ = {.guard = OVK_MODULE_GUARD, .module_name = "ovk_sys", .parent = &parent_};
    parent_.sys_module = &sys_;
    module_ = {.guard = OVK_MODULE_GUARD,
               .module_name = "ovk_ethernet",
               .trace_ctx = 0x11,
               .module_lock = &lock_,
               .parent = &parent_,
               .rte_handle = 1};
}

// Locks, time, texts, traces.

u32 kor_sem_init(kor_sem *, u32 shared, u32 value)
{
    CALLED("%u %u", shared, value);
    return 0;
}

u32 kor_sem_post(kor_sem *sem)
{
    CALLED("%p", static_cast<void *>(sem));
    return 0;
}

u32 ovk_sys_sem_lock_wait(kor_sem *lock)
{
    CALLED("%p", static_cast<void *>(lock));
    return 0;
}

u32 kor_gettime(kor_time *out)
{
    CALLED("%s", "");
    *out = {};
    return 0;
}

const char *kor_status_get(u32 status)
{
    CALLED("0x%x", status);
    return "status";
}

const char *ovk_sys_status_get(ovk_system *, u32 status)
{
    CALLED("0x%x", status);
    return "status";
}

namespace {

void trace(ovk_module *module, u32, const char *, const char *format, ...)
{
    if constexpr (recording) {
        va_list arguments;
        va_start(arguments, format);
        record("trace", "%p %s", static_cast<void *>(module),
               show(format != nullptr ? format : "passage of %s", arguments).c_str());
        va_end(arguments);
    }
}

} // namespace

u32 ovk_lttng_fn_ptr_get(u32 trace_ctx, u32 event_index, ovk_lttng_fn *fn)
{
    CALLED("0x%x %u", trace_ctx, event_index);
    *fn = trace;
    return 0;
}

void ovk_lttng_trace_sif_force_error(ovk_module *, u32, const char *, const char *format, ...)
{
    CALLED("%s", format);
}

// Heap.

void *kor_nvm_calloc(size_t count, size_t size)
{
    CALLED("%zu %zu", count, size);
    return std::calloc(count, size);
}

void *kor_nvm_malloc(size_t size)
{
    CALLED("%zu", size);
    return std::malloc(size);
}

void kor_nvm_free(void *block)
{
    CALLED("%s", "");
    std::free(block);
}

// Patterns.

u32 ovk_ptn_new(u32 width, kor_ptn *pattern)
{
    CALLED("%u", width);
    *pattern = {.data = nullptr, .length = 0, .width = width};
    return 0;
}

u32 ovk_ptn_clear(kor_ptn *pattern)
{
    CALLED("%p", static_cast<void *>(pattern));
    pattern->length = 0;
    return 0;
}

u32 ovk_ptn_extend(kor_ptn *pattern, u32 value, u32 bits)
{
    CALLED("%p 0x%x %u", static_cast<void *>(pattern), value, bits);
    pattern->length += bits;
    return 0;
}

u32 ovk_ptn_free(kor_ptn_data *, u32 length, u32 width)
{
    CALLED("%u %u", length, width);
    return 0;
}

void ovk_ptn_print(kor_ptn_data *, u32 length, u32 width)
{
    CALLED("%u %u", length, width);
}

void ovk_ptn_action_print(u32 type, u32 w1, u32 w2)
{
    CALLED("%u 0x%x 0x%x", type, w1, w2);
}

void ovk_byte_string_print(const void *, u32 length)
{
    CALLED("%u", length);
}

// Classifier and databases.

u32 kor_ptn_symbol_get_id(kor_rte, const char *name, u32 *out)
{
    static u32 last = some_id;
    CALLED("%s", name);
    *out = ++last;
    return 0;
}

u32 kor_ptn_learn(kor_rte rte, u32 tree_id, const kor_ptn *pattern, const kor_ptn_action *action)
{
    CALLED("%u 0x%x (%p %u %u) (%u 0x%x 0x%x)", rte, tree_id, PATTERN(pattern), ACTION(action));
    return 0;
}

u32 kor_ptn_unlearn(kor_rte rte, u32 tree_id, const kor_ptn *pattern, u32 replacement_length,
                    const kor_ptn_action *replacement)
{
    CALLED("%u 0x%x (%p %u %u) %u (%u 0x%x 0x%x)", rte, tree_id, PATTERN(pattern), replacement_length,
           ACTION(replacement));
    return 0;
}

u32 kor_subnet_create(u32 width, u32, u32, kor_subnet *out)
{
    CALLED("%u", width);
    *out = some_handle;
    return 0;
}

u32 kor_subnet_destroy(kor_subnet *db) // NOLINT(readability-non-const-parameter): as declared
{
    CALLED("0x%x", *db);
    return 0;
}

u32 kor_subnet_add_subnet(kor_subnet db, const kor_ptn *pattern, const kor_ptn_action *action)
{
    CALLED("0x%x (%p %u %u) (%u 0x%x 0x%x)", db, PATTERN(pattern), ACTION(action));
    return 0;
}

u32 kor_subnet_del_subnet(kor_subnet db, const kor_ptn *pattern)
{
    CALLED("0x%x (%p %u %u)", db, PATTERN(pattern));
    return 0;
}

u32 kor_subnet_find_higher_subnet(kor_subnet db, const kor_ptn *pattern, u32 *length,
                                  kor_ptn_action *action)
{
    CALLED("0x%x (%p %u %u)", db, PATTERN(pattern));
    *length = 1;
    *action = {};
    return 0;
}

// Namespaces, memories, pipelines.

u32 kor_rsrc_create(kor_rte, u32 kind, const char *name, u32 max_ids, u32, kor_rsrc *out)
{
    CALLED("%u %s %u", kind, name, max_ids);
    *out = some_handle;
    return 0;
}

u32 kor_rsrc_find(kor_rte, u32 kind, const char *name, kor_rsrc *out)
{
    CALLED("%u %s", kind, name);
    *out = some_handle;
    return 0;
}

u32 kor_rsrc_query(kor_rsrc ns, kor_rsrc_info *out)
{
    CALLED("0x%x", ns);
    *out = {.first_id = some_id, .max_ids = 1024, .ids_in_use = 0};
    return 0;
}

u32 kor_rsrc_allocate_fixed(kor_rsrc ns, u32 count, u32 *)
{
    CALLED("0x%x %u", ns, count);
    return 0;
}

u32 kor_rsrc_free(kor_rsrc ns, u32 id, u32 count)
{
    CALLED("0x%x 0x%x %u", ns, id, count);
    return 0;
}

u32 kor_rsrc_destroy(kor_rte, kor_rsrc ns)
{
    CALLED("0x%x", ns);
    return 0;
}

u32 kor_se_state_set(kor_rte, u32 ns_id, u32 offset, const void *, u32 size)
{
    CALLED("0x%x %u %u", ns_id, offset, size);
    return 0;
}

u32 kor_qsh_shared_param_mod(kor_rte, const kor_qsh_shared_param *param, u32)
{
    CALLED("0x%x %u", param->ns_id, param->length);
    return 0;
}

#define PIPELINE(name)                                                                                     \
    u32 name(kor_rte, kor_vp *out)                                                                         \
    {                                                                                                      \
        CALLED("%s", "");                                                                                  \
        *out = some_handle;                                                                                \
        return 0;                                                                                          \
    }
PIPELINE(kor_vp_handle_get_tvu_ethernet_egress_encap_ipv4)
PIPELINE(kor_vp_handle_get_tvu_ethernet_egress_encap)
PIPELINE(kor_vp_handle_get_expander_ethernet_switch)
PIPELINE(kor_vp_handle_get_gatr_ethernet_hsw_switch)
PIPELINE(kor_vp_handle_get_gatr_ethernet_hsw_flood)
PIPELINE(kor_vp_handle_get_gatr_ethernet_hsw_default)

// Port adapter and switch.

u32 kor_gatr_switch_bridge_age_hysteresis_set(kor_rte, u32 hysteresis)
{
    CALLED("%u", hysteresis);
    return 0;
}

u32 kor_gatr_common_dscp_cos_set(kor_rte, u32 dscp, u32 cos)
{
    CALLED("%u %u", dscp, cos);
    return 0;
}

u32 kor_gatr_switch_acl_cos_to_dscp_map_set(kor_rte, kor_gatr_cos cos, const kor_gatr_cos *)
{
    CALLED("%u %u", cos.kind, cos.value);
    return 0;
}

u32 kor_gatr_switch_bridge_entry_learn(kor_rte, const kor_gatr_bridge_entry *)
{
    CALLED("%s", "");
    return 0;
}

u32 kor_gatr_switch_bridge_entry_unlearn(kor_rte, const kor_gatr_bridge_key *)
{
    CALLED("%s", "");
    return 0;
}

// Sibling modules.

u32 ovk_module_service_function_register(ovk_system *, ovk_module *, const ovk_service_record *)
{
    CALLED("%s", "");
    return 0;
}

u32 ovk_module_service_function_update(ovk_system *, ovk_module *, const ovk_service_record *)
{
    CALLED("%s", "");
    return 0;
}

u32 ovk_qos_queue_id_get(ovk_system *parent, ovk_queue_handle queue_handle, u32 *queue_id)
{
    CALLED("%p 0x%x", static_cast<void *>(parent), queue_handle);
    *queue_id = some_id;
    return 0;
}

u32 ovk_sif_max_subnet_entry_sz_get(u32 key_bits, u32 flag, u32 *size, u32 *optimized_size)
{
    CALLED("%u %u", key_bits, flag);
    *size = *optimized_size = key_bits / 8;
    return 0;
}
