// SPDX-License-Identifier: Apache-2.0
/* The switch front end's ports, and its sets of virtual ports. */
#include "call.h"
#include "chip.h"
#include "record.h"

namespace sim {

namespace {

static_assert(sizeof(kor_gatr_learn_attrs) == 10 && sizeof(kor_gatr_bridge_port_attrs) == 24 &&
              sizeof(kor_gatr_acl_port_cfg) == 100);

constexpr u32 virtual_ports = 64;

constexpr u64 port_set(u32 low, u32 high)
{
    return u64{high} << 32 | low;
}

kor_gatr_bridge_port_attrs &bridge_attrs(kor_rte rte, u32 channel)
{
    return switch_port_at(rte, channel).bridge_attrs;
}

kor_gatr_acl_port_cfg &acl_settings(kor_rte rte, u32 channel)
{
    return switch_port_at(rte, channel).acl;
}

} // namespace

u64 destination_vps(kor_rte rte, u8 index)
{
    const Guard guard;
    const auto &sets = asked_chip(rte).destination_vps;
    const auto at = sets.find(index);
    return at == sets.end() ? 0 : at->second;
}

std::optional<u64> vlan_vps(kor_rte rte, u32 vlan)
{
    const Guard guard;
    const auto &sets = asked_chip(rte).vlan_vps;
    const auto at = sets.find(vlan);
    return at == sets.end() ? std::nullopt : std::optional(at->second);
}

} // namespace sim

using namespace sim;

u32 kor_gatr_switch_bridge_port_lport_set(kor_rte rte, u32 channel, u32 lport)
{
    return platform<"kor_gatr_switch_bridge_port_lport_set">(With{rte, channel, lport}, [&]() -> u32 {
        SwitchPort &port = switch_port_at(rte, channel);
        if (lport >= virtual_ports)
            wrong("logical port %u", lport);
        port.logical_port = lport;
        return 0;
    });
}

u32 kor_gatr_switch_bridge_port_learn_attrs_get(kor_rte rte, u32 channel, u8 *learn,
                                                kor_gatr_learn_attrs *out)
{
    return platform<"kor_gatr_switch_bridge_port_learn_attrs_get">(With{rte, channel}, [&]() -> u32 {
        const SwitchPort &port = switch_port_at(rte, channel);
        *given(learn, "switch") = static_cast<u8>(port.learn);
        *given(out, "output") = port.learn_attrs;
        return 0;
    });
}

u32 kor_gatr_switch_bridge_port_learn_attrs_set(kor_rte rte, u32 channel, u32 learn,
                                                const kor_gatr_learn_attrs *attrs)
{
    const With arguments{rte, channel, learn, BytesArg{attrs, sizeof *attrs}};
    return platform<"kor_gatr_switch_bridge_port_learn_attrs_set">(arguments, [&]() -> u32 {
        SwitchPort &port = switch_port_at(rte, channel);
        check_on_off(learn, "learning");
        port.learn_attrs = *given(attrs, "attributes");
        port.learn = learn;
        return 0;
    });
}

u32 kor_gatr_switch_bridge_port_attrs_get(kor_rte rte, u32 channel, kor_gatr_bridge_port_attrs *out)
{
    return get_record<"kor_gatr_switch_bridge_port_attrs_get">(rte, channel, out, bridge_attrs);
}

u32 kor_gatr_switch_bridge_port_attrs_set(kor_rte rte, u32 channel, const kor_gatr_bridge_port_attrs *attrs)
{
    return set_record<"kor_gatr_switch_bridge_port_attrs_set">(rte, channel, attrs, bridge_attrs);
}

u32 kor_gatr_switch_acl_port_cfg_get(kor_rte rte, u32 channel, kor_gatr_acl_port_cfg *out)
{
    return get_record<"kor_gatr_switch_acl_port_cfg_get">(rte, channel, out, acl_settings);
}

u32 kor_gatr_switch_acl_port_cfg_set(kor_rte rte, u32 channel, const kor_gatr_acl_port_cfg *cfg)
{
    return set_record<"kor_gatr_switch_acl_port_cfg_set">(rte, channel, cfg, acl_settings);
}

u32 kor_gatr_switch_acl_build(kor_rte rte)
{
    return platform<"kor_gatr_switch_acl_build">(With{rte}, [&]() -> u32 {
        for (auto &port : chip(rte).switch_ports)
            port.second.acl_in_force = port.second.acl;
        return 0;
    });
}

u32 kor_gatr_switch_bridge_unknown_multicast_set(kor_rte rte, u32 channel, u32 destination_index)
{
    const With arguments{rte, channel, destination_index};
    return platform<"kor_gatr_switch_bridge_unknown_multicast_set">(arguments, [&]() -> u32 {
        SwitchPort &port = switch_port_at(rte, channel);
        if (destination_index > 0xFF)
            wrong("destination index %u", destination_index);
        port.unknown_multicast = destination_index;
        return 0;
    });
}

u32 kor_gatr_switch_bridge_destination_vps_set(kor_rte rte, u8 index, u32 low, u32 high)
{
    return platform<"kor_gatr_switch_bridge_destination_vps_set">(
        With{rte, index, low, high}, [&]() -> u32 {
            chip(rte).destination_vps[index] = port_set(low, high);
            return 0;
        });
}

u32 kor_gatr_switch_bridge_source_port_vps_set(kor_rte rte, u32 channel, u32 low, u32 high)
{
    return platform<"kor_gatr_switch_bridge_source_port_vps_set">(
        With{rte, channel, low, high}, [&]() -> u32 {
            switch_port_at(rte, channel).source_vps = port_set(low, high);
            return 0;
        });
}

u32 kor_gatr_switch_bridge_vlan_vps_get(kor_rte rte, u32 vlan, u64 *vps)
{
    return platform<"kor_gatr_switch_bridge_vlan_vps_get">(With{rte, vlan}, [&]() -> u32 {
        const auto &sets = chip(rte).vlan_vps;
        check_vlan(vlan);
        given(vps, "output");
        const auto at = sets.find(vlan);
        if (at == sets.end())
            return status_already;
        *vps = at->second;
        return 0;
    });
}

u32 kor_gatr_switch_bridge_vlan_vps_set(kor_rte rte, u32 vlan, u32 low, u32 high)
{
    return platform<"kor_gatr_switch_bridge_vlan_vps_set">(With{rte, vlan, low, high}, [&]() -> u32 {
        Chip &on = chip(rte);
        check_vlan(vlan);
        on.vlan_vps[vlan] = port_set(low, high);
        return 0;
    });
}
