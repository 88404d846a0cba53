// SPDX-License-Identifier: Apache-2.0
// Ports: their life, their MACs, the VLANs that they carry.
#include "command.h"
#include "session.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace shell {

namespace {

// The name of an argument, as a template takes it.
template <std::size_t size>
struct Label {
    char text[size];
    // NOLINTNEXTLINE(google-explicit-constructor): it stands for the literal
    consteval Label(const char (&literal)[size]) { std::copy_n(literal, size, text); }
};

sim::Mac octets(u64 mac)
{
    sim::Mac out;
    for (u32 i = 0; i < out.size(); ++i)
        out[i] = static_cast<u8>(mac >> 8 * (out.size() - 1 - i));
    return out;
}

// What isn't given is as on most ports: the MAC's best rate, full duplex, on, an address made of the number.
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
        s.interfaces[name] = {handle, attrs.if_num, attrs.fwd_mode, false};
}

ovk_ethernet_if_handle interface_of(const Session &s, const Arguments &a)
{
    return s.interface(a.text("NAME"));
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

// A call that takes an interface and the numbers of the named arguments; one that gives a number.
template <auto function, Label... names>
void with(Session &s, const Arguments &a)
{
    s.call(function, interface_of(s, a), a.number(names.text)...);
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

void port_override(Session &s, const Arguments &a)
{
    s.call(&Calls::ovk_ethernet_port_attributes_override, a.number("STATE"));
}

void port_priorities(Session &s, const Arguments &a)
{
    std::array<u8, 8> map{};
    const Words &words = a.words("PRIORITY");
    if (words.size() != map.size())
        throw Wrong("PRIORITY: " + std::to_string(words.size()) + " of 8 are there");
    std::transform(words.begin(), words.end(), map.begin(), [&](const std::string &word) {
        return static_cast<u8>(read(s, number("PRIORITY", 0xFF), word).number);
    });
    s.call(&Calls::ovk_ethernet_pcp_to_task_pri_map, map.data());
}

} // namespace

const Commands &interface_commands()
{
    const Parameter name = interface("NAME");
    const Parameter on = on_off("STATE");
    const Parameter vlan = number("VLAN");
    const Parameter group = number("GROUP");
    static const Commands rows = {
        {"port",
         {new_name("NAME"), word("="), word("interface"), word("create"), number("PORT"),
          one_of("MODE", forwarding_modes), optional(one_of("RATE", rates)), key(mac("mac")),
          key(one_of("encap", encapsulations)), key(on_off("tx")), key(on_off("rx")),
          key(one_of("duplex", duplexes)), key(on_off("autoneg"))},
         "Takes a port into service and gives the interface a name.",
         interface_create},
        {"interface delete",
         {name},
         "Takes a port out of service. The name stays, for a dead handle that may be tried.",
         interface_delete},
        {"interface number",
         {name},
         "Asks for the port number.",
         get<&Calls::ovk_ethernet_port_number_get>},
        {"interface id", {name}, "Asks for the interface id.", get<&Calls::ovk_ethernet_interface_id_get>},
        {"interface find", {number("PORT")}, "Asks for the interface of a port number.", interface_find},
        {"interface promiscuous",
         {name, on},
         "Lets a routed port receive frames for any address, or only for its own.",
         with<&Calls::ovk_ethernet_promiscuous_mode, "STATE">},
        {"interface filter",
         {name, needed_key(on_off("in")), needed_key(on_off("out"))},
         "Turns flow look-up on the two sides of a switched port on or off.",
         with<&Calls::ovk_ethernet_flow_filter, "in", "out">},
        {"interface recv-mac",
         {choice("WHAT", {"add", "del"}), name, optional(mac("MAC"))},
         "Sets the second address that a routed port receives for, or takes it away.",
         receive_mac},
        {"port rate",
         {name, one_of("RATE", rates)},
         "Sets the rate.",
         with<&Calls::ovk_ethernet_output_rate_set, "RATE">},
        {"port duplex",
         {name, one_of("DUPLEX", duplexes)},
         "Sets half or full duplex.",
         with<&Calls::ovk_ethernet_interface_duplex, "DUPLEX">},
        {"port tx", {name, on}, "Transmitter on or off.", with<&Calls::ovk_ethernet_interface_tx, "STATE">},
        {"port rx", {name, on}, "Receiver on or off.", with<&Calls::ovk_ethernet_interface_rx, "STATE">},
        {"port autoneg",
         {name, on},
         "Auto-negotiation on or off.",
         with<&Calls::ovk_ethernet_interface_autoneg, "STATE">},
        {"port restart-autoneg",
         {name},
         "Starts auto-negotiation anew.",
         with<&Calls::ovk_ethernet_autoneg_force>},
        {"port loopback",
         {name, on},
         "Loopback on or off.",
         with<&Calls::ovk_ethernet_port_loopback, "STATE">},
        {"port channel", {name}, "Asks for the MAC channel.", port_channel},
        {"port status",
         {name, key(number("mask")), key(on_off("blocking"))},
         "Asks for the state of the link.",
         port_status},
        {"port flow-control",
         {name, on, one_of("POLICY", pause_policies), number("TIME")},
         "Says what the port does about PAUSE frames. TIME is in pause quanta.",
         with<&Calls::ovk_ethernet_flow_control, "STATE", "POLICY", "TIME">},
        {"port override",
         {on},
         "On: the host owns the MACs' settings, and interfaces come and go without a change to them.",
         port_override},
        {"port priorities",
         {rest("PRIORITY", "eight numbers from 0 to 255")},
         "Sets the task priorities of the eight priority code points, on all ports.",
         port_priorities},
        {"vlan add",
         {name, vlan, group},
         "Binds a VLAN of the port to a bridge group. VLAN 0 is the untagged traffic.",
         with<&Calls::ovk_ethernet_vlan_id_add, "VLAN", "GROUP">},
        {"vlan del",
         {name, vlan, group},
         "Takes the binding away.",
         with<&Calls::ovk_ethernet_vlan_id_del, "VLAN", "GROUP">},
        {"egress add",
         {name, group, choice("TAG", {"untagged", "tagged"}, OVK_ETHERNET_PORT_TAG_TYPE_UNTAGGED),
          key(number("vlan", 0xFFFF)), key(on_off("rewrite"))},
         "Says how frames of a bridge group leave the port. Group 0 stands for those without a rule.",
         with<&Calls::ovk_ethernet_port_egress_vlan_config, "GROUP", "TAG", "vlan", "rewrite">},
        {"egress del",
         {name, group},
         "Takes the rule of a bridge group away.",
         with<&Calls::ovk_ethernet_port_egress_vlan_config_del, "GROUP">},
        {"ageing",
         {name, number("MINUTES")},
         "Sets after how many minutes, 1 to 61, an address learnt on the port is forgotten.",
         with<&Calls::ovk_ethernet_mac_aging_timer_config, "MINUTES">},
    };
    return rows;
}

} // namespace shell
