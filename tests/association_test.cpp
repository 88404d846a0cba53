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
using test::failure;
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

    // A line for each rule: selector, fields, what it does.
    Lines text(const std::vector<sim::OrderedRule> &rules)
    {
        Lines out;
        for (const sim::OrderedRule &rule : rules) {
            std::string &line = out.emplace_back();
            for (const sim::Bits &field : rule.fields)
                line += field.text() + ' ';
            line += sim::action_text(host().rte(), rule.action);
        }
        return out;
    }

  private:
    size_t patterns_;
};

TEST_F(Association, DefaultTakesEachFrameOfItsSelectorUntilItIsTornDown)
{
    const std::string wildcards =
        "[0x05/8 w8, no data l0 w24, no data l0 w48, no data l0 w48, no data l0 w12, "
        "no data l0 w3], function ovk_ethernet.No_Ethernet_Association)";
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
    EXPECT_EQ(
        test::messages_of([&] { EXPECT_EQ(set_default(OVK_ETH_REMOVE, 5), 0u); }),
        Lines{"[ovk_ethernet_log: Warning] RTE Error: injected fault, Failed to clear all the rules from "
              "the OtreeSet"});
    EXPECT_EQ(sim::journal::ops("kor_ptn").back(), "kor_ptn_otreeset_build");
}

TEST_F(Association, RuleHasTheFieldsThatItsRecordUsesAndTheWordsOfItsAction)
{
    ovk_eth_intf target = {};
    target.if_id = 0xa1021;
    const auto fields = [](u32 flags, u8 dmac_len = 48, u8 smac_len = 12) {
        return rule_record{flags,    0x86dd,       {0x42, 0x43, 0x03}, {0x02, 0xa1, 0xb2, 0xc3, 0xd4, 0xe5},
                           dmac_len, {0xfe, 0xdc}, smac_len,           4095,
                           5};
    };
    const auto action = [&](u32 type, u8 priority = 0, u16 bdl = 0, u8 hi = 0, u8 lo = 0) {
        action_record record = {type, &target, priority, 0, bdl, 0, lo, {}, 0};
        record.cpu_word_hi = hi;
        return record;
    };
    const std::string none = "0x0/0 ", from_vlan = none + none, from_dest = none + none + from_vlan;
    const struct {
        rule_record rule;
        action_record action;
        u8 flag;
        std::string text;
    } cases[] = {
        {fields(0), action(1), 0, none + from_dest + "data 0x123456 0x0"},
        {fields(0x1f), action(1), 0x80,
         "0x0086dd/24 0x02a1b2c3d4e5/48 0xfed/12 0xfff/12 0x5/3 data 0x123456 0x80000"},
        {fields(0x21), action(2), 1, "0x0086dd/24 " + from_dest + "data 0x123456 0x1a1021"}, // no LLC
        {fields(0x20), action(3), 1, "0x424303/24 " + from_dest + "data 0x123456 0x200000"},
        {fields(0x06, 41, 0), action(4, 0xf5, 0xffff, 0xab, 0xcd), 1,
         none + "0x005436587a9/41 " + none + from_vlan + "data 0x123456 0x35abcd"},
        {fields(0x06, 0, 7), action(5, 0xfe, 0xbeef, 0xff, 0xff), 1,
         none + none + "0x7f/7 " + from_vlan + "data 0x123456 0x46beef"},
        {fields(0x10), action(6, 7, 0xffff, 0xff, 0xff), 1, from_dest + "0x5/3 data 0x0 0x500000"},
    };
    EXPECT_EQ(set_default(OVK_ETH_ADD, 0xfe), 0u);
    for (const auto &at : cases) {
        EXPECT_EQ(insert(0xfe, 0, at.rule, at.action, 0x123456, at.flag), 0u);
        EXPECT_EQ(text(list(0xfe).in_force).front(), "0xfe/8 " + at.text);
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
    std::mt19937 random(20240607);
    const auto below = [&](size_t limit) { return static_cast<u32>(random() % limit); };
    const auto mac = [&] {
        return 0x02a1b2c3d4e5 ^ ((u64{random()} << 16 | random()) >> below(60)) % (1ull << 48);
    };
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
        const u32 selector = below(std::size(lists));
        auto &[edited, in_force] = lists[selector];
        const u32 status = below(6) == 0 ? 81 : 0;
        if (status != 0)
            sim::faults::fail("kor_ptn_otreeset_build");
        if (edited.empty() || below(5) < 3) {
            const u32 flags = below(64);
            model_rule rule = {draw(), {}, step};
            const auto length = [&](u32 flag, u32 bits) { return (flags & flag) != 0 ? bits : 0; };
            rule.bits = {length(0x21, 24), length(2, below(49)), length(4, below(49)), length(8, 12),
                         length(16, 3)};
            if ((flags & 1) != 0) // an ether type goes before an LLC header
                rule.value[0] &= 0xffff;
            rule_record record = {.flags = flags, .ether_type = static_cast<u16>(rule.value[0])};
            put(record.llc, 3, (flags & 1) != 0 ? 0x424303 : rule.value[0]);
            put(record.dmac, 6, rule.value[1]);
            put(record.smac, 6, rule.value[2]);
            record.dmac_len = static_cast<u8>(rule.bits[1]),
            record.smac_len = static_cast<u8>(rule.bits[2]);
            record.vlan_id = static_cast<u16>(rule.value[3]), record.pcp = static_cast<u8>(rule.value[4]);
            const u32 index = below(edited.size() + 1);
            edited.insert(edited.begin() + index, rule);
            EXPECT_EQ(insert(selector, index, record, {.type = 1}, step), status);
        } else {
            const u32 index = below(edited.size());
            edited.erase(edited.begin() + index);
            EXPECT_EQ(remove(selector, index), status);
        }
        if (status == 0)
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
    const rule_record mac_rule = {.flags = 2, .dmac_len = 48};
    const std::string rte = "RTE Error: injected fault, ", no_key = "Could not build the input pattern";
    const std::string behind = "Cannot add beyond the default interface rule in Otreeset";
    const std::string last = "Cannot remove the default interface rule in Otreeset";
    const std::string build = "kor_ptn_otreeset_build", no_build = rte + "Failed to build the OtreeSet";
    const std::string count = "kor_ptn_otreeset_novrules",
                      no_rebuild = rte + "Failed to re-build the OtreeSet";
    const std::string no_count = rte + "Failed to get the number of rules in OtreeSet";
    const auto add = [&](u32 list) { return insert(list, 1, mac_rule); };
    const auto del = [&](u32 list) { return remove(list, 0); };
    const auto raise = [&](u32 list) { return set_default(OVK_ETH_ADD, list); };
    const auto clear = [&](u32 list) { return set_default(OVK_ETH_REMOVE, list); };
    const struct {
        std::string fault;
        u32 nth;
        std::function<u32(u32)> call;
        u32 status;
        std::string message;
    } cases[] = {
        {"ovk_ptn_extend", 1, raise, 0x7f0a, no_key},
        {"ovk_ptn_extend", 1, clear, 0x7f0a, no_key},
        {"ovk_ptn_extend", 1, del, 0x7f0a, no_key},
        {"ovk_ptn_extend", 7, add, 0x7f0a, no_key}, // the last octet
        {"ovk_ptn_new", 6, add, 0x7f0a, no_key},
        {"kor_ptn_otreeset_append", 1, raise, 77, rte + "Failed to add the default entry in the OtreeSet"},
        {build, 1, raise, 81, no_build},
        {build, 1, clear, 81, no_build},
        {count, 1, add, 82, no_count},
        {count, 1, del, 82, no_count},
        {"kor_ptn_otreeset_insert", 1, add, 78, rte + "Failed to insert rule in the OtreeSet"},
        {"kor_ptn_otreeset_delete", 1, del, 79, rte + "Failed to delete the OtreeSet rule"},
        {build, 1, add, 81, no_rebuild},
        {build, 1, del, 81, no_rebuild},
        {"", 0, [&](u32 list) { return insert(list, 2); }, 8, behind},
        {"", 0, [&](u32 list) { return remove(list, 1); }, 8, last},
        {"", 0, [&](u32 list) { return remove(list, 0, 3); }, 8, "Invalid operation requested"},
        {"", 0, [&](u32 list) { return insert(list, 0, {}, {.type = 0}); }, 8,
         "Invalid Action type requested!"},
        {"", 0, [&](u32 list) { return insert(list, 0, {}, {.type = 7}); }, 8,
         "Invalid Action type requested!"},
        {"", 0, [&](u32 list) { return insert(list, 0, {.flags = 2, .dmac_len = 56}); }, 78,
         "RTE Error: longer than what it matches, Failed to insert rule in the OtreeSet"},
    };
    module()->log_mask = 3;
    u32 selector = 0;
    for (const auto &at : cases) {
        SCOPED_TRACE(at.fault + ": " + at.message);
        EXPECT_EQ(set_default(OVK_ETH_ADD, ++selector), 0u);
        EXPECT_EQ(insert(selector, 0), 0u);
        const Lines before = text(list(selector).edited);
        EXPECT_EQ(sim::faults::fail(at.fault, at.nth), !at.fault.empty());
        EXPECT_EQ(test::messages_of([&] { EXPECT_EQ(at.call(selector), at.status); }),
                  failure(at.message, at.status));
        sim::faults::clear();
        EXPECT_EQ(text(list(selector).edited) != before, at.fault == build);
        EXPECT_EQ(text(list(selector).in_force), before);
    }
    EXPECT_EQ(remove(selector, 0), 0u); // the default alone is left, which takes a rule before it and stays
    test::lines_of([&] { EXPECT_EQ(remove(selector, 0), 8u); });
    sim::faults::fail("ovk_ptn_extend", 2);
    sim::faults::fail("ovk_ptn_extend", 3);
    test::lines_of([&] { EXPECT_EQ(insert(selector, 0, mac_rule), 2 * 0x7f0au); }); // the sum
    EXPECT_EQ(insert(selector, 0), 0u);
}

TEST_F(Association, ChangesGoToTheirOwnEventsWithTreeAndIndex)
{
    sim::traces::on(true);
    EXPECT_EQ(set_default(OVK_ETH_ADD, 1) + insert(1, 0) + insert(1, 1) + remove(1, 1), 0u);
    EXPECT_EQ(set_default(OVK_ETH_REMOVE, 1), 0u);
    const std::string tree = tree_name;
    Lines traced;
    for (const sim::traces::Record &record : sim::traces::records())
        if (record.event >= 20 && record.event <= 23)
            traced.push_back(std::to_string(record.event) + (record.event < 22 ? ' ' + record.text : ""));
    EXPECT_EQ(traced, (Lines{"20 " + tree + ": (0) ", "23", "20 " + tree + ": (0) ", "23",
                             "20 " + tree + ": (1) ", "23", "21 " + tree + ": (1) ", "23", "22", "23"}));
}

} // namespace
