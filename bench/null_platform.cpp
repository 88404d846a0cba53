// SPDX-License-Identifier: Apache-2.0
#include "null_platform.h"

#include "kor_gatr.h"
#include "kor_nvm.h"
#include "kor_otreeset.h"
#include "kor_qsh.h"
#include "kor_rsrc.h"
#include "kor_se.h"
#include "kor_status.h"
#include "kor_subnet.h"
#include "kor_time.h"
#include "kor_vp.h"
#include "null_calls.h"
#include "ovk_lttng.h"
#include "ovk_print.h"
#include "ovk_ptn.h"
#include "ovk_qos.h"
#include "ovk_sif.h"
#include "ovk_sys.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>

using null_platform::some_handle;
using null_platform::some_id;

namespace {

std::vector<null_platform::Call> calls;

std::string show(const char *format, va_list arguments)
{
    char text[1024];
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): callers have started it
    std::vsnprintf(text, sizeof text, format, arguments);
    return text;
}

} // namespace

void null_platform::record(const char *operation, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    calls.push_back({operation, show(format, arguments)});
    va_end(arguments);
}

std::string null_platform::hex(const void *bytes, size_t count)
{
    std::string text;
    for (size_t i = 0; i < count; i++) {
        char octet[3];
        std::snprintf(octet, sizeof octet, "%02x", static_cast<const u8 *>(bytes)[i]);
        text += octet;
    }
    return text;
}

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

OPERATION(kor_usleep, "%u", (microseconds), u32 microseconds)

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
    if constexpr (null_platform::recording) {
        va_list arguments;
        va_start(arguments, format);
        null_platform::record("trace", "%p %s", static_cast<void *>(module),
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

// Heap. Where calls are recorded, a block that was given back is kept for the next of its size: the same
// call again gets the same addresses, which then stand in texts.

namespace {

std::map<void *, size_t> sizes;
std::map<size_t, std::vector<void *>> kept;

void *zeroed(size_t size)
{
    if (!null_platform::recording)
        return std::calloc(1, size);
    std::vector<void *> &blocks = kept[size];
    if (blocks.empty())
        blocks.push_back(std::malloc(size));
    void *block = blocks.back();
    blocks.pop_back();
    sizes[block] = size;
    return std::memset(block, 0, size);
}

} // namespace

void *kor_nvm_calloc(size_t count, size_t size)
{
    CALLED("%zu %zu", count, size);
    return zeroed(count * size);
}

void *kor_nvm_malloc(size_t size)
{
    CALLED("%zu", size);
    return null_platform::recording ? zeroed(size) : std::malloc(size);
}

void kor_nvm_free(void *block)
{
    CALLED("%p", block);
    if (null_platform::recording)
        kept[sizes[block]].push_back(block);
    else
        std::free(block);
}

// Patterns. The object of one is no more than its number among those that live.

namespace {

uintptr_t live_patterns;

} // namespace

u32 ovk_ptn_new(u32 width, kor_ptn *pattern)
{
    CALLED("%u", width);
    *pattern = {.data = reinterpret_cast<kor_ptn_data *>(++live_patterns), .length = 0, .width = width};
    return 0;
}

u32 ovk_ptn_clear(kor_ptn *pattern)
{
    CALLED("%p %u", static_cast<void *>(pattern->data), pattern->width);
    pattern->length = 0;
    return 0;
}

u32 ovk_ptn_extend(kor_ptn *pattern, u32 value, u32 bits)
{
    CALLED("(%p %u %u) 0x%x %u", PATTERN(pattern), value, bits);
    pattern->length += bits;
    return 0;
}

u32 ovk_ptn_free(kor_ptn_data *data, u32 length, u32 width)
{
    CALLED("(%p %u %u)", static_cast<void *>(data), length, width);
    live_patterns -= data != nullptr ? 1 : 0;
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

void ovk_vptn_print(u32 count, const kor_vptn_field *)
{
    CALLED("%u", count);
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

// As many of the fields as the operation looks at.
#define FIELDS(vptn, count) show_fields(vptn, count).c_str()

namespace {

std::string show_fields(const kor_vptn_field *vptn, u32 count)
{
    std::string text;
    for (u32 i = 0; i < count; i++) {
        char field[64];
        std::snprintf(field, sizeof field, "%u (%p %u %u) ", vptn[i].header, PATTERN(&vptn[i].pattern));
        text += field;
    }
    return text;
}

} // namespace

OPERATION(kor_ptn_otreeset_append, "%u 0x%x %s(%u 0x%x 0x%x)",
          (rte, tree_id, FIELDS(vptn, count), ACTION(action)), kor_rte rte, u32 tree_id, u32 count,
          const kor_vptn_field *vptn, const kor_ptn_action *action)
OPERATION(kor_ptn_otreeset_insert, "%u 0x%x %u %s(%u 0x%x 0x%x)",
          (rte, tree_id, index, FIELDS(vptn, count), ACTION(action)), kor_rte rte, u32 tree_id, u32 index,
          u32 count, const kor_vptn_field *vptn, const kor_ptn_action *action)
OPERATION(kor_ptn_otreeset_delete, "%u 0x%x %u %s", (rte, tree_id, index, FIELDS(vptn, 1)), kor_rte rte,
          u32 tree_id, u32 index, const kor_vptn_field *vptn)
OPERATION(kor_ptn_otreeset_clear, "%u 0x%x %s", (rte, tree_id, FIELDS(vptn, 1)), kor_rte rte, u32 tree_id,
          const kor_vptn_field *vptn)
OPERATION(kor_ptn_otreeset_build, "%u 0x%x %s", (rte, tree_id, FIELDS(vptn, 1)), kor_rte rte, u32 tree_id,
          const kor_vptn_field *vptn)

u32 kor_ptn_otreeset_novrules(kor_rte rte, u32 tree_id, const kor_vptn_field *vptn, u32 *count)
{
    CALLED("%u 0x%x %s", rte, tree_id, FIELDS(vptn, 1));
    *count = 1;
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

OPERATION(kor_se_state_set, "%u 0x%x %u %s", (rte, ns_id, offset, BYTES(buffer, size)), kor_rte rte,
          u32 ns_id, u32 offset, const void *buffer, u32 size)

// What is read stays as it comes: filling it is no work of the library's.
OPERATION(kor_se_state_get, "%u 0x%x %u %u", (rte, ns_id, offset, size), kor_rte rte, u32 ns_id, u32 offset,
          void *, u32 size)

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

OPERATION(kor_vp_flow_data_write, "0x%x %u %u %s", (vp, bank, index, BYTES(data, KOR_VP_FLOW_DATA_SIZE)),
          kor_vp vp, u32 bank, u32 index, const void *data)

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

OPERATION(ovk_sif_netDriver_demux_add, "%p 0x%x %u",
          (static_cast<void *>(parent), entry->entry_fn_id, entry->port_value), ovk_system *parent,
          const ovk_sif_demux_entry *entry)
OPERATION(ovk_sif_netDriver_demux_remove, "%p 0x%x %u",
          (static_cast<void *>(parent), entry->entry_fn_id, entry->port_value), ovk_system *parent,
          const ovk_sif_demux_entry *entry)

u32 ovk_sys_mac_channel_id_get(ovk_system *parent, u32 port, u32 *channel)
{
    CALLED("%p %u", static_cast<void *>(parent), port);
    *channel = KOR_GMAC1;
    return 0;
}

u32 ovk_sys_interface_id_alloc(ovk_system *parent, u32 *id)
{
    CALLED("%p", static_cast<void *>(parent));
    *id = some_id;
    return 0;
}

OPERATION(ovk_sys_interface_id_free, "%p 0x%x", (static_cast<void *>(parent), id), ovk_system *parent,
          u32 id)
