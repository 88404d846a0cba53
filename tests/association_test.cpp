// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <algorithm>
#include <random>

#include "common/op.h"
#include "ovk_eth_hw/association.h"

namespace {

using namespace test;
using rule_record = ovk_ethernet_ingress_extended_flow_data;
using action_record = ovk_ethernet_flow_action;
using fields = std::vector<sim::Field>; // protocol, destination, source, VLAN, priority

constexpr char tree_name[] = "ovk_ethernet.Ethernet_Association";
constexpr rule_record any = {};

class Association : public ModuleTest {
  protected:
    ~Association() override { EXPECT_EQ(sim::live_patterns(), patterns_); }

    u32 set_default(u32 op, u32 selector) { return ovk_eth_default_association(module(), op, selector); }
    u32 insert(u32 selector, u32 index, const rule_record &rule, const action_record &action = {.type = 1},
               u32 flow_id = 1, u8 flag = 0)
    {
        return ovk_eth_association(module(), OVK_ETH_ADD, selector, index, &rule, &action, flag, flow_id);
    }
    u32 remove(u32 selector, u32 index, u32 op = OVK_ETH_REMOVE)
    {
        return ovk_eth_association(module(), op, selector, index, nullptr, nullptr, 0, 0);
    }
    std::optional<sim::Hit> hit(u32 selector, const fields &frame)
    {
        return sim::association_match(host().rte(), tree_name, selector, frame);
    }

    const fields frame_ = {{0x86dd, 24}, {1, 48}, {2, 48}, {3, 12}, {4, 3}};
    const size_t patterns_ = sim::live_patterns();
};

TEST_F(Association, DefaultTakesEachFrameOfItsSelectorUntilItIsTornDown)
{
    const std::string wildcards =
        "[0x05/8 w8, no data l0 w24, no data l0 w48, no data l0 w48, no data l0 w12, "
        "no data l0 w3], function ovk_ethernet.No_Ethernet_Association)";
    tree(OVK_ETH_TREE_ETHERNET_ASSOCIATION).default_action.w2 = 0x77; // is for the tree, not for a list
    sim::journal_on(true);
    for (const u32 op : {2u, 7u}) {
        sim::journal::clear();
        EXPECT_EQ(set_default(OVK_ETH_ADD, 5), 0u);
        EXPECT_TRUE(sim::journal::entries("kor_").at(0).ends_with(wildcards));
        ASSERT_TRUE(hit(5, frame_));
        EXPECT_EQ(hit(5, frame_)->action.w2, 0u);
        EXPECT_FALSE(hit(6, frame_));
        EXPECT_EQ(insert(5, 0, any) + set_default(op, 5), 0u);
        EXPECT_FALSE(hit(5, frame_));
    }
    sim::journal::clear();
    sim::faults::fail("kor_ptn_otreeset_clear");
    EXPECT_EQ(told(7, [&] { return set_default(OVK_ETH_REMOVE, 5); }),
              "Warning] RTE Error: injected fault, Failed to clear all the rules from the OtreeSet\n");
    EXPECT_EQ(sim::journal::ops("kor_ptn"), (Lines{"kor_ptn_otreeset_clear", "kor_ptn_otreeset_build"}));
}

TEST_F(Association, ActionSaysWhereFramesGo)
{
    using row = std::tuple<u32, u8, u8, std::string>; // type, flag, priority
    ovk_eth_intf target = {};
    target.if_id = 0xa1021;
    EXPECT_EQ(set_default(OVK_ETH_ADD, 0), 0u);
    for (const auto &[type, flag, priority, words] :
         {row{1, 0, 7, "0x123456 0x0"}, row{1, 0x80, 0, "0x123456 0x80000"},
          row{2, 1, 7, "0x123456 0x1a1021"}, row{3, 1, 7, "0x123456 0x200000"},
          row{4, 1, 0xf5, "0x123456 0x35abcd"}, row{5, 1, 0xfe, "0x123456 0x46beef"},
          row{6, 1, 7, "0x0 0x500000"}}) {
        action_record action = {type, &target, priority, 0, 0xbeef, 0, 0xcd, {}, 0};
        action.cpu_word_hi = 0xab;
        EXPECT_EQ(insert(0, 0, any, action, 0x123456, flag), 0u);
        EXPECT_EQ(sim::action_text(host().rte(), hit(0, frame_)->action), "data " + words);
    }
}

TEST_F(Association, FirstRuleOfTheListAsBuiltLastWins)
{
    struct model_rule {
        fields prefixes;
        u32 flow_id;
    };
    const auto takes = [](const fields &prefixes, const fields &frame) {
        return std::equal(
            prefixes.begin(), prefixes.end(), frame.begin(), [](sim::Field part, sim::Field whole) {
                return part.bits == 0 || (part.value ^ whole.value) >> (whole.bits - part.bits) == 0;
            });
    };
    struct {
        std::vector<model_rule> edited, in_force;
    } lists[3];
    std::mt19937_64 random(20240607);
    const auto below = [&](size_t limit) { return static_cast<u32>(random() % limit); };
    const auto draw = [&] {
        constexpr u32 protocols[] = {0x0800, 0x86dd, 0x424303}, vlans[] = {0, 5, 4095};
        const auto mac = [&] { return sim::Field{0x02a1b2c3d4e5 ^ random() >> (16 + below(48)), 48}; };
        return fields{{protocols[below(3)], 24}, mac(), mac(), {vlans[below(3)], 12}, {below(2) * 5, 3}};
    };
    const auto put = [](u8 *to, u32 octets, u64 value) {
        while (octets-- > 0)
            *to++ = static_cast<u8>(value >> (octets * 8));
    };
    u32 hits = 0; // behind the first rule and before the default
    EXPECT_EQ(set_default(OVK_ETH_ADD, 0) + set_default(OVK_ETH_ADD, 1) + set_default(OVK_ETH_ADD, 2), 0u);
    for (u32 step = 1; step <= 400; step++) {
        const u32 selector = below(3), flags = below(64), failed = below(6) == 0 ? 81 : 0;
        auto &[edited, in_force] = lists[selector];
        if (failed != 0)
            sim::faults::fail("kor_ptn_otreeset_build");
        if (edited.empty() || below(5) < 3) {
            model_rule rule = {draw(), step};
            fields &at = rule.prefixes;
            const u64 llc = (flags & 1) != 0 ? 0x424303 : at[0].value; // the ether type goes before it
            at[0].value &= (flags & 1) != 0 ? 0xffff : ~0u;
            rule_record record = {.flags = flags, .ether_type = static_cast<u16>(at[0].value)};
            put(record.llc, 3, llc);
            put(record.dmac, 6, at[1].value);
            put(record.smac, 6, at[2].value);
            record.dmac_len = static_cast<u8>(at[1].bits = below(49));
            record.smac_len = static_cast<u8>(at[2].bits = below(49));
            record.vlan_id = static_cast<u16>(at[3].value);
            record.pcp = static_cast<u8>(at[4].value);
            for (u32 field = 0; const u32 flag : {0x21, 2, 4, 8, 0x10})
                at[field++].bits *= (flags & flag) != 0;
            const u32 index = below(edited.size() + 1);
            edited.insert(edited.begin() + index, rule);
            EXPECT_EQ(insert(selector, index, record, {.type = 1}, step), failed);
        } else {
            const u32 index = below(edited.size());
            edited.erase(edited.begin() + index);
            EXPECT_EQ(remove(selector, index), failed);
        }
        if (failed == 0)
            in_force = edited;
        for (u32 frames = 0; frames < 10; frames++) {
            const fields frame = draw();
            const auto first = std::find_if(in_force.begin(), in_force.end(), [&](const model_rule &rule) {
                return takes(rule.prefixes, frame);
            });
            const std::optional<sim::Hit> found = hit(selector, frame);
            ASSERT_TRUE(found);
            ASSERT_EQ(found->index, first - in_force.begin()) << "step " << step;
            ASSERT_TRUE(first == in_force.end() || found->action.w1 == first->flow_id) << "step " << step;
            hits += first != in_force.begin() && first != in_force.end();
        }
    }
    EXPECT_GT(hits, 1000u);
}

TEST_F(Association, EachStepOnAListPrintsItsPlaceAndPattern)
{
    const rule_record mac = {.flags = 2, .dmac = {0x01, 0x5f}, .dmac_len = 12};
    EXPECT_EQ(set_default(OVK_ETH_ADD, 9) + insert(9, 0, any), 0u);
    sim::traces::on(true);
    const auto steps = [&] {
        return insert(9, 1, mac, {.type = 6}) + remove(9, 1) + set_default(OVK_ETH_REMOVE, 9);
    };
    EXPECT_EQ(std::regex_replace(told(0x40, steps), std::regex("ovk_ethernet.Ethernet_Association: "), ""),
              "vptn_learn] (1) [0x09/8 w8, 0x0/0 w24, 0x015/12 w48, 0x0/0 w48, 0x0/0 w12, 0x0/0 w3] -> "
              "data 0x0 0x500000\nvptn_build] (1) [0x09/8 w8]\n"
              "vptn_unlearn] (1) [0x09/8 w8]\nvptn_build] (1) [0x09/8 w8]\n"
              "vptn_clear] (0) [0x09/8 w8]\nvptn_build] (0) [0x09/8 w8]\n");
    std::string events;
    for (const sim::traces::Record &record : sim::traces::records())
        events += record.event >= 20 && record.event <= 23 ? std::to_string(record.event) + ' ' : "";
    EXPECT_EQ(events, "20 23 21 23 22 23 ");
}

TEST_F(Association, RefusalsAndFailuresLeaveTheListsAsFarAsTheyCame)
{
    const rule_record mac = {.flags = 2, .dmac_len = 48}, long_mac = {.flags = 2, .dmac_len = 56};
    u32 at = 0; // each run has a list of its own, of one rule and the default
    const auto prepare = [&] { (void)(at++, set_default(OVK_ETH_ADD, at) + insert(at, 0, any)); };
    const auto rules = [&] {
        const sim::OrderedList list = sim::ordered_list(host().rte(), tree_name, at);
        return printed(": %zu, %zu", list.edited.size(), list.in_force.size());
    };
    const std::string key = "32522 Could not build the input pattern: 2, 2|";
    const std::string count = key + "82 RTE, Failed to get the number of rules in OtreeSet: 2, 2|";
    EXPECT_EQ(faults_of([&] { return set_default(OVK_ETH_ADD, at); }, prepare, rules),
              key + "77 RTE, Failed to add the default entry in the OtreeSet: 2, 2|"
                    "81 RTE, Failed to build the OtreeSet: 3, 2|");
    EXPECT_EQ(faults_of([&] { return insert(at, 1, mac); }, prepare, rules),
              count + key +
                  "78 RTE, Failed to insert rule in the OtreeSet: 2, 2|"
                  "81 RTE, Failed to re-build the OtreeSet: 3, 2|");
    EXPECT_EQ(faults_of([&] { return remove(at, 0); }, prepare, rules),
              count + "79 RTE, Failed to delete the OtreeSet rule: 2, 2|81 RTE, Failed to re-build the "
                      "OtreeSet: 1, 2|");
    expect([&] { return insert(at, 1, any, {.type = 0}); }, 8,
           "Cannot add beyond the default interface rule in Otreeset");
    expect([&] { return remove(at, 0); }, 8, "Cannot remove the default interface rule in Otreeset");
    expect([&] { return remove(at + 1, 0); }, 8, "Cannot remove the default interface rule in Otreeset");
    expect([&] { return remove(at, 0, 3); }, 8, "Invalid operation requested");
    expect([&] { return insert(at, 0, any, {.type = 0}); }, 8, "Invalid Action type requested!");
    expect([&] { return insert(at, 0, any, {.type = 7}); }, 8, "Invalid Action type requested!");
    expect([&] { return insert(at, 0, long_mac); }, 78,
           "RTE Error: longer than what it matches, Failed to insert rule in the OtreeSet");
    sim::faults::fail("ovk_ptn_extend", 2);
    sim::faults::fail("ovk_ptn_extend", 3);
    expect([&] { return insert(at, 0, mac); }, 2 * 0x7f0a, "Could not build the input pattern"); // the sum
    EXPECT_EQ(rules(), ": 1, 1");
}

} // namespace
