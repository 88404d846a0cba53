// SPDX-License-Identifier: Apache-2.0
// Ports and VLANs as they stand in the chip's registers and trees. Only names are the shell's own.
#include "command.h"
#include "session.h"

#include <bit>
#include <cstdio>

namespace shell {

namespace {

constexpr u32 port_bits = 8;
constexpr u32 group_bits = 12;
constexpr u32 vlan_ids = 4096;

const char *on_off_text(u32 value)
{
    return value ? "on" : "off";
}

std::string mac_text(const sim::Mac &mac)
{
    return format("%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

std::string or_dash(const std::string &text)
{
    return text.empty() ? "-" : text;
}

// The name of the port in service on a MAC channel, else the channel's.
std::string port_name(const Session &s, u32 channel)
{
    for (const auto &[name, interface] : s.interfaces) {
        if (!interface.dead && s.channel(name) == channel)
            return name;
    }
    return sim::channel_name(channel);
}

// The members of a set of virtual ports, which are the ports' indices in the switch.
std::string set_text(const Session &s, u64 set)
{
    std::map<u32, std::string> names;
    for (const u32 channel : sim::channels()) {
        if (const auto index = sim::switch_port(s.host.rte(), channel).logical_port)
            names[*index] = port_name(s, channel);
    }
    Words members;
    for (u32 index = 0; index < 64; ++index) {
        if (set >> index & 1)
            members.push_back(names.count(index) ? names[index] : format("vp%u", index));
    }
    return or_dash(join(members));
}

// What the classifier's rules know an interface by: its number, its mode, and bits.
std::optional<u32> flags_of(const Session &s, const char *tree, u32 key)
{
    const auto rule = sim::rule(s.host.rte(), tree, {{key, port_bits}});
    return rule ? std::optional<u32>(rule->w2) : std::nullopt;
}

std::string mode_text(u32 flags)
{
    constexpr u32 shift = 8;
    constexpr u32 mask = 7;
    return forwarding_modes.text(flags >> shift & mask);
}

const char *bit_text(const std::optional<u32> &flags, u32 bit, const char *clear = "off",
                     const char *set = "on")
{
    return !flags ? "-" : *flags >> bit & 1 ? set : clear;
}

const char *admin_text(const sim::Port &port)
{
    return port.rx && port.tx ? "up" : port.rx ? "rx only" : port.tx ? "tx only" : "down";
}

std::string vlan_text(u32 vlan)
{
    return vlan ? std::to_string(vlan) : "untagged";
}

void show_ports(Session &s, const Arguments &)
{
    Table table({"Port", "Number", "Channel", "Mode", "Admin", "Speed", "Duplex", "MAC address", "VLANs"});
    for (const sim::Rule &rule : sim::rules(s.host.rte(), "Map_Output_Port_NameSpace_Id")) {
        const auto number = static_cast<u32>(rule.key.words[0] >> (64 - port_bits));
        const auto channel = sim::channel_of(number);
        if (rule.hole || !channel)
            continue;
        const sim::Port port = sim::port(s.host.rte(), *channel);
        table.add({port_name(s, *channel), format("0x%02x", number), sim::channel_name(*channel),
                   mode_text(rule.action.w2), admin_text(port), rates.text(port.speed),
                   duplexes.text(port.duplex), mac_text(port.mac), std::to_string(port.cvlans.size())});
    }
    table.print("no ports in service");
}

void add_mac_rows(Table &table, const sim::Port &port)
{
    const auto &pause = port.flow_control;
    const auto policy = static_cast<u32>(std::countr_zero(pause.policy_bit)) + 1;
    Words passed;
    for (const sim::Mac &mac : port.unicast_macs) {
        if (passed.empty() || passed.back() != mac_text(mac))
            passed.push_back(mac_text(mac));
    }
    table.add({"Admin", format("%s (receiver %s, transmitter %s)", admin_text(port), on_off_text(port.rx),
                               on_off_text(port.tx))});
    table.add({"Speed", rates.text(port.speed) + ", " + duplexes.text(port.duplex) + " duplex"});
    table.add({"MAC address", mac_text(port.mac)});
    table.add({"Unicast filter", on_off_text(port.unicast_filter)});
    table.add({"Unicast list", join(passed)});
    table.add({"Broadcast filter", on_off_text(port.broadcast_filter)});
    table.add(
        {"Flow control",
         pause.enable ? format("%s, %u quanta", pause_policies.text(policy).c_str(), pause.time) : "off"});
    table.add({"FCS", format("append %s, check %s, strip %s", on_off_text(port.crc.append),
                             on_off_text(port.crc.check), on_off_text(port.crc.strip))});
}

void add_vlan_rows(Table &table, const sim::Port &port)
{
    const auto &[untagged, tagged] = port.pipelines;
    Words priorities;
    Words members;
    Words maps;
    for (const u8 priority : tagged.params.pcp_task_priority)
        priorities.push_back(std::to_string(priority));
    for (const auto &[vlan, flag] : port.vlans)
        members.push_back(std::to_string(vlan));
    for (const auto &[vlan, group] : port.cvlans)
        maps.push_back(vlan_text(vlan) + " to " + std::to_string(group));
    table.add({"Untagged frames",
               port.parsing_options.untagged_discard == 1 ? "dropped" : "to " + or_dash(untagged.name)});
    table.add({"Tagged frames", "to " + or_dash(tagged.name)});
    table.add({"Task priorities", "by PCP " + join(priorities, " ") +
                                      format(", default %u", tagged.params.default_task_priority)});
    table.add({"VLAN to BG", or_dash(join(maps))});
    table.add({"Default BG", port.default_vlan ? std::to_string(*port.default_vlan) : "-"});
    table.add({"Member of BGs", or_dash(join(members))});
}

void add_switch_rows(Table &table, const Session &s, u32 number, const sim::SwitchPort &port)
{
    constexpr u32 llc_snap_bit = 16;
    constexpr u32 filter_bit = 17;
    constexpr u32 seconds_in_step = 5;
    constexpr u32 seconds_per_minute = 60;
    const auto in = flags_of(s, "Map_Input_Port_NameSpace_Id", port.logical_port.value_or(~0U));
    const auto out = flags_of(s, "Map_Output_Port_NameSpace_Id", number);
    const auto ageing = sim::rule(s.host.rte(), "MAC_aging_timer", {{number, port_bits}});
    table.add({"Learning", on_off_text(port.learn)});
    table.add({"Ageing", format("switch %u s, classifier ", port.bridge_attrs.max_age * seconds_in_step) +
                             (ageing ? format("%u minutes", ageing->w1 / seconds_per_minute) : "default")});
    table.add({"Flooding", on_off_text(port.bridge_attrs.flooding)});
    table.add({"Flow look-up",
               std::string("in ") + bit_text(in, filter_bit) + ", out " + bit_text(out, filter_bit)});
    table.add({"Encapsulation", bit_text(out, llc_snap_bit, "dix", "llc_snap")});
}

void show_port(Session &s, const Arguments &a)
{
    const std::string &name = a.text("NAME");
    const u32 channel = s.channel(name);
    const Interface &interface = s.interfaces.at(name);
    const sim::Port port = sim::port(s.host.rte(), channel);
    const sim::SwitchPort switch_port = sim::switch_port(s.host.rte(), channel);
    const auto flags = flags_of(s, "Map_Output_Port_NameSpace_Id", interface.number);
    const auto index = switch_port.logical_port;
    const std::string owner = port_name(s, channel);
    Table table({"Port", !interface.dead ? name
                         : owner == sim::channel_name(channel)
                             ? name + " (deleted: this is left in the chip)"
                             : name + " (deleted: the port is now " + owner + ")"});
    table.add(
        {"Number", format("0x%02x, channel %s, ", interface.number, sim::channel_name(channel).c_str()) +
                       (index ? format("index %u in the switch", *index) : "not in the switch")});
    table.add({"Mode", flags ? mode_text(*flags) : "-"});
    add_mac_rows(table, port);
    add_vlan_rows(table, port);
    add_switch_rows(table, s, interface.number, switch_port);
    table.print();
}

// How frames of a group leave a port: the tag, and whether it replaces one. Group 0's rule is a prefix of
// all others of the port.
Words egress_cells(const Session &s, u32 number, u32 group)
{
    constexpr u32 tagged = 0x1000;
    constexpr u32 rewrite = 0x2000;
    const auto answer =
        sim::lookup(s.host.rte(), "OUT_VLAN_Look_up", {{number, port_bits}, {group, group_bits}});
    if (answer.from != sim::Answer::From::rule)
        return {"-", "-"};
    const u32 word = answer.action.w1;
    return {(word & tagged ? std::to_string(word & 0xFFF) : "no") +
                (group != 0 && answer.length == port_bits ? " (as BG 0)" : ""),
            word & rewrite ? "yes" : "no"};
}

void show_vlans(Session &s, const Arguments &)
{
    const kor_rte rte = s.host.rte();
    std::map<u32, std::map<u32, Words>> groups; // VLANs by group and port number
    for (u32 number = 0; number < 1U << port_bits; ++number) {
        const auto channel = sim::channel_of(number);
        const sim::Port port = channel ? sim::port(rte, *channel) : sim::Port();
        for (const auto &[vlan, group] : port.cvlans)
            groups[group][number].push_back(vlan_text(vlan));
    }
    for (const sim::Rule &rule : sim::rules(rte, "OUT_VLAN_Look_up")) {
        const u64 key = rule.key.words[0];
        if (!rule.hole)
            groups[static_cast<u32>(key << port_bits >> (64 - group_bits))]
                  [static_cast<u32>(key >> (64 - port_bits))];
    }
    for (u32 vlan = 0; vlan < vlan_ids; ++vlan) {
        if (sim::vlan_vps(rte, vlan))
            groups[vlan];
    }
    Table table({"BG", "Members", "Port", "VLANs", "Tagged", "Rewrite"});
    for (const auto &[group, ports] : groups) {
        Words start = {std::to_string(group), set_text(s, sim::vlan_vps(rte, group).value_or(0))};
        if (ports.empty())
            table.add({start[0], start[1], "-", "-", "-", "-"});
        for (const auto &[number, vlans] : ports) {
            const auto channel = sim::channel_of(number);
            const std::string name = channel ? port_name(s, *channel) : format("0x%02x", number);
            const Words egress = egress_cells(s, number, group);
            table.add({start[0], start[1], name, or_dash(join(vlans)), egress[0], egress[1]});
            start = {"", ""};
        }
    }
    table.print("no VLANs");
}

} // namespace

void add_port_show_commands(CommandTable &table)
{
    table.group("What the chip has");
    table.add("show ports", {}, "Lists the ports in service.", "", show_ports);
    table.add("show port", {interface("NAME")}, "Shows a port's settings, also those that a delete left.",
              "p1", show_port);
    table.add("show vlans", {},
              "Lists the bridge groups (BG): their ports in the switch, the VLANs bound to them on the way "
              "in, the tags on the way out.",
              "", show_vlans);
}

} // namespace shell
