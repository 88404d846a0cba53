// SPDX-License-Identifier: Apache-2.0
//
// What every public call does around its body. The calls here stand for all of them.
#include "support.h"

namespace {

using namespace test;
using FrameWithoutModule = HostTest;
using Frame = ModuleTest;

struct public_call {
    u32 (*call)(ovk_module *module);
    const char *refusal;
};

const public_call public_calls[] = {
    {[](ovk_module *m) { return ovk_ethernet_log_level_set(m, 0x2f); },
     "Failed to set Ethernet log-level 0x2f"},
    {[](ovk_module *m) { return ovk_ethernet_log_enable(m, 0x40); }, "Failed to enable log 0x40"},
    {[](ovk_module *m) { return ovk_ethernet_log_disable(m, 0x40); }, "Failed to disable log 0x40"},
    {[](ovk_module *m) { return ovk_ethernet_sys_log(m, 22); }, "Failed to set log-level 0x16"},
    {[](ovk_module *m) { return ovk_ethernet_exception_configure(m, 2, 6, nullptr); },
     "Failed to configure OVK_ETHERNET_EXCEPTION_ACTION_TYPE_UNKNOWN action for "
     "OVK_ETHERNET_EXCEPTION_TYPE_NO_ENCAP_FLOW_FOUND exception type"},
    {ovk_ethernet_shutdown, "Ethernet module failed to shutdown"},
    {ovk_ethernet_service_function_update, "Ethernet module failed to register service fns"},
    {[](ovk_module *m) { return ovk_ethernet_interface_create(m, nullptr, nullptr); },
     "Failed to create interface"},
    {[](ovk_module *m) { return ovk_ethernet_output_rate_set(m, nullptr, 2); },
     "Failed to set Interface 0x00000000 at rate OVK_ETHERNET_SPEED_100M"},
    // Those that say of a bad module something else than of a failure.
    {[](ovk_module *m) { return ovk_ethernet_port_number_get(m, nullptr, nullptr); },
     "Failed to get the port for interface handle 0x00000000"},
    {[](ovk_module *m) { return ovk_ethernet_interface_handle_get(m, 7, nullptr); },
     "Failed to get interface handle for port 7"},
    {[](ovk_module *m) { return ovk_ethernet_interface_delete(m, nullptr); },
     "Failed to delete interface handle 0x00000000"},
    {[](ovk_module *m) { return ovk_ethernet_vlan_id_add(m, nullptr, 9, 1); },
     "Failed to add VLAN ID 0x0009 for Interface 0x00000000"},
    {[](ovk_module *m) { return ovk_ethernet_port_egress_vlan_config(m, nullptr, 1, 1, 9, 0); },
     "Failed to add VLAN ID 0x0009 for Interface 0x00000000"},
    {[](ovk_module *m) { return ovk_ethernet_mac_aging_timer_config(m, nullptr, 0); },
     "Failed to get the port for interface handle 0x00000000"},
};

TEST_F(FrameWithoutModule, BadModuleHandleIsRefusedWithTwoLinesAtAnyMask)
{
    static ovk_eth_module_object dead; // its magic is zero
    ovk_module without_object = *module();
    ovk_module with_dead_object = *module();
    with_dead_object.module_object = &dead;
    sim::journal_on(true);
    sim::traces::on(true);

    for (ovk_module *bad : {static_cast<ovk_module *>(nullptr), &without_object, &with_dead_object})
        for (const u32 mask : {0u, ~0u})
            for (const auto &[call, refusal] : public_calls) {
                SCOPED_TRACE(refusal);
                host().parent()->global_log_mask = mask;
                if (bad != nullptr)
                    bad->log_mask = mask;
                const std::string first = "Invalid Ethernet module handle " + hex(bad);
                const std::string head = "[ovk_unknown_log: ERROR] ";
                u32 status = 0;

                sim::journal::clear();
                sim::traces::clear();
                EXPECT_EQ(messages_of([&] { status = call(bad); }), (Lines{head + first, head + refusal}));
                EXPECT_EQ(status, 1u);
                EXPECT_EQ(traced(),
                          (Lines{"65535 " + first + "\n", std::string("65535 ") + refusal + "\n"}));
                // Nothing is locked, and no entry or exit is traced.
                EXPECT_EQ(sim::journal::ops(), Lines(2, "ovk_lttng_trace_sif_force_error"));
            }
}

TEST_F(FrameWithoutModule, WorksWithoutParentAndLock)
{
    module()->module_lock = nullptr;
    module()->parent = nullptr;
    sim::journal_on(true);
    EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    EXPECT_EQ(ovk_ethernet_log_level_set(module(), 3), 0u);
    // The module's own mask alone decides, and the status text is to be had without a parent.
    EXPECT_EQ(messages_of([&] { EXPECT_EQ(ovk_ethernet_sys_log(module(), 2), 15u); }),
              failure("Failed to set log-level 2", 15));
    EXPECT_EQ(ovk_ethernet_service_function_update(module()), 0u);
    EXPECT_EQ(ovk_ethernet_shutdown(module()), 0u);
    EXPECT_EQ(sim::journal::ops("ovk_sys_sem"), Lines{});
    EXPECT_EQ(sim::journal::ops("kor_sem_post"), Lines{});
}

TEST_F(Frame, RunsInOrderAroundTheBody)
{
    sim::journal_on(true);
    sim::traces::on(true);
    EXPECT_EQ(ovk_ethernet_log_enable(module(), 0), 0u);
    EXPECT_EQ(sim::journal::entries(),
              (Lines{"ovk_lttng_fn_ptr_get(0x11, 0x8)", "ovk_sys_sem_lock_wait(lock 1)",
                     "ovk_lttng_fn_ptr_get(0x11, 0x0)", "kor_sem_post(lock 1)",
                     "ovk_lttng_fn_ptr_get(0x11, 0x9)"}));

    // Functions that the body calls have the logging part.
    sim::traces::clear();
    EXPECT_EQ(ovk_ethernet_sys_log(module(), 2), 15u);
    EXPECT_EQ(traced(),
              (Lines{"8 ovk_ethernet_sys_log", "8 ovk_eth_map_sys_log",
                     "6 Unsupported log-level in Ethernet!", "9 ovk_eth_map_sys_log",
                     "2 Failed to set log-level 2\n", "2 not supported\n", "9 ovk_ethernet_sys_log"}));
}

struct lock_case {
    const char *operation;
    const char *report;
    u32 status;
    u32 done; // bits of the mask that the call then has set
    u32 (*call)(ovk_module *module);
    Lines last; // of the traces
};

u32 enable(ovk_module *module)
{
    return ovk_ethernet_log_enable(module, 0x8000);
}

// clang-format off
const lock_case lock_cases[] = {
    // Returned at once: the body doesn't run, and there is no status line and no exit.
    {"ovk_sys_sem_lock_wait", "Failed to acquire lock", 0x300A5, 0, enable,
     {"8 ovk_ethernet_log_enable", "2 Failed to acquire lock\n"}},
    {"kor_sem_post", "Failed to release lock", 0x100A5, 0x8000, enable,
     {"2 Failed to release lock\n", "9 ovk_ethernet_log_enable"}},
    // The body's own failure is lost to the caller.
    {"kor_sem_post", "Failed to release lock", 0x100A5, 0,
     [](ovk_module *m) { return ovk_ethernet_sys_log(m, 2); },
     {"2 not supported\n", "2 Failed to release lock\n", "9 ovk_ethernet_sys_log"}},
};
// clang-format on

// It is the system module's to report: its mask and the parent's count, the module's own doesn't.
constexpr struct {
    u32 global, system, own;
    bool printed;
} lock_masks[] = {{0, 0, 0xF, false}, {2, 0, 0, false}, {3, 0, 0, true}, {0, 2, 0, false}, {0, 3, 0, true}};

TEST_F(Frame, LockFailureIsReportedByTheSystemModule)
{
    sim::traces::on(true);
    for (const lock_case &failing : lock_cases)
        for (const auto &masks : lock_masks) {
            SCOPED_TRACE(failing.operation + std::to_string(masks.global + masks.system));
            host().parent()->global_log_mask = masks.global;
            host().sys()->log_mask = masks.system;
            module()->log_mask = masks.own;
            sim::traces::clear();
            sim::faults::fail(failing.operation);
            u32 status = 0;
            const Lines lines = messages_of([&] { status = failing.call(module()); });
            EXPECT_EQ(status, failing.status);
            EXPECT_EQ(module()->log_mask, masks.own | failing.done);
            if (sim::lock_depth(host().lock()) != 0) {
                EXPECT_EQ(kor_sem_post(host().lock()), 0u); // the host's way out
            }
            // Traced with its newline, printed bare.
            Lines events = traced();
            events.erase(events.begin(), events.end() - static_cast<long>(failing.last.size()));
            EXPECT_EQ(events, failing.last);
            const std::string line = std::string("[ovk_sys_log: ERROR] ") + failing.report;
            EXPECT_EQ(std::count(lines.begin(), lines.end(), line), masks.printed);
            for (const sim::traces::Record &record : sim::traces::records()) {
                const bool report = record.text.starts_with(failing.report);
                EXPECT_EQ(record.module, report ? host().sys() : module());
                EXPECT_EQ(record.trace_ctx,
                          report ? sim::Host::sys_trace_ctx : sim::Host::module_trace_ctx);
            }
        }
}

// A handle whose magic word would stand at address null: a read would end the process.
TEST_F(Frame, HandleTestsRefuseTheOneAddressThatWrapsToNull)
{
    auto *wild_if = reinterpret_cast<ovk_eth_intf *>(uintptr_t{0} - offsetof(ovk_eth_intf, if_magic));
    auto *wild_flow = reinterpret_cast<ovk_eth_flow *>(uintptr_t{0} - offsetof(ovk_eth_flow, flow_magic));
    ovk_eth_intf intf = {};
    ovk_eth_flow flow = {};
    for (ovk_eth_intf *handle : {static_cast<ovk_eth_intf *>(nullptr), wild_if, &intf}) {
        expect([&] { return ovk_ethernet_interface_delete(module(), handle); }, 0x2000003,
               "Invalid Interface handle " + hex(handle) + "|Failed to delete interface " + hex(handle));
    }
    for (ovk_eth_flow *handle : {static_cast<ovk_eth_flow *>(nullptr), wild_flow, &flow})
        EXPECT_FALSE(ovk_eth_valid_flow_handle(handle));
    intf.if_magic = 0x721ad41f;
    flow.flow_magic = 0x721ad4f0;
    EXPECT_TRUE(ovk_eth_valid_if_handle(&intf));
    EXPECT_TRUE(ovk_eth_valid_flow_handle(&flow));
}

} // namespace
