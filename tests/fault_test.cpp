// SPDX-License-Identifier: Apache-2.0
//
// Each platform call that a public call makes fails once. The table says what the public call then returns.
#include <functional>

#include "support.h"

namespace {

using namespace test;

struct outcome {
    const char *operation; // or the beginning of several
    u32 status;
};

constexpr u32 own = sim::status_injected; // handed on as it came
constexpr u32 ignored = 0;                // the outcome isn't looked at

// clang-format off
constexpr outcome outcomes[] = {
    {"ovk_sys_sem_lock_wait", 0x300A5}, {"kor_sem_post", 0x100A5}, {"ovk_lttng_fn_ptr_get", ignored},
    {"kor_gettime", ignored}, {"kor_nvm_malloc", ignored}, {"kor_sem_init", ignored},
    {"kor_vp_handle_get_", 20},
    {"kor_rsrc_create", 26}, {"kor_rsrc_find", 25}, {"kor_rsrc_query", 28}, {"kor_rsrc_allocate_fixed", 29},
    {"kor_rsrc_free", 30}, {"kor_rsrc_destroy", 27}, {"kor_se_state_set", 44},
    {"kor_ptn_symbol_get_id", 63}, {"kor_ptn_learn", 64}, {"kor_ptn_unlearn", 65},
    {"kor_subnet_create", 58}, {"kor_subnet_add_subnet", 60}, {"kor_subnet_destroy", 59},
    {"ovk_ptn_clear", own}, {"ovk_ptn_extend", own}, {"ovk_qos_queue_id_get", own},
    {"ovk_sif_max_subnet_entry_sz_get", ignored},
    {"ovk_module_service_function_", own},
    {"kor_gatr_switch_bridge_age_hysteresis_set", own}, {"kor_gatr_common_dscp_cos_set", own},
    {"kor_gatr_switch_acl_cos_to_dscp_map_set", own},
    {"kor_gatr_switch_bridge_entry_learn", 153}, {"kor_gatr_switch_bridge_entry_unlearn", 154},
};
// clang-format on

u32 expected_status(const std::string &failed)
{
    const auto count = [](const char *operation) { return sim::journal::count(operation); };
    // The object is needed, buckets aren't. (Nodes lie beyond a sweep.)
    if (failed == "kor_nvm_calloc")
        return count(failed.c_str()) == 1 ? 18 : ignored;
    // A tree's own pattern, or the temporary one behind the making of its database.
    if (failed == "ovk_ptn_new")
        return count("kor_subnet_create") == count("ovk_sif_max_subnet_entry_sz_get") ? 18 : own;
    // At start the temporary pattern, and the only call so far.
    if (failed == "ovk_ptn_free")
        return count("ovk_sys_sem_lock_wait") == 1 ? ignored : own;
    for (const outcome &row : outcomes)
        if (failed.starts_with(row.operation))
            return row.status;
    ADD_FAILURE() << "nobody says what it gives";
    return 0;
}

enum class effect : u8 {
    starts,
    stops,
    stays
};

struct plan {
    const char *name;
    u32 floor; // with fewer faults than this, the sweep has lost its way
    effect on_module;
    std::function<u32(ovk_module *)> call;
    std::function<void(ovk_module *)> before = [](ovk_module *) {};
};

struct scenario {
    const plan &of;
    sim::Host host;
    u32 status = 0;

    explicit scenario(const plan &given) : of(given)
    {
        if (of.on_module != effect::starts) {
            EXPECT_EQ(ovk_ethernet_init(host.module()), 0u);
        }
        of.before(host.module());
    }
    void run()
    {
        lines_of([&] { status = of.call(host.module()); });
        host.module()->log_mask = 0;
    }
    void check(const sim::Fault *fault)
    {
        const std::string failed = fault != nullptr ? fault->operation : "nothing";
        SCOPED_TRACE(failed + " failed, call " + std::to_string(fault != nullptr ? fault->number : 0));
        EXPECT_EQ(status, fault != nullptr ? expected_status(failed) : 0u);
        EXPECT_EQ(sim::misuse(), Lines{});
        EXPECT_EQ(sim::lock_depth(host.lock()), failed == "kor_sem_post" ? 1u : 0u);

        // Of the rules, as many as went through, none of them taken back.
        const auto written = [&](const char *op) { return sim::journal::count(op) - (failed == op); };
        u64 rules = 0;
        for (const std::string &tree : sim::trees(host.rte()))
            for (const sim::Rule &rule : sim::rules(host.rte(), tree))
                rules += !rule.hole;
        EXPECT_EQ(rules, written("kor_ptn_learn") - written("kor_ptn_unlearn"));

        // A call that can't give the lock back has done its work.
        const bool done = status == 0 || status == 0x100A5;
        const bool works = of.on_module == effect::stays || done == (of.on_module == effect::starts);
        EXPECT_EQ(sim::heap::live_sizes()[sizeof(ovk_eth_module_object)], works);
        lines_of([&] { status = ovk_ethernet_log_level_set(host.module(), 0); });
        EXPECT_EQ(status, works ? 0u : 1u);
    }
};

// Some operations are called thousands of times: a few calls of each, then all of the others.
void sweep(const plan &of)
{
    const auto make = [&] { return scenario(of); };
    const u32 faults =
        sim::for_each_fault(make, {.except = {}, .per_operation = 3}) +
        sim::for_each_fault(make,
                            {.except = {"kor_nvm_calloc", "kor_se_state_set", "ovk_lttng_fn_ptr_get"}});
    testing::Test::RecordProperty(of.name, static_cast<int>(faults));
    EXPECT_GE(faults, of.floor) << of.name;
    sim::reset();
}

TEST(Fault, InitFreesTheObject)
{
    sweep({"init", 300, effect::starts, ovk_ethernet_init});
}

TEST(Fault, ShutdownKeepsTheHandle)
{
    sweep({"shutdown", 100, effect::stops, ovk_ethernet_shutdown});
}

TEST(Fault, ServiceUpdateKeepsTheHandle)
{
    sweep({"service_function_update", 20, effect::stays, ovk_ethernet_service_function_update});
}

TEST(Fault, ExceptionConfigureKeepsWhatWasWritten)
{
    using action_record = ovk_ethernet_exception_action;
    ovk_eth_intf port = {};
    port.if_magic = OVK_ETH_IF_MAGIC;
    port.if_type = INTERFACE_TYPE_PHY;
    const action_record to_cpu = {.type = 2, .send_to_cpu = {1, 2, {3, 4}, sim::first_queue}};
    struct row {
        const char *name;
        u32 floor;
        action_record action;
    };
    const row rows[] = {
        {"drop", 40, {.type = 1, .send_to_cpu = {}}},
        {"send_to_cpu", 40, to_cpu},
        {"send_to_bdl", 30, {.type = 3, .send_to_bdl = {1, 2, sim::first_queue}}},
        {"send_to_port", 20, {.type = 4, .send_to_port = {&port, 1, sim::first_queue}}},
        {"send_to_tvu_func", 20, {.type = 5, .send_to_tvu_func = {"ovk_ethernet.Discard_Pdu"}}}};
    for (const auto &[name, floor, given] : rows) {
        const auto configure = [](ovk_module *module, const action_record &action) {
            return ovk_ethernet_exception_configure(module, 2, 3, &action);
        };
        sweep({name, floor, effect::stays,
               [&, &action = given](ovk_module *module) { return configure(module, action); },
               [&, drops = given.type == 1](ovk_module *module) {
                   EXPECT_EQ(drops ? configure(module, to_cpu) : 0u, 0u);
                   module->log_mask = 0x1FF;
               }});
    }
}

} // namespace
