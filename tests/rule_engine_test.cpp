// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <array>
#include <random>
#include <set>

#include "ovk_eth_hw/exception.h"
#include "ovk_eth_hw_helper/rule_engine.h"

namespace {

using namespace test;
using ovk::data_action;

// Prefixes are texts of '0' and '1' here, and actions are as the simulator words them.
using Rules = std::map<std::string, std::string>;

// What a tree is to answer: a list, scanned. A deletion from a tree without a database leaves the default
// standing in the rule's place, a hole, until a later rule covers it.
struct Model {
    std::string miss;
    bool leaves_holes;
    Rules rules{};
    std::set<std::string> holes{};

    std::string longest(const std::string &key, size_t limit) const
    {
        std::string best = miss;
        size_t length = 0;
        const auto consider = [&](const std::string &bits, const std::string &action) {
            if (key.starts_with(bits) && bits.size() <= limit && bits.size() >= length) {
                length = bits.size();
                best = action;
            }
        };
        for (const auto &[bits, action] : rules)
            consider(bits, action);
        for (const std::string &bits : holes)
            consider(bits, miss);
        return best;
    }
    std::string above(const std::string &bits) const
    {
        return bits.empty() ? miss : longest(bits, bits.size() - 1);
    }
    void learn(const std::string &bits, const std::string &action)
    {
        std::erase_if(holes, [&](const std::string &hole) { return hole.starts_with(bits); });
        rules[bits] = action;
    }
    void remove(const std::string &bits)
    {
        rules.erase(bits);
        if (leaves_holes)
            holes.insert(bits);
    }
};

class RuleEngine : public ModuleTest {
  protected:
    static constexpr ovk_eth_tree with_db = OVK_ETH_TREE_LOOKUP_INTF_PCP_POLICING_POLICY;
    static constexpr ovk_eth_tree without_db = OVK_ETH_TREE_GET_CPU_PATH_PARAM;
    const kor_ptn_action own = data_action(7, 8);
    const kor_ptn_action cover = data_action(1, 2); // of the rule that learn_cover() puts above the other
    const std::string bits = "101010111100";

    u32 apply(ovk_eth_tree index, const std::string &key_bits, u32 op, kor_ptn_action *action)
    {
        ovk::rule_key key(module(), index);
        for (size_t at = 0; at < key_bits.size(); at += 32) {
            const std::string field = key_bits.substr(at, 32);
            key.add(static_cast<u32>(std::stoul(field, nullptr, 2)), static_cast<u32>(field.size()));
        }
        EXPECT_EQ(key.status, 0u);
        const u32 status = ovk_eth_lpm_rule(module(), &tree(index), op, action);
        EXPECT_EQ(tree(index).input_pattern.width, tree(index).key_bits);
        return status;
    }
    u32 learn(ovk_eth_tree index, const std::string &key_bits, kor_ptn_action action)
    {
        return apply(index, key_bits, OVK_ETH_ADD, &action);
    }
    u32 remove(ovk_eth_tree index, const std::string &key_bits)
    {
        kor_ptn_action action = {};
        return apply(index, key_bits, OVK_ETH_REMOVE, &action);
    }
    void learn_cover() { ASSERT_EQ(learn(with_db, "1010", cover), 0u); }

    std::string text(const kor_ptn_action &action) { return sim::action_text(host().rte(), action); }
    std::string answer(ovk_eth_tree index, const std::string &key)
    {
        std::vector<sim::Field> fields;
        for (const char bit : key)
            fields.push_back({static_cast<u64>(bit - '0'), 1});
        return text(sim::lookup(host().rte(), tree(index).tree_name, fields).action);
    }
    Rules without_holes(const std::vector<sim::Rule> &rules)
    {
        Rules out;
        for (const sim::Rule &rule : rules) {
            std::string key;
            for (u32 bit = 0; bit < rule.key.length; bit++)
                key += static_cast<char>('0' + (rule.key.words[bit / 64] >> (63 - bit % 64) & 1));
            if (!rule.hole)
                out[key] = text(rule.action);
        }
        return out;
    }
    Rules in_tree(ovk_eth_tree index)
    {
        return without_holes(sim::rules(host().rte(), tree(index).tree_name));
    }
    Rules in_database(ovk_eth_tree index)
    {
        return tree(index).subnet_db != 0 ? without_holes(sim::database(tree(index).subnet_db)) : Rules{};
    }
};

class RandomRules : public RuleEngine, public testing::WithParamInterface<ovk_eth_tree> {};

TEST_P(RandomRules, AnswerAsANaiveListOfThemDoes)
{
    const ovk_eth_tree index = GetParam();
    const u32 width = tree(index).key_bits;
    const bool has_db = tree(index).has_subnet_db == 1;
    const kor_ptn_action miss = tree(index).default_action;
    const std::string start = host().image();
    std::mt19937 random(width);

    // Keys that differ from one another in few bits, so that prefixes nest and meet.
    Lines keys(1, std::string(width, '0'));
    while (keys.size() < 16) {
        keys.push_back(keys[random() % keys.size()]);
        keys.back()[random() % width] ^= 1;
    }
    const size_t lengths[] = {0, 1, width / 3, width / 2, width - 2, width - 1, width};
    Model model{text(miss), !has_db};

    const auto step = [&](const std::string &at, bool is_removal, const kor_ptn_action &given) {
        kor_ptn_action action = given;
        if (is_removal) {
            const bool succeeds = !has_db || model.rules.contains(at);
            ASSERT_EQ(apply(index, at, OVK_ETH_REMOVE, &action), succeeds ? 0u : 65u);
            ASSERT_EQ(text(action), has_db ? model.above(at) : text(given));
            if (succeeds)
                model.remove(at);
        } else {
            // Every operation but 2.
            ASSERT_EQ(apply(index, at, std::array{0u, 1u, 3u, ~0u}[random() % 4], &action), 0u);
            model.learn(at, text(given));
        }
        for (const std::string &key : keys)
            ASSERT_EQ(answer(index, key), model.longest(key, width)) << key;
        ASSERT_EQ(in_tree(index), model.rules);
        ASSERT_EQ(in_database(index), has_db ? model.rules : Rules{});
    };
    for (u32 count = 0; count < 400; ++count) {
        SCOPED_TRACE(count);
        const std::string at = keys[random() % keys.size()].substr(0, lengths[random() % 7]);
        // Few actions, the tree's default among them, so that neighbours may answer alike.
        const u32 word = random() % 4;
        const bool is_removal = random() % 2 != 0;
        ASSERT_NO_FATAL_FAILURE(step(at, is_removal, word != 0 ? data_action(word, 9) : miss));
    }
    const Rules left = model.rules;
    EXPECT_GT(left.size(), 9u);
    for (const auto &rule : left)
        ASSERT_NO_FATAL_FAILURE(step(rule.first, true, {}));
    EXPECT_EQ(changes_since(start), Lines{});
}

INSTANTIATE_TEST_SUITE_P(Trees, RandomRules,
                         testing::Values(OVK_ETH_TREE_LOOKUP_FLOW_ID,
                                         OVK_ETH_TREE_LOOKUP_INTF_PCP_POLICING_POLICY,
                                         OVK_ETH_TREE_GET_CPU_PATH_PARAM,
                                         OVK_ETH_TREE_PORT_QOS_POLICY_LOOKUP));

TEST_F(RuleEngine, EachFailureHasItsStatusAndLeavesWhatWasDone)
{
    struct Case {
        ovk_eth_tree index;
        u32 op;
        const char *fault;
        u32 status;
        const char *message;
        bool in_tree, in_database; // afterwards
        u32 then_delete;           // status of deleting the rule when the platform works again
    };
    constexpr Case cases[] = {
        {without_db, 1, "kor_ptn_learn", 64, "learn the input pattern", false, false, 0},
        {without_db, 2, "kor_ptn_unlearn", 65, "unlearn the input pattern", true, false, 0},
        {with_db, 1, "kor_ptn_learn", 64, "learn the input pattern", false, false, 65},
        {with_db, 1, "kor_subnet_add_subnet", 60, "add input pattern to subnet", true, false, 0},
        {with_db, 2, "kor_subnet_find_higher_subnet", 62, "find higher subnet", true, true, 0},
        {with_db, 2, "kor_ptn_unlearn", 65, "unlearn the input pattern", true, true, 0},
        {with_db, 2, "kor_subnet_del_subnet", 61, "delete from subnet database", false, true, 65},
    };
    learn_cover();
    const std::string before = host().image();
    for (const Case &at : cases) {
        SCOPED_TRACE(testing::Message() << at.index << ' ' << at.fault);
        const bool has_db = at.index == with_db;
        const bool removes = at.op == OVK_ETH_REMOVE;
        EXPECT_EQ(removes ? learn(at.index, bits, own) : 0u, 0u);
        kor_ptn_action action = own;
        sim::faults::fail(at.fault);
        expect([&] { return apply(at.index, bits, at.op, &action); }, at.status,
               std::string("RTE Error: injected fault, Failed to ") + at.message);
        const bool found = removes && has_db && at.status != KOR_E_SUBNET_FIND;
        EXPECT_EQ(text(action), text(found ? cover : own));
        EXPECT_EQ(in_tree(at.index).contains(bits), at.in_tree);
        EXPECT_EQ(in_database(at.index).contains(bits), at.in_database);
        const kor_ptn_action above = has_db ? cover : tree(at.index).default_action;
        EXPECT_EQ(answer(at.index, bits + "000000000000"), text(at.in_tree ? own : above));
        EXPECT_EQ(remove(at.index, bits), at.then_delete);
        EXPECT_EQ(changes_since(before).empty(), at.status != KOR_E_SUBNET_DELETE);
        // And from any state a learn and a delete make things good.
        EXPECT_EQ(learn(at.index, bits, own), 0u);
        EXPECT_EQ(remove(at.index, bits), 0u);
        EXPECT_EQ(changes_since(before), Lines{});
    }
}

TEST_F(RuleEngine, WritersOperationThatIsNeitherLearnsNothingness)
{
    // For the action it is a removal, for the engine an addition.
    EXPECT_EQ(ovk_eth_cpu_param(module(), 3, 0x8, 0x99), 0u);
    EXPECT_EQ(in_tree(without_db), (Rules{{"000000000000000000001000", "value 0x0"}}));
}

TEST_F(RuleEngine, CallsThePlatformForTheRuleAloneAndTracesEachCall)
{
    const std::string name = "ovk_ethernet.Lookup_Intf_PCP_Policing_Policy";
    const std::string told_all = "ptn_learn] @: 0xabc/12 w24 -> data 0x7 0x8\n"
                                 "subnet_add] @: 0xabc/12 w25 -> data 0x7 0x8\n"
                                 "subnet_get] @: 0xabc/12 w25 -> data 0x1 0x2\n"
                                 "ptn_unlearn] @: 0xabc/12 w24 -> data 0x1 0x2\n"
                                 "subnet_delete] @: 0xabc/12 w25 -> data 0x1 0x2\n";
    const Lines calls = {"kor_ptn_learn(0x7e000001, " + name + ", 0xabc/12 w24, data 0x7 0x8)",
                         "kor_subnet_add_subnet(0x5b000009, 0xabc/12 w25, data 0x7 0x8)",
                         "kor_subnet_find_higher_subnet(0x5b000009, 0xabc/12 w25)",
                         "kor_ptn_unlearn(0x7e000001, " + name + ", 0xabc/12 w24, 0x4, data 0x1 0x2)",
                         "kor_subnet_del_subnet(0x5b000009, 0xabc/12 w25)"};
    const std::string in = "8 ovk_eth_lpm_rule", out = "9 ovk_eth_lpm_rule", at = ' ' + name + ": ";
    learn_cover();
    sim::traces::on(true);
    sim::journal_on(true);
    for (const u32 mask : {0x140u, 0xafu}) { // the bits of these lines, and all others
        sim::traces::clear();
        sim::journal::clear();
        const std::string lines =
            told(mask, [&] { return learn(with_db, bits, own) + remove(with_db, bits); });
        EXPECT_EQ(lines, mask == 0x140 ? std::regex_replace(told_all, std::regex("@"), name) : "");
        EXPECT_EQ(traced(),
                  (Lines{in, "15" + at, "17" + at, out, in, "19" + at, "16" + at, "18" + at, out}));
        EXPECT_EQ(sim::journal::entries("kor_"), calls); // none of them for memory
    }
}

} // namespace
