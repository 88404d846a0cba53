// SPDX-License-Identifier: Apache-2.0
#include "call.h"
#include "chip.h"

#include <algorithm>

namespace sim {

namespace {

using Lines = std::vector<std::string>;

void add_rules(Lines &lines, const Chip &on, const std::string &where, const std::vector<Rule> &rules)
{
    for (const Rule &rule : rules)
        lines.push_back(where + (rule.hole ? " hole " : " rule ") + rule.key.text() + " -> " +
                        text(on, rule.action));
}

void add_memory(Lines &lines, const char *what, const Memory &memory)
{
    for (const auto &[id, bytes] : memory) {
        const auto last =
            std::find_if(bytes.rbegin(), bytes.rend(), [](u8 byte) { return byte != 0; }).base();
        if (last != bytes.begin()) // trailing zeros are as good as never written
            lines.push_back(format("%s 0x%x = ", what, id) + hex(bytes.data(), last - bytes.begin()));
    }
}

void add_ordered(Lines &lines, const Chip &on, const Symbol &symbol)
{
    const auto add = [&](const std::string &where, const std::vector<OrderedRule> &rules) {
        for (u32 index = 0; index < rules.size(); ++index) {
            std::string line = where + format(" %04u", index);
            for (const Bits &field : rules[index].fields)
                line += ' ' + field.text();
            lines.push_back(line + " -> " + text(on, rules[index].action));
        }
    };
    for (const auto &[selector, list] : symbol.ordered->lists) {
        const std::string name = "list " + symbol.name + format("[0x%x]", selector);
        add(name + " edited", list.edited);
        add(name + " in force", list.in_force);
    }
}

void add_flow_data(Lines &lines, const FlowData &data)
{
    for (const auto &[place, bytes] : data) {
        if (std::any_of(bytes.begin(), bytes.end(), [](u8 byte) { return byte != 0; }))
            lines.push_back("flow_data " + pipeline_name(place[0]) +
                            format(" bank %u index 0x%x = ", place[1], place[2]) +
                            hex(bytes.data(), bytes.size()));
    }
}

void add_service(Lines &lines, const Service &service)
{
    const ovk_service_record &record = service.record;
    std::string slots;
    const auto slot = [&slots](const char *name, bool filled) {
        slots += filled ? std::string(" ") + name : "";
    };
    slot("shutdown", record.shutdown);
    slot("custom_bind", record.custom_bind);
    slot("custom_unbind", record.custom_unbind);
    slot("get_imc", record.get_imc);
    slot("get_entry_func", record.get_entry_func);
    slot("sys_log", record.sys_log);
    slot("error_name", record.error_name);
    lines.push_back("service " + service.module_name + slots +
                    format(" indirect 0x%x direct 0x%x", record.indirect_fn_id, record.direct_fn_id));
}

Lines split(const std::string &image)
{
    Lines lines;
    for (std::size_t begin = 0, end = 0; begin < image.size(); begin = end + 1) {
        end = std::min(image.find('\n', begin), image.size());
        lines.push_back(image.substr(begin, end - begin));
    }
    return lines;
}

} // namespace

std::string image(kor_rte rte)
{
    const Guard guard;
    const Chip &on = asked_chip(rte);
    Lines lines;
    for (const Symbol &symbol : on.programme) {
        if (symbol.tree)
            add_rules(lines, on, "tree " + symbol.name, symbol.tree->rules().list());
        if (symbol.ordered)
            add_ordered(lines, on, symbol);
    }
    for (const auto &[handle, db] : world().databases) {
        if (db.rte != rte)
            continue;
        const std::string name = format("database 0x%x", handle);
        lines.push_back(name + format(" width %u", db.width));
        if (db.root)
            lines.push_back(name + " root -> " + text(on, *db.root));
        add_rules(lines, on, name, db.entries.list());
    }
    for (const auto &[handle, ns] : world().namespaces) {
        if (handle && ns.rte != rte)
            continue;
        if (ns.created)
            lines.push_back("namespace " + ns.name + format(" of %zu ids", ns.taken.size()));
        for (u32 index = 0; index < ns.taken.size(); ++index) {
            if (ns.taken[index])
                lines.push_back("namespace " + ns.name + format(" id 0x%x", ns.first_id + index));
        }
    }
    add_memory(lines, "state", on.state);
    add_memory(lines, "shared", on.shared);
    add_flow_data(lines, on.flow_data);
    add_port_lines(lines, on);
    for (const auto &[port, function] : on.demux)
        lines.push_back(format("demux 0x%x -> ", port) + on.function_name(function));
    for (const auto &entry : on.bridge)
        lines.push_back("bridge " + hex(&entry.second, sizeof entry.second));
    for (const auto &[name, value] : on.registers)
        lines.push_back("register " + name + format(" = 0x%llx", static_cast<unsigned long long>(value)));
    for (const auto &service : on.services)
        add_service(lines, service.second);
    for (const std::string &name : on.hidden)
        lines.push_back("hidden " + name);

    std::sort(lines.begin(), lines.end());
    std::string out;
    for (const std::string &line : lines)
        out += line + '\n';
    return out;
}

std::vector<std::string> image_diff(const std::string &before, const std::string &after)
{
    const Lines old_lines = split(before);
    const Lines new_lines = split(after);
    Lines out;
    const auto add = [&out](const char *mark, const Lines &in, const Lines &without) {
        Lines only;
        std::set_difference(in.begin(), in.end(), without.begin(), without.end(), std::back_inserter(only));
        for (const std::string &line : only)
            out.push_back(mark + line);
    };
    add("- ", old_lines, new_lines);
    add("+ ", new_lines, old_lines);
    return out;
}

} // namespace sim
