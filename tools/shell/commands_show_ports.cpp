// SPDX-License-Identifier: Apache-2.0
// Ports and VLANs as they stand in the chip's registers and trees. Names are the shell's own.
#include "command.h"
#include "session.h"

#include <cstdio>
#include <cstring>

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

std::string number_text(const auto &number)
{
    return number ? std::to_string(*number) : "none";
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
    return members.empty() ? "none" : join(members);
}

void show_ports(Session &s, const Arguments &)
{
    std::map<u32, Words> rows; // by number
    for (const auto &[name, interface] : s.interfaces) {
        if (interface.dead)
            continue;
        const u32 channel = s.channel(name);
        const sim::Port port = sim::port(s.host.rte(), channel);
        const std::string index = number_text(sim::switch_port(s.host.rte(), channel).logical_port);
        rows[interface.number] =
            split(format("%s 0x%02x %s %s %s %s %s %s %s %zu", name.c_str(), interface.number,
                         forwarding_modes.text(interface.mode).c_str(), index.c_str(),
                         sim::channel_name(channel).c_str(), rates.text(port.speed).c_str(),
                         duplexes.text(port.duplex).c_str(), on_off_text(port.rx), on_off_text(port.tx),
                         port.cvlans.size()));
    }
    Table table({"name", "port", "mode", "index", "channel", "rate", "duplex", "rx", "tx", "VLANs"});
    for (const auto &row : rows)
        table.add(row.second);
    table.print("no ports in service");
}

void add_mac_rows(Table &table, const sim::Port &port)
{
    const auto &[append, check, strip] = port.crc;
    const auto &pause = port.flow_control;
    Words passed;
    for (const sim::Mac &mac : port.unicast_macs)
        passed.push_back(mac_text(mac));
    table.add({"address", mac_text(port.mac)});
    table.add(
        {"enabled", format("receiver %s, transmitter %s", on_off_text(port.rx), on_off_text(port.tx))});
    table.add({"rate", rates.text(port.speed) + ", " + duplexes.text(port.duplex) + " duplex"});
    table.add({"PAUSE frames", format("%s, policy bit 0x%x, %u quanta", on_off_text(pause.enable),
                                      pause.policy_bit, pause.time)});
    table.add({"unicast filter", on_off_text(port.unicast_filter) + (", for " + join(passed))});
    table.add({"broadcast filter", on_off_text(port.broadcast_filter)});
    table.add({"check sequences", format("append %s, check %s, strip %s", on_off_text(append),
                                         on_off_text(check), on_off_text(strip))});
}

void add_ingress_rows(Table &table, const sim::Port &port)
{
    const char *kinds[] = {"untagged frames", "tagged frames"};
    for (u32 tagged = 0; tagged < port.pipelines.size(); ++tagged) {
        const auto &[name, params] = port.pipelines[tagged];
        Words priorities;
        for (const u8 priority : params.pcp_task_priority)
            priorities.push_back(std::to_string(priority));
        table.add({kinds[tagged], "to " + (name.empty() ? "no pipeline" : name) + ", task priorities " +
                                      join(priorities, " ") +
                                      format(", default %u", params.default_task_priority)});
    }
    const auto &tag = port.tag;
    table.add({"adapter's tag", format("%s, from %u to %u, most significant part 0x%x",
                                       on_off_text(tag.enable), tag.start, tag.stop, tag.msb)});
    table.add({"Q-in-Q", on_off_text(port.qinq)});
    const auto &ingress = port.ingress_options;
    table.add({"ingress", format("switch mode %u, bridging %u; bytes 1, 20, 21: %u %u %u", ingress.hsw_mode,
                                 ingress.bridging, ingress.byte_1, ingress.byte_20, ingress.byte_21)});
    const auto &parsing = port.parsing_options;
    table.add({"parsing",
               format("untagged frames %s; bytes 3, 4: %u %u",
                      parsing.untagged_discard ? "dropped" : "taken", parsing.byte_3, parsing.byte_4)});
    Words vlans;
    for (const auto &[vlan, flag] : port.vlans)
        vlans.push_back(format(flag ? "%u (flag %u)" : "%u", vlan, flag));
    table.add({"VLANs of the switch", vlans.empty() ? "none" : join(vlans)});
    Words maps;
    for (const auto &[vlan, group] : port.cvlans)
        maps.push_back(format("%u to %u", vlan, group));
    table.add({"VLAN map", maps.empty() ? "none" : join(maps)});
    table.add({"default VLAN", number_text(port.default_vlan)});
}

void add_switch_rows(Table &table, const Session &s, const sim::SwitchPort &port)
{
    constexpr u32 seconds_in_step = 5;
    const auto &learn = port.learn_attrs;
    const auto &bridge = port.bridge_attrs;
    const auto &acl = port.acl;
    table.add({"index in the switch", number_text(port.logical_port)});
    table.add({"learning", format("%s; bytes 5 to 9: %u %u %u %u %u", on_off_text(port.learn), learn.byte_5,
                                  learn.byte_6, learn.byte_7, learn.byte_8, learn.byte_9)});
    table.add(
        {"maximum age", format("%u s; byte 11: %u", bridge.max_age * seconds_in_step, bridge.byte_11)});
    table.add({"flooding", std::to_string(bridge.flooding)});
    table.add({"unknown multicast", format("to destination %u", port.unknown_multicast)});
    table.add({"access list",
               format("words 56, 60: %u %u; bytes 98, 99: %u %u; %s", acl.word_56, acl.word_60, acl.byte_98,
                      acl.byte_99,
                      std::memcmp(&acl, &port.acl_in_force, sizeof acl) ? "not built" : "in force")});
    table.add({"source set", set_text(s, port.source_vps)});
}

// What the classifier's trees say of the port.
void add_classifier_rows(Table &table, const Session &s, u32 index, u32 number)
{
    constexpr u32 filter_bit = 17;
    constexpr u32 seconds_per_minute = 60;
    const auto value = [&](const char *tree, u32 key) {
        return sim::lookup(s.host.rte(), tree, {{key, port_bits}}).action;
    };
    table.add({"flow look-up",
               format("in %s, out %s",
                      on_off_text(value("Map_Input_Port_NameSpace_Id", index).w2 >> filter_bit & 1),
                      on_off_text(value("Map_Output_Port_NameSpace_Id", number).w2 >> filter_bit & 1))});
    table.add({"ageing", format("%u minutes", value("MAC_aging_timer", number).w1 / seconds_per_minute)});
}

void show_port(Session &s, const Arguments &a)
{
    const std::string &name = a.text("NAME");
    const u32 channel = s.channel(name);
    const Interface &interface = s.interfaces.at(name);
    const sim::Port port = sim::port(s.host.rte(), channel);
    const sim::SwitchPort switch_port = sim::switch_port(s.host.rte(), channel);
    Table table(
        {name, format("port 0x%02x, %s, %s%s", interface.number,
                      forwarding_modes.text(interface.mode).c_str(), sim::channel_name(channel).c_str(),
                      interface.dead ? ", deleted: this is left in the chip" : "")});
    add_mac_rows(table, port);
    add_ingress_rows(table, port);
    add_switch_rows(table, s, switch_port);
    add_classifier_rows(table, s, switch_port.logical_port.value_or(0), interface.number);
    table.print();
}

// Group 0's rule is a prefix of all others of the port.
std::string egress_text(const Session &s, u32 number, u32 group)
{
    constexpr u32 tagged = 0x1000;
    constexpr u32 rewrite = 0x2000;
    const auto answer =
        sim::lookup(s.host.rte(), "OUT_VLAN_Look_up", {{number, port_bits}, {group, group_bits}});
    if (answer.from != sim::Answer::From::rule)
        return "-";
    const u32 word = answer.action.w1;
    return (word & tagged ? format("tag %u", word & 0xFFF) : "untagged") +
           (word & rewrite ? ", rewritten" : "") +
           (group != 0 && answer.length == port_bits ? " (as group 0)" : "");
}

void show_vlans(Session &s, const Arguments &)
{
    const kor_rte rte = s.host.rte();
    std::map<u32, std::map<u32, Words>> groups; // VLANs by group and port number
    for (u32 number = 0; number < 1U << port_bits; ++number) {
        const auto channel = sim::channel_of(number);
        const sim::Port port = channel ? sim::port(rte, *channel) : sim::Port();
        for (const auto &[vlan, group] : port.cvlans)
            groups[group][number].push_back(vlan ? std::to_string(vlan) : "untagged");
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
    Table table({"group", "ports in the switch", "port", "VLANs", "leaves"});
    for (const auto &[group, ports] : groups) {
        Words start = {std::to_string(group), set_text(s, sim::vlan_vps(rte, group).value_or(0))};
        if (ports.empty())
            table.add({start[0], start[1], "-", "-", "-"});
        for (const auto &[number, vlans] : ports) {
            const auto channel = sim::channel_of(number);
            table.add({start[0], start[1], channel ? port_name(s, *channel) : format("0x%02x", number),
                       vlans.empty() ? "-" : join(vlans), egress_text(s, number, group)});
            start = {"", ""};
        }
    }
    table.print("no VLANs");
}

} // namespace

const Commands &port_show_commands()
{
    static const Commands rows = {
        {"show ports", {}, "Lists the ports in service.", show_ports},
        {"show port",
         {interface("NAME")},
         "Shows a port's registers, also those that a delete left.",
         show_port},
        {"show vlans",
         {},
         "Lists the bridge groups: their ports in the switch, the VLANs bound to them, the tags on the way "
         "out.",
         show_vlans},
    };
    return rows;
}

} // namespace shell
