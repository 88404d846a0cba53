// SPDX-License-Identifier: Apache-2.0
// Ports: their life, their MACs, the VLANs that they carry.
#include "handlers.h"

#include <array>
#include <cstdio>

namespace shell {

namespace {

sim::Mac octets(u64 mac)
{
    sim::Mac out;
    for (u32 i = 0; i < out.size(); ++i)
        out[i] = static_cast<u8>(mac >> 8 * (out.size() - 1 - i));
    return out;
}

ovk_ethernet_intf_attrs attributes(const Arguments &a)
{
    constexpr u64 local_address = 0x020000000000;
    ovk_ethernet_intf_attrs out{};
    out.if_num = a.number("PORT");
    const auto channel = sim::channel_of(out.if_num);
    const bool fast = channel && sim::channel_name(*channel).starts_with("XGMAC");
    out.fwd_mode = a.number("MODE");
    out.output_rate = a.number("RATE", fast ? OVK_ETHERNET_SPEED_10G : OVK_ETHERNET_SPEED_1G);
    out.tx_enable = static_cast<u8>(a.number("tx", 1));
    out.rx_enable = static_cast<u8>(a.number("rx", 1));
    out.full_duplex = a.number("duplex", OVK_ETHERNET_DUPLEX_FULL) == OVK_ETHERNET_DUPLEX_FULL ? 1 : 0;
    out.autoneg = static_cast<u8>(a.number("autoneg", out.output_rate == OVK_ETHERNET_SPEED_10G ? 0 : 1));
    const sim::Mac mac = octets(a.given("mac") ? a.wide("mac") : local_address | (out.if_num & 0xFF));
    std::copy(mac.begin(), mac.end(), out.src_mac);
    out.encap_type = a.number("encap", OVK_ETHERNET_ENCAP_DIX);
    return out;
}

void interface_create(Session &s, const Arguments &a)
{
    const std::string &name = a.text("NAME");
    const auto known = s.interfaces.find(name);
    if (known != s.interfaces.end() && !known->second.dead)
        throw Failure(name + " is in service; a name is free again when its interface is deleted");
    const ovk_ethernet_intf_attrs attrs = attributes(a);
    ovk_ethernet_if_handle handle = nullptr;
    s.call(&Calls::ovk_ethernet_interface_create, &attrs, &handle);
    if (handle) // also when only the lock couldn't be given back
        s.interfaces[name] = {handle, attrs.if_num, false};
}

void interface_delete(Session &s, const Arguments &a)
{
    const u32 status = s.call(&Calls::ovk_ethernet_interface_delete, interface_of(s, a));
    const auto at = s.interfaces.find(a.text("NAME"));
    if (at != s.interfaces.end() && (status == 0 || status == OVK_E_LOCK_RELEASE))
        at->second.dead = true;
}

void interface_find(Session &s, const Arguments &a)
{
    ovk_ethernet_if_handle handle = nullptr;
    if (s.call(&Calls::ovk_ethernet_interface_handle_get, a.number("PORT"), &handle) == 0)
        std::puts(s.name_of(handle).empty() ? "one without a name" : s.name_of(handle).c_str());
}

void receive_mac(Session &s, const Arguments &a)
{
    const sim::Mac mac = octets(a.wide("MAC"));
    const bool add = a.text("WHAT") == "add";
    if (add != a.given("MAC"))
        throw Wrong(add ? "MAC is missing: the address to add" : "there is one address: 'del' takes none");
    if (add)
        s.call(&Calls::ovk_ethernet_recv_mac_add, interface_of(s, a), mac.data());
    else
        s.call(&Calls::ovk_ethernet_recv_mac_del, interface_of(s, a));
}

template <auto function>
void get(Session &s, const Arguments &a)
{
    u32 number = 0;
    if (s.call(function, interface_of(s, a), &number) == 0)
        std::printf("0x%x\n", number);
}

void port_channel(Session &s, const Arguments &a)
{
    u32 channel = 0;
    if (s.call(&Calls::ovk_ethernet_mac_channel_get, interface_of(s, a), &channel) == 0)
        std::printf("%u %s\n", channel, sim::channel_name(channel).c_str());
}

void port_status(Session &s, const Arguments &a)
{
    constexpr u32 all = 0x3F;
    ovk_ethernet_port_status status{};
    if (s.call(&Calls::ovk_ethernet_port_status_get, interface_of(s, a), a.number("blocking"),
               a.number("mask", all), &status) == 0)
        std::printf("configured %u, up %u, remote fault %u, auto-negotiation complete %u, %s, %s duplex\n",
                    status.port_configured, status.port_up, status.remote_fault, status.autoneg_complete,
                    rates.text(status.speed).c_str(), duplexes.text(status.duplex).c_str());
}

void port_priorities(Session &s, const Arguments &a)
{
    std::array<u8, 8> map{};
    const Words &words = a.words("PRIORITY");
    if (words.size() != map.size())
        throw Wrong("PRIORITY: " + std::to_string(words.size()) + " of 8 are there");
    std::transform(words.begin(), words.end(), map.begin(), [&](const std::string &word) {
        return static_cast<u8>(read(s, number("PRIORITY", "", 0xFF), word).number);
    });
    s.call(&Calls::ovk_ethernet_pcp_to_task_pri_map, map.data());
}

} // namespace

void add_interface_commands(CommandTable &table)
{
    constexpr const char *numbers =
        "a port number: 0 to 4, 0x10 to 0x14, or 0x20, 0x21, 0x30, 0x31 and so on to 0x71";
    const Parameter name = interface("NAME");
    const Parameter on = on_off("STATE");
    const Parameter vlan = number("VLAN", "a VLAN id, 0 to 4095; 0 stands for untagged traffic");
    const Parameter group = number("GROUP", "a bridge group, 0 to 63");
    table.group("Interfaces");
    table.add("port",
              {new_name("NAME"), word("="), word("interface"), word("create"), number("PORT", numbers),
               one_of("MODE", forwarding_modes), optional(one_of("RATE", rates)), key(mac("mac")),
               key(one_of("encap", encapsulations)), key(on_off("tx")), key(on_off("rx")),
               key(one_of("duplex", duplexes)), key(on_off("autoneg"))},
              "Takes a port into service and gives the interface a name. What isn't given: the MAC's best "
              "rate, full duplex, receiver and transmitter on, an address made of the port number.",
              "p1 = interface create 0x11 trunk 1G mac=02:00:00:00:00:11", interface_create);
    table.add("interface delete", {name},
              "Takes a port out of service. The name stays, for a dead handle that may be tried.", "p1",
              interface_delete);
    table.add("interface number", {name}, "Asks for the port number.", "p1",
              get<&Calls::ovk_ethernet_port_number_get>);
    table.add("interface id", {name}, "Asks for the interface id.", "p1",
              get<&Calls::ovk_ethernet_interface_id_get>);
    table.add("interface find", {number("PORT", numbers)}, "Asks for the interface of a port number.",
              "0x11", interface_find);
    table.add("interface promiscuous", {name, on},
              "Lets a routed port receive frames for any address, or only for its own.", "p1 off",
              call_on<&Calls::ovk_ethernet_promiscuous_mode, "STATE">);
    table.add("interface filter", {name, needed_key(on_off("in")), needed_key(on_off("out"))},
              "Turns flow look-up on the two sides of a switched port on or off.", "p1 in=on out=off",
              call_on<&Calls::ovk_ethernet_flow_filter, "in", "out">);
    table.add("interface recv-mac", {choice("WHAT", {"add", "del"}), name, optional(mac("MAC"))},
              "Sets the second address that a routed port receives for, or takes it away.",
              "add p1 02:00:00:00:00:22", receive_mac);
    table.group("Ports");
    table.add("port rate", {name, one_of("RATE", rates)}, "Sets the rate.", "p1 100M",
              call_on<&Calls::ovk_ethernet_output_rate_set, "RATE">);
    table.add("port duplex", {name, one_of("DUPLEX", duplexes)}, "Sets half or full duplex.", "p1 half",
              call_on<&Calls::ovk_ethernet_interface_duplex, "DUPLEX">);
    table.add("port tx", {name, on}, "Turns the transmitter on or off.", "p1 off",
              call_on<&Calls::ovk_ethernet_interface_tx, "STATE">);
    table.add("port rx", {name, on}, "Turns the receiver on or off.", "p1 off",
              call_on<&Calls::ovk_ethernet_interface_rx, "STATE">);
    table.add("port autoneg", {name, on}, "Turns auto-negotiation on or off.", "p1 on",
              call_on<&Calls::ovk_ethernet_interface_autoneg, "STATE">);
    table.add("port restart-autoneg", {name}, "Starts auto-negotiation anew.", "p1",
              call_on<&Calls::ovk_ethernet_autoneg_force>);
    table.add("port loopback", {name, on}, "Turns loopback on or off.", "p1 on",
              call_on<&Calls::ovk_ethernet_port_loopback, "STATE">);
    table.add("port channel", {name}, "Asks for the MAC channel.", "p1", port_channel);
    table.add("port status",
              {name, key(number("mask", "bits from 0x1 to 0x20, at least one; all by default")),
               key(on_off("blocking"))},
              "Asks for the state of the link.", "p1", port_status);
    table.add("port flow-control",
              {name, on, one_of("POLICY", pause_policies),
               number("TIME", "a number of pause quanta (512 bit times), not 0")},
              "Says what the port does about PAUSE frames.", "p1 on generate 0xffff",
              call_on<&Calls::ovk_ethernet_flow_control, "STATE", "POLICY", "TIME">);
    table.add("port override", {on},
              "On: the host owns the MACs' settings, and interfaces come and go without a change to them.",
              "on", call<&Calls::ovk_ethernet_port_attributes_override, "STATE">);
    table.add("port priorities",
              {rest("PRIORITY", "eight numbers from 1 to 255, for priority code points 0 to 7")},
              "Sets the task priorities of the priority code points: the switch's at once, a port's when "
              "it is created.",
              "1 1 2 2 4 4 6 7", port_priorities);
    table.group("VLANs and ageing");
    table.add("vlan add", {name, vlan, group},
              "Binds a VLAN of a trunk or routed port to a bridge group, the switch's own VLAN.",
              "p1 100 1", call_on<&Calls::ovk_ethernet_vlan_id_add, "VLAN", "GROUP">);
    table.add("vlan del", {name, vlan, group}, "Takes the binding away.", "p1 100 1",
              call_on<&Calls::ovk_ethernet_vlan_id_del, "VLAN", "GROUP">);
    table.add("egress add",
              {name, group, choice("TAG", {"untagged", "tagged"}, OVK_ETHERNET_PORT_TAG_TYPE_UNTAGGED),
               key(number("vlan", "a VLAN id, 0 to 4095", 0xFFFF)), key(on_off("rewrite"))},
              "Says how frames of a bridge group leave a trunk. Group 0 stands for those without a rule.",
              "p1 1 tagged vlan=100 rewrite=on",
              call_on<&Calls::ovk_ethernet_port_egress_vlan_config, "GROUP", "TAG", "vlan", "rewrite">);
    table.add("egress del", {name, group}, "Takes the rule of a bridge group away.", "p1 1",
              call_on<&Calls::ovk_ethernet_port_egress_vlan_config_del, "GROUP">);
    table.add("ageing", {name, number("MINUTES", "a number of minutes, 1 to 61")},
              "Sets after what time an address learnt on the port is forgotten.", "p1 5",
              call_on<&Calls::ovk_ethernet_mac_aging_timer_config, "MINUTES">);
}

} // namespace shell
