// SPDX-License-Identifier: Apache-2.0
//
// Each platform call that start and shutdown make fails once.
#include "support.h"

namespace {

using namespace test;

class Fault : public HostTest {
  protected:
    // A start needs its object but no bucket. It calls a failure of a tree's own pattern, not of the one
    // behind the making of its database, want of memory.
    static std::optional<u32> status_of_start(const std::string &failed)
    {
        const auto count = [](const char *operation) { return sim::journal::count(operation); };
        if (failed == "kor_nvm_calloc" && count("kor_nvm_calloc") > 1)
            return 0;
        if (failed == "ovk_ptn_new" &&
            count("kor_subnet_create") == count("ovk_sif_max_subnet_entry_sz_get"))
            return 18;
        return std::nullopt;
    }
    // Some operations are called thousands of times: a few calls of each, then all of the others.
    u32 sweep_both(const std::string &name, const std::function<u32(ovk_module *)> &call,
                   const std::function<void()> &prepare, bool works_when_done, const Lines &except)
    {
        const auto settle = [&](const std::string &, bool is_done) {
            const bool works = is_done == works_when_done;
            EXPECT_EQ(sim::heap::live_sizes()[sizeof(ovk_eth_module_object)], works);
            lines_of([&] { EXPECT_EQ(ovk_ethernet_log_level_set(module(), 0), works ? 0u : 1u); });
        };
        const auto run = [&] { return call(module()); };
        const Lines often = {"kor_nvm_calloc", "kor_se_state_set", "ovk_lttng_fn_ptr_get"};
        return sweep(name, run, prepare, settle, {.except = except, .per_operation = 3}, status_of_start) +
               sweep(name, run, prepare, settle, {.except = except + often}, status_of_start);
    }
};

TEST_F(Fault, InitFreesTheObject)
{
    const auto prepare = [&] { start_over(); };
    // With fewer faults, a sweep has lost its way.
    EXPECT_GE(sweep_both("init", ovk_ethernet_init, prepare, true, {}), 300u);
}

TEST_F(Fault, ShutdownKeepsTheHandle)
{
    const auto prepare = [&] {
        start_over();
        EXPECT_EQ(ovk_ethernet_init(module()), 0u);
    };
    // A pattern that isn't given back fails this call alone, and has tests of its own.
    EXPECT_GE(sweep_both("shutdown", ovk_ethernet_shutdown, prepare, false, {"ovk_ptn_free"}), 40u);
}

} // namespace
