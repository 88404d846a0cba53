// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <algorithm>
#include <functional>
#include <random>

#include "common/op.h"
#include "ovk_eth_hw/association.h"

namespace {

using rule_record = ovk_ethernet_ingress_extended_flow_data;
using action_record = ovk_ethernet_flow_action;
using test::Lines;

constexpr char tree_name[] = "ovk_ethernet.Ethernet_Association";

// What the classifier reads off a frame: protocol, destination, source, VLAN, priority.
constexpr u32 widths[] = {24, 48, 48, 12, 3};
using frame = std::array<u64, std::size(widths)>;

class Association : public test::ModuleTest {
  protected:
    Association() : patterns_(sim::live_patterns()) {}
    ~Association() override { EXPECT_EQ(sim::live_patterns(), patterns_); }

    u32 set_default(u32 op, u32 selector) { return ovk_eth_default_association(module(), op, selector); }
    u32 insert(u32 selector, u32 index, const rule_record &rule = {},
               const action_record &action = {.type = 1}, u32 flow_id = 1, u8 flag = 0)
    {
        return ovk_eth_association(module(), OVK_ETH_ADD, selector, index, &rule, &action, flag, flow_id);
    }
    u32 remove(u32 selector, u32 index, u32 op = OVK_ETH_REMOVE)
    {
        return ovk_eth_association(module(), op, selector, index, nullptr, nullptr, 0, 0);
    }
    std::optional<sim::Hit> hit(u32 selector, const frame &at = {})
    {
        std::vector<sim::Field> fields;
        for (u32 field = 0; field < at.size(); field++)
            fields.push_back({at[field], widths[field]});
        return sim::association_match(host().rte(), tree_name, selector, fields);
    }
    sim::OrderedList list(u32 selector) { return sim::ordered_list(host().rte(), tree_name, selector); }

  private:
    size_t patterns_;
};

TEST_F(Association, DefaultTakesEachFrameOfItsSelectorUntilItIsTornDown)
{
    const std::string wildcards =
        "[0x05/8 w8, no data l0 w24, no data l0 w48, no data l0 w48, no data l0 w12, no data l0 w3], "
        "function ovk_ethernet.No_Ethernet_Association)";
    tree(OVK_ETH_TREE_ETHERNET_ASSOCIATION).default_action.w2 = 0x77; // is for the tree, not for a list
    sim::journal_on(true);
    for (const u32 op : {2u, 7u}) {
        EXPECT_EQ(set_default(OVK_ETH_ADD, 5), 0u);
        EXPECT_EQ(sim::journal::ops("kor_"), (Lines{"kor_ptn_otreeset_append", "kor_ptn_otreeset_build"}));
        EXPECT_TRUE(sim::journal::entries("kor_").front().ends_with(wildcards));
        ASSERT_TRUE(hit(5, {0x86dd, 1, 2, 3, 4}));
        EXPECT_EQ(hit(5)->action.w2, 0u);
        EXPECT_FALSE(hit(6));
        EXPECT_EQ(insert(5, 0), 0u);
        sim::journal::clear();
        EXPECT_EQ(set_default(op, 5), 0u);
        EXPECT_EQ(sim::journal::ops("kor_"), (Lines{"kor_ptn_otreeset_clear", "kor_ptn_otreeset_build"}));
        EXPECT_FALSE(hit(5));
        sim::journal::clear();
    }
    sim::faults::fail("kor_ptn_otreeset_clear");
    module()->log_mask = 7;
    const std::string text = "RTE Error: injected fault, Failed to clear all the rules from the OtreeSet";
    EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(set_default(OVK_ETH_REMOVE, 5), 0u); }),
              Lines{"[ovk_ethernet_log: Warning] " + text});
    EXPECT_EQ(sim::journal::ops("kor_ptn").back(), "kor_ptn_otreeset_build");
}

TEST_F(Association, ActionSaysWhereFramesGo)
{
    ovk_eth_intf target = {};
    target.if_id = 0xa1021;
    const struct {
        u32 type;
        u8 priority, flag;
        u16 bdl;
        u8 cpu_hi, cpu_lo;
        const char *words;
    } cases[] = {
        {1, 0, 0, 0, 0, 0, "data 0x123456 0x0"},
        {1, 0, 0x80, 0, 0, 0, "data 0x123456 0x80000"},
        {2, 7, 1, 0xffff, 0xff, 0xff, "data 0x123456 0x1a1021"},
        {3, 7, 1, 0xffff, 0xff, 0xff, "data 0x123456 0x200000"},
        {4, 0xf5, 1, 0xffff, 0xab, 0xcd, "data 0x123456 0x35abcd"},
        {5, 0xfe, 1, 0xbeef, 0xff, 0xff, "data 0x123456 0x46beef"},
        {6, 7, 1, 0xffff, 0xff, 0xff, "data 0x0 0x500000"},
    };
    EXPECT_EQ(set_default(OVK_ETH_ADD, 0), 0u);
    for (const auto &at : cases) {
        action_record action = {at.type, &target, at.priority, 0, at.bdl, 0, at.cpu_lo, {}, 0};
        action.cpu_word_hi = at.cpu_hi;
        EXPECT_EQ(insert(0, 0, {}, action, 0x123456, at.flag), 0u);
        EXPECT_EQ(sim::action_text(host().rte(), hit(0)->action), at.words);
    }
}

struct model_rule {
    frame value;
    std::array<u32, std::size(widths)> bits; // of each field, from its top
    u32 flow_id;

    bool takes(const frame &at) const
    {
        for (u32 field = 0; field < at.size(); field++)
            if (bits[field] != 0 && (value[field] ^ at[field]) >> (widths[field] - bits[field]) != 0)
                return false;
        return true;
    }
};

TEST_F(Association, FirstRuleOfTheListAsBuiltLastWins)
{
    struct {
        std::vector<model_rule> edited, in_force;
    } lists[3];
    std::mt19937_64 random(20240607);
    const auto below = [&](size_t limit) { return static_cast<u32>(random() % limit); };
    const auto mac = [&] { return 0x02a1b2c3d4e5 ^ random() >> (16 + below(48)); };
    const auto draw = [&] {
        return frame{std::array{0x0800u, 0x86ddu, 0x424303u}[below(3)], mac(), mac(),
                     std::array{0u, 5u, 4095u}[below(3)], below(2) * 5};
    };
    const auto put = [](u8 *to, u32 octets, u64 value) {
        while (octets-- > 0)
            *to++ = static_cast<u8>(value >> (octets * 8));
    };
    for (u32 selector = 0; selector < std::size(lists); selector++)
        EXPECT_EQ(set_default(OVK_ETH_ADD, selector), 0u);
    u32 hits = 0;
    for (u32 step = 1; step <= 400; step++) {
        const u32 selector = below(std::size(lists)), flags = below(64), failed = below(6) == 0 ? 81 : 0;
        auto &[edited, in_force] = lists[selector];
        if (failed != 0)
            sim::faults::fail("kor_ptn_otreeset_build");
        if (edited.empty() || below(5) < 3) {
            const auto used = [&](u32 flag, u32 bits) { return (flags & flag) != 0 ? bits : 0; };
            model_rule rule = {
                draw(),
                {used(0x21, 24), used(2, below(49)), used(4, below(49)), used(8, 12), used(0x10, 3)},
                step};
            if ((flags & 1) != 0) // the ether type goes before the LLC header
                rule.value[0] &= 0xffff;
            const auto &[protocol, dest, source, vlan, priority] = rule.value;
            rule_record record = {.flags = flags, .ether_type = static_cast<u16>(protocol)};
            put(record.llc, 3, (flags & 1) != 0 ? 0x424303 : protocol);
            put(record.dmac, 6, dest);
            put(record.smac, 6, source);
            record.dmac_len = static_cast<u8>(rule.bits[1]),
            record.smac_len = static_cast<u8>(rule.bits[2]);
            record.vlan_id = static_cast<u16>(vlan), record.pcp = static_cast<u8>(priority);
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
            const frame asked = draw();
            const auto first = std::find_if(in_force.begin(), in_force.end(),
                                            [&](const model_rule &rule) { return rule.takes(asked); });
            const std::optional<sim::Hit> found = hit(selector, asked);
            ASSERT_TRUE(found);
            ASSERT_EQ(found->index, first - in_force.begin()) << "step " << step;
            ASSERT_TRUE(first == in_force.end() || found->action.w1 == first->flow_id) << "step " << step;
            hits += first != in_force.begin() && first != in_force.end();
        }
    }
    EXPECT_GT(hits, 1000u); // behind the first rule and before the default
}

TEST_F(Association, RefusalsAndFailuresLeaveTheListsAsFarAsTheyCame)
{
    const rule_record mac = {.flags = 2, .dmac_len = 48}, long_mac = {.flags = 2, .dmac_len = 56};
    const std::string no = "RTE Error: injected fault, Failed to ",
                      no_key = "Could not build the input pattern";
    const std::string no_type = "Invalid Action type requested!", build = "kor_ptn_otreeset_build";
    const auto add = [&](u32 at) { return insert(at, 1, mac); };
    const auto del = [&](u32 at) { return remove(at, 0); };
    const auto raise = [&](u32 at) { return set_default(OVK_ETH_ADD, at); };
    const auto clear = [&](u32 at) { return set_default(OVK_ETH_REMOVE, at); };
    const struct {
        std::string fault;
        u32 nth;
        std::function<u32(u32)> call;
        u32 status;
        std::string message;
    } cases[] = {
        {"ovk_ptn_extend", 1, raise, 0x7f0a, no_key},
        {"ovk_ptn_extend", 1, del, 0x7f0a, no_key},
        {"ovk_ptn_extend", 7, add, 0x7f0a, no_key}, // the last octet
        {"ovk_ptn_new", 3, add, 0x7f0a, no_key},
        {"kor_ptn_otreeset_append", 1, raise, 77, no + "add the default entry in the OtreeSet"},
        {build, 1, raise, 81, no + "build the OtreeSet"},
        {build, 1, clear, 81, no + "build the OtreeSet"},
        {"kor_ptn_otreeset_novrules", 1, add, 82, no + "get the number of rules in OtreeSet"},
        {"kor_ptn_otreeset_novrules", 1, del, 82, no + "get the number of rules in OtreeSet"},
        {"kor_ptn_otreeset_insert", 1, add, 78, no + "insert rule in the OtreeSet"},
        {"kor_ptn_otreeset_delete", 1, del, 79, no + "delete the OtreeSet rule"},
        {build, 1, add, 81, no + "re-build the OtreeSet"},
        {build, 1, del, 81, no + "re-build the OtreeSet"},
        {"", 0, [&](u32 at) { return insert(at, 2); }, 8,
         "Cannot add beyond the default interface rule in Otreeset"},
        {"", 0, [&](u32 at) { return remove(at, 1); }, 8,
         "Cannot remove the default interface rule in Otreeset"},
        {"", 0, [&](u32 at) { return remove(at, 0, 3); }, 8, "Invalid operation requested"},
        {"", 0, [&](u32 at) { return insert(at, 0, {}, {.type = 0}); }, 8, no_type},
        {"", 0, [&](u32 at) { return insert(at, 0, {}, {.type = 7}); }, 8, no_type},
        {"", 0, [&](u32 at) { return insert(at, 0, long_mac); }, 78,
         "RTE Error: longer than what it matches, Failed to insert rule in the OtreeSet"},
    };
    module()->log_mask = 3;
    u32 selector = 0;
    for (const auto &at : cases) {
        SCOPED_TRACE(at.fault + ": " + at.message);
        selector++;
        EXPECT_EQ(set_default(OVK_ETH_ADD, selector) + insert(selector, 0), 0u);
        EXPECT_EQ(sim::faults::fail(at.fault, at.nth), !at.fault.empty());
        test::expect_failure([&] { return at.call(selector); }, at.status, at.message);
        EXPECT_EQ(list(selector).edited.size() != 2, at.fault == build);
        EXPECT_EQ(list(selector).in_force.size(), 2u);
    }
    EXPECT_EQ(remove(selector, 0), 0u); // the default alone is left, and stays
    test::lines_of([&] { EXPECT_EQ(remove(selector, 0), 8u); });
    sim::faults::fail("ovk_ptn_extend", 2);
    sim::faults::fail("ovk_ptn_extend", 3);
    test::expect_failure([&] { return insert(selector, 0, mac); }, 2 * 0x7f0a, no_key); // the sum
}

TEST_F(Association, ChangesGoToTheirOwnEventsWithTreeAndIndex)
{
    sim::traces::on(true);
    EXPECT_EQ(set_default(OVK_ETH_ADD, 1) + insert(1, 0) + insert(1, 1) + remove(1, 1), 0u);
    EXPECT_EQ(set_default(OVK_ETH_REMOVE, 1), 0u);
    std::string traced;
    for (const std::string &line : test::traced())
        traced += line.starts_with("2") ? line.substr(0, 3) + line.substr(line.find('(')) : "";
    EXPECT_EQ(traced, "20 (0) 23 (0) 20 (0) 23 (0) 20 (1) 23 (1) 21 (1) 23 (1) 22 (0) 23 (0) ");
}

} // namespace
