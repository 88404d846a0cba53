// SPDX-License-Identifier: Apache-2.0
/* The port adapter: what a channel's MAC does, and where its frames go. */
#include "call.h"
#include "chip.h"
#include "record.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

namespace sim {

namespace {

static_assert(sizeof(kor_gatr_vp_params) == 12 && sizeof(kor_gatr_bridging_vp) == 20);

constexpr u32 policy_bits = 5;

Mac mac_at(const u8 *mac)
{
    Mac out;
    std::copy_n(given(mac, "address"), out.size(), out.begin());
    return out;
}

kor_gatr_bridging_vp &bridging_vp_at(kor_rte rte, u32 id)
{
    auto &vps = chip(rte).bridging_vps;
    const auto at = vps.find(id);
    if (at == vps.end())
        wrong("no bridging pipeline 0x%x", id);
    return at->second;
}

BytesArg mac_arg(const u8 *mac)
{
    return {mac, std::tuple_size_v<Mac>};
}

} // namespace

kor_gatr_bridging_vp bridging_vp(kor_rte rte, u32 id)
{
    const Guard guard;
    const auto &vps = asked_chip(rte).bridging_vps;
    if (const auto at = vps.find(id); at != vps.end())
        return at->second;
    throw std::invalid_argument("no bridging pipeline of that id");
}

} // namespace sim

using namespace sim;

u32 kor_gatr_port_enable_get(kor_rte rte, u32 channel, u32 *rx, u32 *tx)
{
    return platform<"kor_gatr_port_enable_get">(With{rte, channel}, [&]() -> u32 {
        const Port &port = port_at(rte, channel);
        *given(rx, "receiver") = port.rx;
        *given(tx, "transmitter") = port.tx;
        return 0;
    });
}

u32 kor_gatr_port_enable_set(kor_rte rte, u32 channel, u32 rx, u32 tx)
{
    return platform<"kor_gatr_port_enable_set">(With{rte, channel, rx, tx}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_on_off(rx, "receiver");
        check_on_off(tx, "transmitter");
        port.rx = rx;
        port.tx = tx;
        return 0;
    });
}

u32 kor_mac_speed_duplex_get(kor_rte rte, u32 channel, u32 *speed, u32 *duplex)
{
    return platform<"kor_mac_speed_duplex_get">(With{rte, channel}, [&]() -> u32 {
        const Port &port = port_at(rte, channel);
        *given(speed, "speed") = port.speed;
        *given(duplex, "duplex") = port.duplex;
        return 0;
    });
}

u32 kor_mac_speed_duplex_set(kor_rte rte, u32 channel, u32 speed, u32 duplex)
{
    return platform<"kor_mac_speed_duplex_set">(With{rte, channel, speed, duplex}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        if (speed < 1 || speed > 5 || duplex < 1 || duplex > 2)
            wrong("speed %u, duplex %u", speed, duplex);
        port.speed = speed;
        port.duplex = duplex;
        return 0;
    });
}

u32 kor_gatr_mac_flow_ctrl_set(kor_rte rte, u32 channel, u32 enable, u32 policy_bit, u32 time)
{
    const With arguments{rte, channel, enable, policy_bit, time};
    return platform<"kor_gatr_mac_flow_ctrl_set">(arguments, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        if (!std::has_single_bit(policy_bit) || policy_bit >> policy_bits)
            wrong("policy 0x%x", policy_bit);
        port.flow_control = {enable, policy_bit, time};
        return 0;
    });
}

u32 kor_gatr_mac_addr_set(kor_rte rte, u32 channel, const u8 *mac)
{
    return platform<"kor_gatr_mac_addr_set">(With{rte, channel, mac_arg(mac)}, [&]() -> u32 {
        port_at(rte, channel).mac = mac_at(mac);
        return 0;
    });
}

u32 kor_gatr_unicast_filter_enable(kor_rte rte, u32 channel, u32 enable)
{
    return platform<"kor_gatr_unicast_filter_enable">(With{rte, channel, enable}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_on_off(enable, "filter");
        port.unicast_filter = enable;
        return 0;
    });
}

u32 kor_gatr_unicast_filter_set(kor_rte rte, u32 channel, u32 enable, const u8 *mac1, const u8 *mac2,
                                const u8 *mac3)
{
    const With arguments{rte, channel, enable, mac_arg(mac1), mac_arg(mac2), mac_arg(mac3)};
    return platform<"kor_gatr_unicast_filter_set">(arguments, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_on_off(enable, "filter");
        port.unicast_macs = {mac_at(mac1), mac_at(mac2), mac_at(mac3)};
        port.unicast_filter = enable;
        return 0;
    });
}

u32 kor_gatr_broadcast_filter_set(kor_rte rte, u32 channel, u32 enable)
{
    return platform<"kor_gatr_broadcast_filter_set">(With{rte, channel, enable}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_on_off(enable, "filter");
        port.broadcast_filter = enable;
        return 0;
    });
}

u32 kor_gatr_qinq_set(kor_rte rte, u32 channel, u32 enable)
{
    return platform<"kor_gatr_qinq_set">(With{rte, channel, enable}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_on_off(enable, "Q-in-Q");
        port.qinq = enable;
        return 0;
    });
}

u32 kor_gatr_crc_set(kor_rte rte, u32 channel, u32 append, u32 check, u32 strip)
{
    return platform<"kor_gatr_crc_set">(With{rte, channel, append, check, strip}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_on_off(append, "append");
        check_on_off(check, "check");
        check_on_off(strip, "strip");
        port.crc = {append, check, strip};
        return 0;
    });
}

u32 kor_gatr_tag_config_get(kor_rte rte, u32 channel, u32 *stop, u32 *start, u32 *msb, u32 *flag)
{
    return platform<"kor_gatr_tag_config_get">(With{rte, channel}, [&]() -> u32 {
        const Port::Tag &tag = port_at(rte, channel).tag;
        *given(stop, "stop") = tag.stop;
        *given(start, "start") = tag.start;
        *given(msb, "most significant part") = tag.msb;
        *given(flag, "flag") = tag.flag;
        return 0;
    });
}

u32 kor_gatr_tag_config_set(kor_rte rte, u32 channel, u32 stop, u32 start, u32 msb)
{
    return platform<"kor_gatr_tag_config_set">(With{rte, channel, stop, start, msb}, [&]() -> u32 {
        Port::Tag &tag = port_at(rte, channel).tag;
        if (start > stop)
            wrong("tag starts at %u and stops at %u", start, stop);
        tag.stop = stop;
        tag.start = start;
        tag.msb = msb;
        return 0;
    });
}

u32 kor_gatr_tag_enable_set(kor_rte rte, u32 channel, u32 enable)
{
    return platform<"kor_gatr_tag_enable_set">(With{rte, channel, enable}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_on_off(enable, "tag");
        port.tag.enable = enable;
        return 0;
    });
}

u32 kor_gatr_port_vp_set(kor_rte rte, u32 channel, u32 tagged, const char *vp_name,
                         const kor_gatr_vp_params *params)
{
    const With arguments{rte, channel, tagged, vp_name, BytesArg{params, sizeof *params}};
    return platform<"kor_gatr_port_vp_set">(arguments, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        given(params, "parameters");
        if (tagged > 1)
            wrong("traffic %u", tagged);
        if (!has_pipeline(given(vp_name, "name")) || chip(rte).hidden.contains(vp_name))
            return status_unknown_name;
        port.pipelines[tagged] = {vp_name, *params};
        return 0;
    });
}

u32 kor_gatr_common_vps_bridging_vp_get(kor_rte rte, u32 id, kor_gatr_bridging_vp *out)
{
    return get_record<"kor_gatr_common_vps_bridging_vp_get">(rte, id, out, bridging_vp_at);
}

u32 kor_gatr_common_vps_bridging_vp_set(kor_rte rte, u32 id, const kor_gatr_bridging_vp *record)
{
    return set_record<"kor_gatr_common_vps_bridging_vp_set">(rte, id, record, bridging_vp_at);
}
