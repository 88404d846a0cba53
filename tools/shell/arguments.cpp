// SPDX-License-Identifier: Apache-2.0
#include "arguments.h"

#include "ovk_eth_helper/names.h"
#include "session.h"

#include <algorithm>

namespace shell {

namespace {

constexpr auto number_within(u64 min, u64 max)
{
    return [min, max](const std::string &word, Value &out) {
        const std::optional<u64> number = to_number(word);
        out.number = number.value_or(0);
        return number && *number >= min && *number <= max;
    };
}

constexpr auto any_number = number_within(0, 0xFFFFFFFF);

bool take_byte_pair(const std::string &word, Value &out)
{
    const std::size_t dot = word.find('.');
    if (dot == word.npos)
        return number_within(0, 0xFFFF)(word, out);
    const auto high = to_number(word.substr(0, dot));
    const auto low = to_number(word.substr(dot + 1));
    out.number = high.value_or(0) << 8 | low.value_or(0);
    return high && low && *high <= 0xFF && *low <= 0xFF;
}

// Six octets, as in 02:00:00:00:00:11 or with dashes.
bool take_mac(const std::string &word, Value &out)
{
    constexpr std::size_t octets = 6;
    if (word.size() != octets * 3 - 1)
        return false;
    for (std::size_t at = 0; at < word.size(); at += 3) {
        const auto octet = to_number("0x" + word.substr(at, 2));
        if (!octet || (at + 2 < word.size() && word[at + 2] != ':' && word[at + 2] != '-'))
            return false;
        out.number = out.number << 8 | *octet;
    }
    return true;
}

bool take_name(const std::string &word, Value &out)
{
    constexpr std::size_t longest = 31;
    const auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    const auto fits = [&](char c) { return letter(c) || (c >= '0' && c <= '9') || c == '-' || c == '_'; };
    out.text = lower(word); // as names are found whatever their case
    return !word.empty() && word.size() <= longest && letter(word[0]) &&
           std::all_of(word.begin(), word.end(), fits);
}

bool take_text(const std::string &word, Value &out)
{
    out.text = word;
    return true;
}

auto fixed(Names names)
{
    return [names = std::move(names)](const Session &) { return names; };
}

Names numbered(const Words &words, u64 first = 0)
{
    Names out;
    for (const std::string &word : words)
        out.emplace_back(short_name(word), first + out.size());
    return out;
}

Names full_names(const Enumeration &enumeration)
{
    constexpr u32 span = 128; // more than any enumeration reaches
    const std::string_view unnamed = enumeration.name(~0U);
    Names out;
    for (u32 value = enumeration.first; value < enumeration.first + span; ++value) {
        const std::string_view found = enumeration.name(value);
        if (found != unnamed && !found.ends_with("_MAX")) // which is a bound
            out.emplace_back(found, value);
    }
    return out;
}

Words first_of(const Names &names)
{
    Words out;
    for (const auto &name : names)
        out.push_back(name.first);
    return out;
}

} // namespace

const Enumeration exception_types{"an exception type", ovk_eth_exception_name, 1};
const Enumeration exception_actions{"an exception action", ovk_eth_exception_action_name, 1};
const Enumeration statuses{"a status", ovk_eth_error_name, OVK_ETHERNET_E_INVALID_EXCEPTION_TYPE};
const Enumeration forwarding_modes{"a forwarding mode",
                                   ovk_eth_fwd_mode_name,
                                   OVK_ETHERNET_FWD_MODE_SWITCH_ACCESS,
                                   {{"access", OVK_ETHERNET_FWD_MODE_SWITCH_ACCESS},
                                    {"trunk", OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK},
                                    {"tunnel", OVK_ETHERNET_FWD_MODE_SWITCH_TUNNEL},
                                    {"routed", OVK_ETHERNET_FWD_MODE_HIGHER_LAYER}}};
const Enumeration rates{"a rate",
                        ovk_eth_port_rate_name,
                        OVK_ETHERNET_SPEED_10M,
                        {{"10M", OVK_ETHERNET_SPEED_10M},
                         {"100M", OVK_ETHERNET_SPEED_100M},
                         {"1G", OVK_ETHERNET_SPEED_1G},
                         {"2.5G", OVK_ETHERNET_SPEED_2_5G},
                         {"10G", OVK_ETHERNET_SPEED_10G}}};
const Enumeration duplexes{"a duplex", ovk_eth_mac_duplex_name, OVK_ETHERNET_DUPLEX_HALF};
const Enumeration pause_policies{"a policy for PAUSE frames", ovk_eth_flow_control_policy_name,
                                 OVK_ETHERNET_FLOW_CONTROL_RESPOND};
const Enumeration encapsulations{"an encapsulation", ovk_ethernet_encap_type_name, OVK_ETHERNET_ENCAP_DIX};

std::string Enumeration::prefix() const
{
    const Names all = full_names(*this);
    std::string shared = all.front().first;
    for (const auto &row : all) {
        while (!row.first.starts_with(shared))
            shared.pop_back();
    }
    return shared.substr(0, shared.rfind('_') + 1);
}

Names Enumeration::names() const
{
    const std::size_t shared = prefix().size();
    Names all = usual;
    for (const auto &[full, value] : full_names(*this)) {
        const std::string own = lower(full.substr(shared));
        if (std::none_of(all.begin(), all.end(), [&](const auto &row) { return same(row.first, own); }))
            all.emplace_back(own, value);
    }
    return all;
}

std::string Enumeration::text(u32 value) const
{
    for (const auto &row : names()) {
        if (row.second == value)
            return row.first;
    }
    return std::to_string(value);
}

Parameter number(const char *name, const char *what, u64 max, u64 min)
{
    const auto limit = static_cast<unsigned long long>(max);
    const std::string range =
        format(max < 0xFFFF ? "a number from %llu to %llu" : "a number from %llu to 0x%llx",
               static_cast<unsigned long long>(min), limit);
    return {name, *what ? what : range, {}, {}, number_within(min, max)};
}

Parameter one_of(const char *name, const Enumeration &enumeration)
{
    const Names names = enumeration.names();
    const std::string what =
        std::string(enumeration.title) + " (" + join(first_of(names)) + ", or a number)";
    return {name, what, enumeration.prefix(), fixed(names), any_number, &enumeration};
}

Parameter status(const char *name, u64 min)
{
    Names names = statuses.names();
    if (min == 0)
        names.emplace_back("ok", 0);
    const char *what = min ? "a status above 0 (a number, or a name such as invalid_priority)"
                           : "a status (ok, a number, or a name such as invalid_priority)";
    return {name, what, statuses.prefix(), fixed(names), number_within(min, 0xFFFFFFFF)};
}

Parameter choice(const char *name, const Words &words, u64 first)
{
    return {name, join(words, " or "), {}, fixed(numbered(words, first))};
}

Parameter on_off(const char *name)
{
    return choice(name, {"off", "on"});
}

Parameter word(const char *fixed)
{
    return choice(fixed, {fixed});
}

Parameter mac(const char *name)
{
    return {name, "a MAC address, as in 02:00:00:00:00:11", {}, {}, take_mac};
}

Parameter new_name(const char *name)
{
    return {name, "a name: a letter, then up to 30 letters, digits, '-' or '_'", {}, {}, take_name};
}

Parameter byte_pair(const char *name)
{
    return {name, "two bytes, as in 1.255, or a number from 0 to 0xffff", {}, {}, take_byte_pair};
}

Parameter queue(const char *name)
{
    Names names;
    for (u32 n = 0; n < sim::queue_count; ++n)
        names.emplace_back("q" + std::to_string(n), sim::first_queue + n);
    return {
        name, "a queue (q0 to q15, 0 for none, or the number of a handle)", {}, fixed(names), any_number};
}

Parameter interface(const char *name)
{
    const auto names = [](const Session &session) {
        Words known = {"0"};
        for (const auto &interface : session.interfaces)
            known.push_back(interface.first);
        return numbered(known);
    };
    return {name, "an interface: its name, or 0 for the null handle", {}, names};
}

Parameter tree(const char *name)
{
    const auto names = [](const Session &session) { return numbered(sim::trees(session.host.rte())); };
    return {name, "the name of a tree ('show trees' lists them)", programme_prefix, names};
}

Parameter function(const char *name)
{
    const auto names = [](const Session &session) { return numbered(sim::symbols(session.host.rte())); };
    return {name, "the name of a classifier function", programme_prefix, names, take_text};
}

Parameter operation(const char *name)
{
    return {name, "a platform operation that can fail", {}, fixed(numbered(sim::faults::operations()))};
}

Parameter rest(const char *name, const char *what)
{
    Parameter out{name, what};
    out.rest = true;
    return out;
}

Parameter optional(Parameter parameter)
{
    parameter.needed = false;
    return parameter;
}

Parameter key(Parameter parameter, u32 with)
{
    parameter.needed = false;
    parameter.keyed = true;
    parameter.with = with;
    return parameter;
}

Parameter needed_key(Parameter parameter)
{
    parameter.keyed = true;
    return parameter;
}

Words names_of(const Session &session, const Parameter &parameter)
{
    return parameter.names ? first_of(parameter.names(session)) : Words();
}

Value read(const Session &session, const Parameter &parameter, const std::string &word)
{
    const std::string &prefix = parameter.prefix;
    const bool in_full = same(std::string_view(word).substr(0, prefix.size()), prefix);
    const std::string brief = word.substr(in_full ? prefix.size() : 0);
    for (const auto &[name, number] : parameter.names ? parameter.names(session) : Names()) {
        if (same(brief, name))
            return {true, number, prefix + name, {}};
    }
    Value out;
    out.given = true;
    if (parameter.otherwise && parameter.otherwise(word, out))
        return out;
    if (parameter.what == parameter.name)
        throw Wrong(quoted(word) + " stands in the place of " + quoted(parameter.name));
    throw Wrong(parameter.name + ": " + quoted(word) + " isn't " + parameter.what +
                hint(near(brief, names_of(session, parameter))));
}

} // namespace shell
