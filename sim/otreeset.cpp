// SPDX-License-Identifier: Apache-2.0
/* Ordered tree sets. All operations work on the list as it is edited; the build puts it into force. */
#include "call.h"
#include "chip.h"
#include "kor_otreeset.h"
#include "ovk_ptn.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace sim {

namespace {

OrderedSet &set_of(kor_rte rte, u32 tree_id)
{
    Chip &on = chip(rte);
    const u32 index = tree_id - on.first_id;
    if (index >= on.programme.size() || !on.programme[index].ordered)
        wrong("%s is no ordered tree set", show(TreeArg{rte, tree_id}).c_str());
    return *on.programme[index].ordered;
}

/* What a field matches. One that was never made may be all zero, or have the field's width. */
Bits field_bits(const kor_vptn_field &field, u32 width)
{
    const kor_ptn &pattern = field.pattern;
    if (field.header)
        wrong("header 0x%x of a field", field.header);
    if (!pattern.data) {
        if (pattern.length || (pattern.width && pattern.width != width))
            wrong("pattern %s for a field of width %u", show(&pattern).c_str(), width);
        return {};
    }
    const Bits &bits = live_data(&pattern).bits;
    if (pattern.width != width || pattern.length != bits.length)
        wrong("pattern %s for a field of width %u", show(&pattern).c_str(), width);
    return bits;
}

u32 selector_of(const OrderedSet &set, const kor_vptn_field *vptn)
{
    const u32 width = set.widths[0];
    const Bits bits = field_bits(*given(vptn, "vector pattern"), width);
    if (bits.length != width)
        wrong("selector of %u bits, not %u", bits.length, width);
    return static_cast<u32>(bits.words[0] >> (64 - width));
}

OrderedList &list_of(kor_rte rte, u32 tree_id, const kor_vptn_field *vptn)
{
    OrderedSet &set = set_of(rte, tree_id);
    return set.lists[selector_of(set, vptn)];
}

/* Puts a rule into the selector's list, at `index` or, without one, at the end. */
u32 put_rule(OrderedSet &set, std::optional<u32> index, u32 count, const kor_vptn_field *vptn,
             const kor_ptn_action *action)
{
    const u32 selector = selector_of(set, vptn);
    if (count != set.widths.size())
        wrong("%u fields, not %zu", count, set.widths.size());
    OrderedRule rule{{}, *given(action, "action")};
    for (u32 field = 0; field < count; ++field) {
        rule.fields.push_back(field_bits(vptn[field], set.widths[field]));
        if (rule.fields.back().length > set.widths[field])
            return status_too_long;
    }
    std::vector<OrderedRule> &rules = set.lists[selector].edited;
    const std::size_t at = index.value_or(static_cast<u32>(rules.size()));
    if (at > rules.size())
        return status_absent;
    rules.insert(rules.begin() + static_cast<std::ptrdiff_t>(at), std::move(rule));
    return 0;
}

VptnArg vptn_arg(u32 count, const kor_vptn_field *vptn)
{
    return {std::min(count, OrderedSet::most_fields), vptn};
}

OrderedSet &asked_set(kor_rte rte, std::string_view name)
{
    Chip &on = asked_chip(rte);
    for (const std::string &full : {programme_prefix + std::string(name), std::string(name)}) {
        if (const auto at = on.symbols.find(full);
            at != on.symbols.end() && on.programme[at->second].ordered)
            return *on.programme[at->second].ordered;
    }
    throw std::invalid_argument("no ordered tree set " + std::string(name));
}

} // namespace

std::optional<Hit> OrderedSet::match(u32 selector, const std::vector<Bits> &frame) const
{
    const auto list = lists.find(selector);
    if (list == lists.end())
        return std::nullopt;
    const std::vector<OrderedRule> &rules = list->second.in_force;
    const auto hit = std::find_if(rules.begin(), rules.end(), [&](const OrderedRule &rule) {
        return std::equal(frame.begin(), frame.end(), rule.fields.begin() + 1, rule.fields.end(),
                          [](const Bits &value, const Bits &field) { return field.covers(value); });
    });
    if (hit == rules.end())
        return std::nullopt;
    return Hit{static_cast<u32>(hit - rules.begin()), hit->action};
}

std::string show(VptnArg vptn)
{
    if (!vptn.fields)
        return "null";
    std::string out;
    for (u32 field = 0; field < vptn.count; ++field)
        out += (field ? ", " : "") + show(&vptn.fields[field].pattern);
    return "[" + out + "]";
}

std::vector<std::string> ordered_sets(kor_rte rte)
{
    const Guard guard;
    std::vector<std::string> out;
    for (const auto &[name, index] : asked_chip(rte).symbols) {
        if (asked_chip(rte).programme[index].ordered)
            out.push_back(name);
    }
    return out;
}

OrderedSet ordered_set(kor_rte rte, std::string_view tree)
{
    const Guard guard;
    return asked_set(rte, tree);
}

OrderedList ordered_list(kor_rte rte, std::string_view tree, u32 selector)
{
    const Guard guard;
    const OrderedSet &set = asked_set(rte, tree);
    const auto at = set.lists.find(selector);
    return at == set.lists.end() ? OrderedList() : at->second;
}

std::optional<Hit> association_match(kor_rte rte, std::string_view tree, u32 selector,
                                     const std::vector<Field> &frame)
{
    const Guard guard;
    const OrderedSet &set = asked_set(rte, tree);
    std::vector<Bits> values;
    for (const Field &field : frame) {
        if (values.size() + 1 >= set.widths.size() || field.bits != set.widths[values.size() + 1])
            throw std::invalid_argument("a frame's fields are all there, in full width");
        values.emplace_back().push(field.value, field.bits);
    }
    if (values.size() + 1 != set.widths.size())
        throw std::invalid_argument("a frame's fields are all there, in full width");
    return set.match(selector, values);
}

} // namespace sim

using namespace sim;

u32 kor_ptn_otreeset_append(kor_rte rte, u32 tree_id, u32 count, const kor_vptn_field *vptn,
                            const kor_ptn_action *action)
{
    const With arguments{rte, TreeArg{rte, tree_id}, vptn_arg(count, vptn), ActionArg{rte, action}};
    return platform<"kor_ptn_otreeset_append">(
        arguments, [&] { return put_rule(set_of(rte, tree_id), std::nullopt, count, vptn, action); });
}

u32 kor_ptn_otreeset_insert(kor_rte rte, u32 tree_id, u32 index, u32 count, const kor_vptn_field *vptn,
                            const kor_ptn_action *action)
{
    const With arguments{rte, TreeArg{rte, tree_id}, index, vptn_arg(count, vptn), ActionArg{rte, action}};
    return platform<"kor_ptn_otreeset_insert">(
        arguments, [&] { return put_rule(set_of(rte, tree_id), index, count, vptn, action); });
}

u32 kor_ptn_otreeset_delete(kor_rte rte, u32 tree_id, u32 index, const kor_vptn_field *vptn)
{
    const With arguments{rte, TreeArg{rte, tree_id}, index, vptn_arg(1, vptn)};
    return platform<"kor_ptn_otreeset_delete">(arguments, [&]() -> u32 {
        std::vector<OrderedRule> &rules = list_of(rte, tree_id, vptn).edited;
        if (index >= rules.size())
            return status_absent;
        rules.erase(rules.begin() + static_cast<std::ptrdiff_t>(index));
        return 0;
    });
}

u32 kor_ptn_otreeset_clear(kor_rte rte, u32 tree_id, const kor_vptn_field *vptn)
{
    const With arguments{rte, TreeArg{rte, tree_id}, vptn_arg(1, vptn)};
    return platform<"kor_ptn_otreeset_clear">(arguments, [&]() -> u32 {
        list_of(rte, tree_id, vptn).edited.clear();
        return 0;
    });
}

u32 kor_ptn_otreeset_build(kor_rte rte, u32 tree_id, const kor_vptn_field *vptn)
{
    const With arguments{rte, TreeArg{rte, tree_id}, vptn_arg(1, vptn)};
    return platform<"kor_ptn_otreeset_build">(arguments, [&]() -> u32 {
        OrderedList &list = list_of(rte, tree_id, vptn);
        list.in_force = list.edited;
        return 0;
    });
}

u32 kor_ptn_otreeset_novrules(kor_rte rte, u32 tree_id, const kor_vptn_field *vptn, u32 *count)
{
    const With arguments{rte, TreeArg{rte, tree_id}, vptn_arg(1, vptn)};
    return platform<"kor_ptn_otreeset_novrules">(arguments, [&]() -> u32 {
        const OrderedList &list = list_of(rte, tree_id, vptn);
        *given(count, "count") = static_cast<u32>(list.edited.size());
        return 0;
    });
}

void ovk_vptn_print(u32 count, const kor_vptn_field *vptn)
{
    const VptnArg arguments = vptn_arg(count, vptn);
    platform<"ovk_vptn_print">(With{arguments}, [&] {
        if (count == 0 || count > OrderedSet::most_fields)
            wrong("%u fields", count);
        given(vptn, "vector pattern");
        std::fputs(show(arguments).c_str(), stdout);
    });
}
