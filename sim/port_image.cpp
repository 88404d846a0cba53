// SPDX-License-Identifier: Apache-2.0
/* MAC channels as lines of a chip's image: what differs from power-on. */
#include "call.h"

namespace sim {

namespace {

using Facts = std::map<std::string, std::string>;

template <class Record>
std::string record_text(const Record &record)
{
    return hex(&record, sizeof record);
}

std::string number(u64 value)
{
    return format("0x%llx", static_cast<unsigned long long>(value));
}

template <class Counters>
void add_counters(Facts &facts, const char *name, const Counters &counters)
{
    for (u32 index = 0; index < counters.size(); ++index) {
        if (counters[index])
            facts[format("%s[%u]", name, index)] = number(counters[index]);
    }
}

Facts facts_of(const Port &port)
{
    const auto pipeline = [](const Port::Pipeline &to) {
        return to.name.empty() ? "none" : '"' + to.name + "\" " + record_text(to.params);
    };
    Facts facts{
        {"rx", number(port.rx)},
        {"tx", number(port.tx)},
        {"speed", number(port.speed)},
        {"duplex", number(port.duplex)},
        {"flow_control", format("enable 0x%x policy 0x%x time 0x%x", port.flow_control.enable,
                                port.flow_control.policy_bit, port.flow_control.time)},
        {"mac", record_text(port.mac)},
        {"unicast_filter", number(port.unicast_filter)},
        {"broadcast_filter", number(port.broadcast_filter)},
        {"qinq", number(port.qinq)},
        {"crc",
         format("append 0x%x check 0x%x strip 0x%x", port.crc.append, port.crc.check, port.crc.strip)},
        {"tag_offsets", format("start 0x%x stop 0x%x", port.tag.start, port.tag.stop)},
        {"tag_msb", number(port.tag.msb)},
        {"tag_enable", number(port.tag.enable)},
        {"untagged_pipeline", pipeline(port.pipelines[0])},
        {"tagged_pipeline", pipeline(port.pipelines[1])},
        {"ingress_options", record_text(port.ingress_options)},
        {"parsing_options", record_text(port.parsing_options)},
        {"counter_regs_clear", number(port.counter_regs_clear)},
    };
    for (u32 index = 0; index < port.unicast_macs.size(); ++index)
        facts[format("unicast_mac[%u]", index)] = record_text(port.unicast_macs[index]);
    for (const auto &[vlan, flag] : port.vlans)
        facts[format("vlan[0x%x]", vlan)] = format("flag 0x%x", flag);
    for (const auto &[cvlan, vlan] : port.cvlans)
        facts[format("cvlan[0x%x]", cvlan)] = format("vlan 0x%x", vlan);
    if (port.default_vlan)
        facts["default_vlan"] = number(*port.default_vlan);
    add_counters(facts, "tx_counter", port.tx_counters);
    add_counters(facts, "rx_counter", port.rx_counters);
    add_counters(facts, "counter_reg", port.counter_regs);
    return facts;
}

Facts facts_of(const SwitchPort &port)
{
    Facts facts{
        {"learn", number(port.learn)},
        {"learn_attrs", record_text(port.learn_attrs)},
        {"bridge_attrs", record_text(port.bridge_attrs)},
        {"acl", record_text(port.acl)},
        {"acl_in_force", record_text(port.acl_in_force)},
        {"unknown_multicast", number(port.unknown_multicast)},
        {"source_vps", number(port.source_vps)},
    };
    if (port.logical_port)
        facts["logical_port"] = number(*port.logical_port);
    return facts;
}

void add_changes(std::vector<std::string> &lines, const std::string &where, const Facts &before,
                 const Facts &now)
{
    for (const auto &[name, value] : now) {
        const auto at = before.find(name);
        if (at == before.end() || at->second != value)
            lines.push_back(std::string(where).append(name).append(" = ").append(value));
    }
}

} // namespace

void add_port_lines(std::vector<std::string> &lines, const Chip &on)
{
    for (const auto &[channel, port] : on.ports)
        add_changes(lines, "port " + channel_name(channel) + " ", facts_of(power_on_port(channel)),
                    facts_of(port));
    const Facts switch_facts = facts_of(power_on_switch_port());
    for (const auto &[channel, port] : on.switch_ports)
        add_changes(lines, "switch_port " + channel_name(channel) + " ", switch_facts, facts_of(port));
    const std::string bridging_before = record_text(power_on_bridging_vp());
    for (const auto &[id, record] : on.bridging_vps) {
        if (record_text(record) != bridging_before)
            lines.push_back(format("bridging_vp 0x%x = ", id) + record_text(record));
    }
    for (const auto &[index, ports] : on.destination_vps) {
        if (ports)
            lines.push_back(format("destination_vps[0x%x] = ", index) + number(ports));
    }
    for (const auto &[vlan, ports] : on.vlan_vps)
        lines.push_back(format("vlan_vps[0x%x] = ", vlan) + number(ports));
}

} // namespace sim
