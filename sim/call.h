// SPDX-License-Identifier: Apache-2.0
/*
 * What all platform operations have in common.
 *
 * platform<"name">(With{arguments to journal}, body) counts the call, takes the process-wide lock, writes
 * the journal, fires a fault, runs the body, and turns whatever the body throws into a status. wrong()
 * inside a body records a misuse and ends the call. Light operations, which touch nothing but their
 * caller's own object, go without the lock while neither journal nor faults are on.
 */
#ifndef OVK_SIM_CALL_H
#define OVK_SIM_CALL_H

#include "core.h"
#include "kor_otreeset.h"
#include "world.h"

#include <atomic>
#include <mutex>
#include <tuple>
#include <type_traits>

namespace sim {

enum class Group : u8 {
    read,  /* those that clear what they read too, and a wait */
    write, /* changes a chip's or the host's state */
    pattern,
    heap,
    lock,
    log
};

struct Operation {
    std::string_view name;
    Group group;
    bool faultable = true;
    bool light = false;
};

inline constexpr Operation operations[] = {
    {"kor_gatr_broadcast_filter_set", Group::write},
    {"kor_gatr_common_dscp_cos_set", Group::write},
    {"kor_gatr_common_vps_bridging_vp_get", Group::read},
    {"kor_gatr_common_vps_bridging_vp_set", Group::write},
    {"kor_gatr_crc_set", Group::write},
    {"kor_gatr_mac_addr_set", Group::write},
    {"kor_gatr_mac_flow_ctrl_set", Group::write},
    {"kor_gatr_mac_statistics_get", Group::read},
    {"kor_gatr_port_counter_reg_get", Group::read},
    {"kor_gatr_port_counter_reg_mode_set", Group::write},
    {"kor_gatr_port_default_vlan_set", Group::write},
    {"kor_gatr_port_enable_get", Group::read},
    {"kor_gatr_port_enable_set", Group::write},
    {"kor_gatr_port_ingress_options_get", Group::read},
    {"kor_gatr_port_ingress_options_set", Group::write},
    {"kor_gatr_port_ingress_parsing_options_get", Group::read},
    {"kor_gatr_port_ingress_parsing_options_set", Group::write},
    {"kor_gatr_port_ingress_qinq_cvlan_map_rem", Group::write},
    {"kor_gatr_port_ingress_qinq_cvlan_map_set", Group::write},
    {"kor_gatr_port_ingress_vlan_rem", Group::write},
    {"kor_gatr_port_ingress_vlan_set", Group::write},
    {"kor_gatr_port_vp_set", Group::write},
    {"kor_gatr_qinq_set", Group::write},
    {"kor_gatr_switch_acl_build", Group::write},
    {"kor_gatr_switch_acl_cos_to_dscp_map_set", Group::write},
    {"kor_gatr_switch_acl_port_cfg_get", Group::read},
    {"kor_gatr_switch_acl_port_cfg_set", Group::write},
    {"kor_gatr_switch_bridge_age_hysteresis_set", Group::write},
    {"kor_gatr_switch_bridge_destination_vps_set", Group::write},
    {"kor_gatr_switch_bridge_entry_learn", Group::write},
    {"kor_gatr_switch_bridge_entry_unlearn", Group::write},
    {"kor_gatr_switch_bridge_port_attrs_get", Group::read},
    {"kor_gatr_switch_bridge_port_attrs_set", Group::write},
    {"kor_gatr_switch_bridge_port_learn_attrs_get", Group::read},
    {"kor_gatr_switch_bridge_port_learn_attrs_set", Group::write},
    {"kor_gatr_switch_bridge_port_lport_set", Group::write},
    {"kor_gatr_switch_bridge_source_port_vps_set", Group::write},
    {"kor_gatr_switch_bridge_unknown_multicast_set", Group::write},
    {"kor_gatr_switch_bridge_vlan_vps_get", Group::read},
    {"kor_gatr_switch_bridge_vlan_vps_set", Group::write},
    {"kor_gatr_tag_config_get", Group::read},
    {"kor_gatr_tag_config_set", Group::write},
    {"kor_gatr_tag_enable_set", Group::write},
    {"kor_gatr_unicast_filter_enable", Group::write},
    {"kor_gatr_unicast_filter_set", Group::write},
    {"kor_gettime", Group::log},
    {"kor_mac_speed_duplex_get", Group::read},
    {"kor_mac_speed_duplex_set", Group::write},
    {"kor_nvm_calloc", Group::heap},
    {"kor_nvm_free", Group::heap, false},
    {"kor_nvm_malloc", Group::heap},
    {"kor_ptn_learn", Group::write},
    {"kor_ptn_otreeset_append", Group::write},
    {"kor_ptn_otreeset_build", Group::write},
    {"kor_ptn_otreeset_clear", Group::write},
    {"kor_ptn_otreeset_delete", Group::write},
    {"kor_ptn_otreeset_insert", Group::write},
    {"kor_ptn_otreeset_novrules", Group::read},
    {"kor_ptn_symbol_get_id", Group::read},
    {"kor_ptn_unlearn", Group::write},
    {"kor_qsh_shared_param_mod", Group::write},
    {"kor_rsrc_allocate_fixed", Group::write},
    {"kor_rsrc_create", Group::write},
    {"kor_rsrc_destroy", Group::write},
    {"kor_rsrc_find", Group::read},
    {"kor_rsrc_free", Group::write},
    {"kor_rsrc_query", Group::read},
    {"kor_se_state_get", Group::read},
    {"kor_se_state_set", Group::write},
    {"kor_sem_init", Group::lock},
    {"kor_sem_post", Group::lock},
    {"kor_status_get", Group::log, false},
    {"kor_subnet_add_subnet", Group::write},
    {"kor_subnet_create", Group::write},
    {"kor_subnet_del_subnet", Group::write},
    {"kor_subnet_destroy", Group::write},
    {"kor_subnet_find_higher_subnet", Group::read},
    {"kor_usleep", Group::read},
    {"kor_vp_flow_data_write", Group::write},
    {"kor_vp_handle_get_expander_ethernet_switch", Group::read},
    {"kor_vp_handle_get_gatr_ethernet_hsw_default", Group::read},
    {"kor_vp_handle_get_gatr_ethernet_hsw_flood", Group::read},
    {"kor_vp_handle_get_gatr_ethernet_hsw_switch", Group::read},
    {"kor_vp_handle_get_tvu_ethernet_egress_encap", Group::read},
    {"kor_vp_handle_get_tvu_ethernet_egress_encap_ipv4", Group::read},
    {"ovk_byte_string_print", Group::log, false},
    {"ovk_lttng_fn_ptr_get", Group::log, true, true},
    {"ovk_lttng_trace_sif_force_error", Group::log, false},
    {"ovk_module_service_function_register", Group::write},
    {"ovk_module_service_function_update", Group::write},
    {"ovk_ptn_action_print", Group::log, false},
    {"ovk_ptn_clear", Group::pattern, true, true},
    {"ovk_ptn_extend", Group::pattern, true, true},
    {"ovk_ptn_free", Group::pattern},
    {"ovk_ptn_new", Group::pattern},
    {"ovk_ptn_print", Group::log, false},
    {"ovk_qos_queue_id_get", Group::read},
    {"ovk_sif_max_subnet_entry_sz_get", Group::read},
    {"ovk_sif_netDriver_demux_add", Group::write},
    {"ovk_sif_netDriver_demux_remove", Group::write},
    {"ovk_sys_interface_id_alloc", Group::write},
    {"ovk_sys_interface_id_free", Group::write},
    {"ovk_sys_mac_channel_id_get", Group::read},
    {"ovk_sys_sem_lock_wait", Group::lock},
    {"ovk_sys_status_get", Group::log, false},
    {"ovk_vptn_print", Group::log, false},
};

/* Index of an operation; std::size(operations) when there is none. */
constexpr u32 operation_index(std::string_view name)
{
    u32 index = 0;
    while (index < std::size(operations) && operations[index].name != name)
        ++index;
    return index;
}

/* Thrown by wrong(). */
struct Misuse {
    std::string text;
};

[[noreturn]] void wrong(const char *format, ...) __attribute__((format(printf, 1, 2)));

/* `pointer`, which the operation can't do without. */
template <class T>
T *given(T *pointer, const char *what)
{
    if (!pointer)
        wrong("null %s", what);
    return pointer;
}

std::string format(const char *format, ...) __attribute__((format(printf, 1, 2)));

/* Arguments as the journal shows them. */
struct TreeArg {
    kor_rte rte;
    u32 id;
};
struct ActionArg {
    kor_rte rte;
    const kor_ptn_action *action;
};
struct BytesArg {
    const void *bytes;
    std::size_t count;
};
struct NamespaceArg {
    kor_rsrc handle;
};
struct VptnArg {
    u32 count;
    const kor_vptn_field *fields;
};
struct BlockArg {
    const void *block;
};
struct LockArg {
    const kor_sem *lock;
};
std::string show(TreeArg tree);
std::string show(ActionArg action);
std::string show(BytesArg bytes);
std::string show(NamespaceArg ns);
std::string show(VptnArg vptn);
std::string show(BlockArg block);
std::string show(LockArg lock);
std::string show(const kor_ptn *pattern);
std::string show(const kor_ptn_action *action);
std::string show(const ovk_module *module);
std::string show(const char *text);
template <class Word>
requires std::is_integral_v<Word> std::string show(Word word)
{
    return format("0x%llx", static_cast<unsigned long long>(word));
}

template <class... Args>
struct With {
    std::tuple<Args...> args;
    explicit With(Args... given_args) : args(given_args...) {}
    std::string text() const
    {
        std::string out;
        std::apply([&](const auto &...arg) { ((out += out.empty() ? "" : ", ", out += show(arg)), ...); },
                   args);
        return out;
    }
};

extern std::atomic<bool> watching; /* the journal is on or a fault is armed */
extern std::array<std::atomic<u64>, std::size(operations)> counts;

class Call {
  public:
    Call(u32 op, bool locked) : op_(op), guard_(world_mutex(), std::defer_lock)
    {
        if (locked)
            guard_.lock();
    }
    std::unique_lock<std::mutex> &guard() { return guard_; }
    void record(const std::string &arguments); /* into the journal */
    u32 injected() const;                      /* status of the fault that fires now, or 0 */
    u32 done(u32 status) const;                /* marks the journal's entry when the call failed */
    void misused(const Misuse &what);

  private:
    u32 op_;
    std::unique_lock<std::mutex> guard_;
    std::size_t entry_ = ~std::size_t{0};
};

bool journalling();

template <std::size_t size>
struct Name {
    char text[size];
    consteval Name(
        const char (&literal)[size]) // NOLINT(google-explicit-constructor): it stands for the literal
    {
        for (std::size_t i = 0; i < size; ++i)
            text[i] = literal[i];
    }
};

template <Name name, class... Args, class Body>
auto platform(const With<Args...> &with, Body &&body) noexcept
{
    constexpr u32 op = operation_index(name.text);
    static_assert(op < std::size(operations), "operation isn't listed");
    constexpr bool takes_call = std::is_invocable_v<Body &, Call &>;
    using Result = typename std::conditional_t<takes_call, std::invoke_result<Body &, Call &>,
                                               std::invoke_result<Body &>>::type;
    constexpr bool is_status = std::is_same_v<Result, u32>;
    static_assert(operations[op].faultable == (is_status || std::is_same_v<Result, void *>));

    counts[op].fetch_add(1, std::memory_order_relaxed);
    const bool watched = watching.load(std::memory_order_relaxed);
    Call call(op, watched || !operations[op].light);
    const auto failed = [&call]([[maybe_unused]] u32 status) -> Result {
        call.done(status);
        if constexpr (is_status)
            return status;
        else if constexpr (!std::is_void_v<Result>)
            return Result{};
    };
    try {
        if (watched) {
            if (journalling())
                call.record(with.text());
            if (const u32 status = operations[op].faultable ? call.injected() : 0)
                return failed(status);
        }
        if constexpr (takes_call)
            return is_status && watched ? call.done(body(call)) : body(call);
        else if constexpr (is_status)
            return watched ? call.done(body()) : body();
        else
            return body();
    } catch (const Misuse &what) {
        call.misused(what);
        return failed(status_misuse);
    } catch (const std::exception &) {
        return failed(status_exhausted);
    }
}

} // namespace sim

#endif
