// SPDX-License-Identifier: Apache-2.0
// Public calls from many threads. Each test is worth most under the thread sanitizer.
#include "support.h"

#include <atomic>
#include <chrono>
#include <latch>
#include <thread>

namespace {

using namespace test;

class Threads : public HostTest {};

TEST_F(Threads, CallsFailUntilInitialisationHasSucceeded)
{
    constexpr u32 callers = 3;
    for (const bool fails : {true, false}) {
        sim::Host target;
        std::vector<u32> statuses[callers]; // of each, in order, without repetitions
        std::latch first_calls(callers);
        std::atomic<bool> is_over = false;
        const auto caller = [&](u32 number) {
            std::vector<u32> &seen = statuses[number];
            for (bool was_over = false; !was_over;) {
                was_over = is_over;
                const u32 status = ovk_ethernet_log_enable(target.module(), 0x1000u << number);
                if (seen.empty())
                    first_calls.count_down();
                if (seen.empty() || seen.back() != status)
                    seen.push_back(status);
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        };
        if (fails) // in its last step
            sim::faults::fail("kor_gatr_switch_bridge_entry_learn");
        lines_of([&] { // a refused call prints at any mask
            std::vector<std::jthread> threads;
            for (u32 number = 0; number < callers; number++)
                threads.emplace_back(caller, number);
            first_calls.wait();
            EXPECT_EQ(ovk_ethernet_init(target.module()), fails ? 153u : 0u);
            is_over = true;
        });
        for (const std::vector<u32> &seen : statuses)
            EXPECT_EQ(seen, fails ? std::vector<u32>{1} : (std::vector<u32>{1, 0}));
        EXPECT_EQ(target.module()->log_mask, fails ? 0u : 0x7000u);
        EXPECT_EQ(sim::lock_depth(target.lock()), 0u);
    }
}

TEST_F(Threads, CallsOnOneModuleAndOnTwoDontDisturbEachOther)
{
    constexpr u32 workers = 3; // on each module
    constexpr u32 rounds = 100;
    sim::Host other;
    ovk_module *const modules[] = {module(), other.module()};
    for (ovk_module *target : modules)
        ASSERT_EQ(ovk_ethernet_init(target), 0u);
    const std::string start[] = {host().image(), other.image()};

    const auto action = [](u32 number, u32 round) {
        ovk_ethernet_exception_action out = {.type = 2, .send_to_cpu = {}};
        out.send_to_cpu.cpu_param = number << 8 | round;
        return out;
    };
    // Each worker has a type and a log bit of its own, and fights the others for type 12.
    std::latch start_line(2 * workers);
    const auto work = [&](ovk_module *target, u32 number) {
        start_line.arrive_and_wait();
        for (u32 round = 1; round <= rounds; round++) {
            const auto record = action(number, round);
            EXPECT_EQ(ovk_ethernet_exception_configure(target, 0, number, &record), 0u);
            EXPECT_EQ(ovk_ethernet_exception_configure(target, 0, 12, &record), 0u);
            EXPECT_EQ(ovk_ethernet_log_disable(target, 0x1000u << number), 0u);
            EXPECT_EQ(ovk_ethernet_service_function_update(target), 0u);
            EXPECT_EQ(ovk_ethernet_log_enable(target, 0x1000u << number), 0u);
        }
    };
    {
        std::vector<std::jthread> threads;
        for (ovk_module *target : modules)
            for (u32 number = 1; number <= workers; number++)
                threads.emplace_back(work, target, number);
    }
    const auto param = [](ovk_module *target, u32 type) {
        const auto rule = sim::rule(target->rte_handle, "Get_cpu_path_param", {{0x800000 | type, 24}});
        return rule ? rule->w1 : 0;
    };
    const ovk_ethernet_exception_action drop = {.type = 1, .send_to_cpu = {}};
    for (ovk_module *target : modules) {
        EXPECT_EQ(target->log_mask, 0xe000u);
        EXPECT_EQ(sim::rules(target->rte_handle, "Exception_Handler_lookup").size(), workers + 1);
        for (u32 number = 1; number <= workers; number++)
            EXPECT_EQ(param(target, number), number << 8 | rounds);
        EXPECT_EQ(param(target, 12) & 0xff, rounds);
        for (const u32 type : {1u, 2u, 3u, 12u})
            EXPECT_EQ(ovk_ethernet_exception_configure(target, 0, type, &drop), 0u);
    }
    EXPECT_EQ(sim::image_diff(start[0], host().image()), Lines{});
    EXPECT_EQ(sim::image_diff(start[1], other.image()), Lines{});
    {
        std::vector<std::jthread> threads;
        for (ovk_module *target : modules)
            threads.emplace_back([target] { EXPECT_EQ(ovk_ethernet_shutdown(target), 0u); });
    }
    for (ovk_module *target : modules)
        EXPECT_EQ(target->module_object, nullptr);
    EXPECT_EQ(sim::lock_depth(other.lock()), 0u);
}

TEST_F(Threads, PortsComeAndGoBesideEachOther)
{
    ASSERT_EQ(ovk_ethernet_init(module()), 0u);
    const size_t memory = sim::heap::live_bytes();
    std::atomic<u32> won = 0;
    const auto work = [&](u32 number) {
        const auto own = port_attrs(number, 2), contested = port_attrs(0x20, 4);
        for (u32 round = 0; round < 40; round++) {
            handle port = nullptr, prize = nullptr;
            ovk_eth_port_stats stats;
            EXPECT_EQ(ovk_ethernet_interface_create(module(), &own, &port), 0u);
            EXPECT_EQ(ovk_ethernet_vlan_id_add(module(), port, round, 5), 0u);
            EXPECT_EQ(ovk_ethernet_port_statistics_get(module(), port, &stats, 1), 0u);
            const u32 status = ovk_ethernet_interface_create(module(), &contested, &prize);
            EXPECT_EQ(status, prize != nullptr ? 0u : 0x2000027u);
            if (prize != nullptr) {
                EXPECT_EQ(ovk_ethernet_interface_delete(module(), prize), 0u);
                won++;
            }
            EXPECT_EQ(ovk_ethernet_vlan_id_del(module(), port, round, 5), 0u);
            EXPECT_EQ(ovk_ethernet_interface_delete(module(), port), 0u);
        }
    };
    {
        std::vector<std::jthread> threads;
        for (const u32 number : {0x10u, 0x11u, 0x12u})
            threads.emplace_back(work, number);
    }
    EXPECT_GE(won, 1u);
    EXPECT_EQ(sim::heap::live_bytes(), memory);
    EXPECT_EQ(sim::ids_in_use(host().rte(), "interface_ids"), std::vector<u32>{});
}

} // namespace
