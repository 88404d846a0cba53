// SPDX-License-Identifier: Apache-2.0
// What stands in the simulated chip and in the session.
#include "command.h"
#include "session.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace shell {

namespace {

std::size_t rule_count(const Session &s, const std::string &tree)
{
    const auto rules = sim::rules(s.host.rte(), tree);
    return static_cast<std::size_t>(
        std::count_if(rules.begin(), rules.end(), [](const sim::Rule &rule) { return !rule.hole; }));
}

// In the module's order when it is up; what only the module knows is a dash when it isn't.
void show_trees(Session &s, const Arguments &)
{
    std::vector<std::pair<u32, Words>> rows;
    for (const std::string &full : sim::trees(s.host.rte())) {
        const std::string name = short_name(full);
        const std::string rules = std::to_string(rule_count(s, name));
        const auto use = s.trees.find(name);
        if (use == s.trees.end())
            rows.push_back({~0U, {"-", name, "-", "-", rules}});
        else
            rows.push_back({use->second.index,
                            {std::to_string(use->second.index), name, std::to_string(use->second.key_bits),
                             use->second.database ? "yes" : "no", rules}});
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    Table table({"Index", "Tree", "Key bits", "Database", "Rules"});
    for (const auto &row : rows)
        table.add(row.second);
    table.print();
}

void show_tree(Session &s, const Arguments &a)
{
    const auto rules = sim::rules(s.host.rte(), a.text("NAME"));
    Table table({"Prefix", "Action"});
    for (const sim::Rule &rule : rules)
        table.add({rule.key.text(), sim::action_text(s.host.rte(), rule.action) +
                                        (rule.hole ? " (left by a removed rule)" : "")});
    table.print("no rules");
}

// "2:2" or "0x48:8": a value and its bits.
sim::Field field(const std::string &word)
{
    const std::size_t colon = word.find(':');
    const auto value = to_number(word.substr(0, colon));
    const auto bits = colon == word.npos ? std::nullopt : to_number(word.substr(colon + 1));
    if (!value || !bits || *bits > 64)
        throw Wrong("FIELD: " + quoted(word) + " isn't VALUE:BITS, as in 0x48:8");
    if (*bits < 64 && *value >> *bits)
        throw Wrong("FIELD: " + quoted(word) + " has a value of more bits than it says");
    return {*value, static_cast<u32>(*bits)};
}

void lookup(Session &s, const Arguments &a)
{
    std::vector<sim::Field> key;
    u64 bits = 0;
    for (const std::string &word : a.words("FIELD")) {
        key.push_back(field(word));
        bits += key.back().bits;
    }
    const std::string tree = short_name(a.text("NAME"));
    const auto use = s.trees.find(tree);
    const u64 most = use == s.trees.end() ? sim::Bits::max_length : use->second.key_bits;
    if (bits > most || (use != s.trees.end() && bits < most))
        throw Wrong("the fields have " + std::to_string(bits) + " bits; " + tree + " takes " +
                    std::to_string(most));
    const sim::Answer answer = sim::lookup(s.host.rte(), tree, key);
    const std::string action = sim::action_text(s.host.rte(), answer.action);
    if (answer.from == sim::Answer::From::miss)
        std::printf("miss: default %s\n", action.c_str());
    else
        std::printf("rule of %u bits%s: %s\n", answer.length,
                    answer.from == sim::Answer::From::hole ? ", which was removed" : "", action.c_str());
}

// Lines of an image as "port GMAC17 vlan[0x1] = ...", "tree NAME rule KEY -> ...", "vlan_vps[0x1] = ...": a
// row for all that differ in port, key and index alone, which say where.
void show_changes(Session &s, const Arguments &)
{
    constexpr std::size_t most = 6;
    std::map<std::string, std::set<std::string>> rows;
    for (const std::string &line : sim::image_diff(s.chip_at_start, s.host.image())) {
        const Words words =
            split(std::string_view(line).substr(0, std::min(line.find(" = "), line.find(" -> "))));
        const bool port = words[1].ends_with("port");
        Words fact = {words[0], words[1]};
        if (words.size() > 3)
            fact.push_back(short_name(words[port ? 3 : 2]));
        const std::string what = join(fact, " ");
        const std::size_t index = std::min(what.find('['), what.size());
        const bool by_index = !port && index < what.size();
        const std::string where = port ? words[2] : by_index ? what.substr(index) : words.back();
        rows[what.substr(0, index)].insert(where);
    }
    Table table({"Change", "Where"});
    for (const auto &[what, all] : rows) {
        Words places(all.begin(), all.end());
        const std::size_t more = places.size() - std::min(places.size(), most);
        places.resize(places.size() - more);
        table.add({what, join(places) + (more ? " and " + std::to_string(more) + " more" : "")});
    }
    table.print("no changes");
}

void show_status(Session &s, const Arguments &)
{
    const ovk_module *module = s.host.module();
    const u32 depth = sim::lock_depth(s.host.lock()).value_or(0);
    std::printf("module handle  %s\n", module->module_object ? "valid" : "not valid");
    std::printf("log mask       0x%x, global 0x%x\n", module->log_mask, s.host.parent()->global_log_mask);
    std::printf("module lock    %s\n", depth ? ("held, depth " + std::to_string(depth)).c_str() : "free");
    std::printf("heap           %zu blocks, %zu bytes\n", sim::heap::live_blocks(),
                sim::heap::live_bytes());
    std::printf("misuse         %u\n", s.misuses);
    std::printf("library        %s\n", s.origin.c_str());
}

} // namespace

void add_show_commands(CommandTable &table)
{
    table.group("Classifier and module");
    table.add("show trees", {}, "Lists the classifier's trees.", "", show_trees);
    table.add("show tree", {tree("NAME")}, "Lists the rules of a tree.", "OUT_VLAN_Look_up", show_tree);
    table.add("lookup", {tree("NAME"), rest("FIELD", "the fields of the key in order, each VALUE:BITS")},
              "Looks a key up as the classifier does: longest prefix.", "OUT_VLAN_Look_up 0x11:8 1:12",
              lookup);
    table.add("show changes", {},
              "Lists what has come (+) and gone (-) on the chip since the module's last start.", "",
              show_changes);
    table.add("show status", {}, "Shows how module, lock and heap stand.", "", show_status);
}

} // namespace shell
