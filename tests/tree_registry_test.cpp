// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "ovk_eth_hw/tree_registry.h"
#include "ovk_eth_hw_helper/rule_engine.h"

namespace {

using namespace test;

constexpr u32 multicast = 23;

using TreeRegistry = HostTest;
using LiveTreeRegistry = ModuleTest;

TEST_F(LiveTreeRegistry, RecordsAgreeWithTheClassifiersProgramme)
{
    const kor_rte rte = host().rte();
    const Lines tree_list = sim::trees(rte);
    const std::set<std::string> trees(tree_list.begin(), tree_list.end());
    const Lines ordered_sets = sim::ordered_sets(rte);
    std::set<std::string> names;
    for (u32 index = 1; index < OVK_ETH_TREE_COUNT; index++) {
        eth_tree_info &info = ovk::object_of(module()).trees[index];
        ASSERT_NE(std::memchr(info.tree_name, 0, sizeof info.tree_name), nullptr);
        ASSERT_NE(std::memchr(info.default_name, 0, sizeof info.default_name), nullptr);
        SCOPED_TRACE(info.tree_name);
        names.insert(info.tree_name);

        u32 id = 0;
        EXPECT_EQ(kor_ptn_symbol_get_id(rte, info.tree_name, &id), 0u);
        EXPECT_EQ(info.tree_id, id);
        const auto is_ordered = std::ranges::count(ordered_sets, info.tree_name) == 1;
        EXPECT_EQ(trees.contains(info.tree_name) + is_ordered, info.key_bits != 0);
        EXPECT_EQ(info.dump_fn, nullptr);
        if (info.has_subnet_db == 1) {
            const auto root = sim::database_root(info.subnet_db);
            EXPECT_TRUE(root && sim::same(*root, info.default_action));
            EXPECT_TRUE(sim::database(info.subnet_db).empty());
        } else {
            EXPECT_EQ(info.subnet_db, 0u);
        }
        if (info.key_bits == 0) {
            EXPECT_EQ(info.input_pattern.data, nullptr);
            EXPECT_EQ(info.input_pattern.length + info.input_pattern.width, 0u);
            continue;
        }
        if (is_ordered)
            continue; // no rules of the engine's: its own test has it
        const sim::Answer miss = sim::lookup(rte, info.tree_name, {});
        EXPECT_EQ(miss.function, info.default_name);
        EXPECT_TRUE(sim::same(miss.action, info.default_action));
        // The classifier refuses a pattern that isn't of the tree's width.
        kor_ptn_action action = ovk::data_action(index, 7);
        EXPECT_EQ(ovk_eth_lpm_rule(module(), &info, OVK_ETH_ADD, &action), 0u);
        EXPECT_TRUE(sim::same(sim::lookup(rte, info.tree_name, {}).action, action));
        EXPECT_EQ(ovk_eth_lpm_rule(module(), &info, OVK_ETH_REMOVE, &action), 0u);
        EXPECT_TRUE(sim::same(sim::lookup(rte, info.tree_name, {}).action, info.default_action));
    }
    EXPECT_EQ(names.size(), 69u);
    EXPECT_TRUE(std::includes(names.begin(), names.end(), trees.begin(), trees.end()));
}

TEST_F(TreeRegistry, IndexThatIsNoneIsRefusedAndClearsTheDumpGroupsAlone)
{
    for (const u32 index : {0u, 70u, ~0u}) {
        auto before = std::make_unique<eth_tree_info>();
        std::memset(static_cast<void *>(before.get()), 0xA5, sizeof *before);
        auto info = std::make_unique<eth_tree_info>(*before);
        expect([&] { return ovk_eth_get_xgr_tree_info(module(), index, info.get()); }, 8,
               "Invalid XGR function");
        before->dump_groups = 0;
        EXPECT_EQ(std::memcmp(info.get(), before.get(), sizeof *info), 0);
        expect([&] { return ovk_ethernet_update_tree_info(module(), index, info.get()); }, 8,
               printed("Invalid XGR Tree function %d", static_cast<int>(index)));
        EXPECT_EQ(std::memcmp(info.get(), before.get(), sizeof *info), 0);
        // A good one replaces the stale address and nothing else.
        EXPECT_EQ(ovk_ethernet_update_tree_info(module(), multicast, info.get()), 0u);
        EXPECT_NE(info->dump_fn, before->dump_fn);
        before->dump_fn = info->dump_fn;
        EXPECT_EQ(std::memcmp(info.get(), before.get(), sizeof *info), 0);
    }
}

TEST_F(TreeRegistry, EachFailedStepHasItsStatusAndTakesTheTemporaryPatternBack)
{
    const std::string rte = "RTE Error: injected fault, Failed to ";
    const struct {
        const char *fault;
        u32 nth, status;
        std::string message;
        u32 patterns; // live afterwards
        bool has_database;
    } cases[] = {
        {"ovk_ptn_new", 1, 18, "Failed to allocate memory for input patternn", 0, false},
        {"kor_subnet_create", 1, 58, rte + "create subnet database", 1, false},
        {"ovk_ptn_new", 2, sim::status_injected, "Could not build the default input pattern", 1, true},
        {"kor_subnet_add_subnet", 1, 60, rte + "add default input pattern to subnet", 1, true},
        {nullptr, 0, 0, "", 1, true},
    };
    for (const auto &at : cases) {
        eth_tree_info info = {};
        const size_t patterns = sim::live_patterns();
        if (at.fault != nullptr)
            sim::faults::fail(at.fault, at.nth);
        expect([&] { return ovk_eth_get_xgr_tree_info(module(), multicast, &info); }, at.status,
               at.message);
        EXPECT_EQ(sim::live_patterns() - patterns, at.patterns) << at.message;
        EXPECT_EQ(info.subnet_db != 0, at.has_database);
    }
}

TEST_F(LiveTreeRegistry, FailedDestroyKeepsDatabaseAndPattern)
{
    eth_tree_info &info = tree(OVK_ETH_TREE_MULTICAST_LOOKUP);
    const size_t patterns = sim::live_patterns();
    sim::faults::fail("kor_subnet_destroy");
    EXPECT_EQ(ovk_eth_del_xgr_tree_info(module(), &info), 59u);
    EXPECT_EQ(info.has_subnet_db, 1u);
    EXPECT_TRUE(sim::database_root(info.subnet_db));
    EXPECT_EQ(sim::live_patterns(), patterns);
    // The pattern's own status is the call's.
    sim::faults::fail("ovk_ptn_free");
    EXPECT_EQ(ovk_eth_del_xgr_tree_info(module(), &info), sim::status_injected);
    EXPECT_EQ(info.has_subnet_db + info.subnet_db, 0u);
    EXPECT_EQ(ovk_eth_del_xgr_tree_info(module(), &info), 0u);
    EXPECT_EQ(sim::live_patterns(), patterns - 1);
}

} // namespace
