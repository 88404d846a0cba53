// SPDX-License-Identifier: Apache-2.0
/* The port adapter: how a channel's frames are parsed and in which VLANs they enter the switch. */
#include "call.h"
#include "chip.h"
#include "record.h"

using namespace sim;

static_assert(sizeof(kor_gatr_ingress_options) == 24 && sizeof(kor_gatr_parsing_options) == 16);

namespace {

kor_gatr_ingress_options &ingress_options(kor_rte rte, u32 channel)
{
    return port_at(rte, channel).ingress_options;
}

kor_gatr_parsing_options &parsing_options(kor_rte rte, u32 channel)
{
    return port_at(rte, channel).parsing_options;
}

} // namespace

u32 kor_gatr_port_ingress_options_get(kor_rte rte, u32 channel, kor_gatr_ingress_options *out)
{
    return get_record<"kor_gatr_port_ingress_options_get">(rte, channel, out, ingress_options);
}

u32 kor_gatr_port_ingress_options_set(kor_rte rte, u32 channel, const kor_gatr_ingress_options *options)
{
    return set_record<"kor_gatr_port_ingress_options_set">(rte, channel, options, ingress_options);
}

u32 kor_gatr_port_ingress_parsing_options_get(kor_rte rte, u32 channel, kor_gatr_parsing_options *out)
{
    return get_record<"kor_gatr_port_ingress_parsing_options_get">(rte, channel, out, parsing_options);
}

u32 kor_gatr_port_ingress_parsing_options_set(kor_rte rte, u32 channel,
                                              const kor_gatr_parsing_options *options)
{
    return set_record<"kor_gatr_port_ingress_parsing_options_set">(rte, channel, options, parsing_options);
}

u32 kor_gatr_port_ingress_vlan_set(kor_rte rte, u32 channel, u32 vlan, u32 flag)
{
    return platform<"kor_gatr_port_ingress_vlan_set">(With{rte, channel, vlan, flag}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_vlan(vlan);
        check_on_off(flag, "flag");
        return port.vlans.emplace(vlan, flag).second ? 0 : status_already;
    });
}

u32 kor_gatr_port_ingress_vlan_rem(kor_rte rte, u32 channel, u32 vlan)
{
    return platform<"kor_gatr_port_ingress_vlan_rem">(With{rte, channel, vlan}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_vlan(vlan);
        return port.vlans.erase(vlan) ? 0 : status_absent;
    });
}

u32 kor_gatr_port_ingress_qinq_cvlan_map_set(kor_rte rte, u32 channel, u32 cvlan, u32 vlan)
{
    const With arguments{rte, channel, cvlan, vlan};
    return platform<"kor_gatr_port_ingress_qinq_cvlan_map_set">(arguments, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_vlan(cvlan);
        check_vlan(vlan);
        port.cvlans[cvlan] = vlan;
        return 0;
    });
}

u32 kor_gatr_port_ingress_qinq_cvlan_map_rem(kor_rte rte, u32 channel, u32 cvlan)
{
    return platform<"kor_gatr_port_ingress_qinq_cvlan_map_rem">(With{rte, channel, cvlan}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_vlan(cvlan);
        port.cvlans.erase(cvlan); // one that isn't there is gone already
        return 0;
    });
}

u32 kor_gatr_port_default_vlan_set(kor_rte rte, u32 channel, u16 vlan)
{
    return platform<"kor_gatr_port_default_vlan_set">(With{rte, channel, vlan}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_vlan(vlan);
        port.default_vlan = vlan;
        return 0;
    });
}
