// SPDX-License-Identifier: Apache-2.0
/*
 * The port adapter's and the switch's settings, kept as registers by name so that images, tests and the
 * shell read them all in one way:
 *
 *   common.dscp_cos[dscp]          class of service
 *   switch.age_hysteresis
 *   switch.acl_cos_to_dscp[cos]    code point
 *
 * and the bridge table.
 */
#include "call.h"
#include "chip.h"

#include <cstring>

namespace sim {

namespace {

static_assert(sizeof(kor_gatr_bridge_key) == 16 && sizeof(kor_gatr_bridge_entry) == 32);

void check_code_point(u32 dscp, u32 cos)
{
    if (dscp > 63 || cos > 7)
        wrong("code point %u, class of service %u", dscp, cos);
}

std::array<u8, 12> bridge_order(const kor_gatr_bridge_key &key)
{
    if (key.kind != KOR_GATR_BRIDGE_MAC && key.kind != KOR_GATR_BRIDGE_DEFAULT)
        wrong("bridge entry of kind %u", key.kind);
    std::array<u8, 12> out{static_cast<u8>(key.kind), static_cast<u8>(key.bridge_group >> 8),
                           static_cast<u8>(key.bridge_group)};
    std::memcpy(out.data() + 3, key.mac, sizeof key.mac);
    return out;
}

} // namespace

std::vector<kor_gatr_bridge_entry> bridge_entries(kor_rte rte)
{
    const Guard guard;
    std::vector<kor_gatr_bridge_entry> out;
    for (const auto &entry : asked_chip(rte).bridge)
        out.push_back(entry.second);
    return out;
}

std::map<std::string, u64> registers(kor_rte rte)
{
    const Guard guard;
    return asked_chip(rte).registers;
}

} // namespace sim

using namespace sim;

u32 kor_gatr_switch_bridge_age_hysteresis_set(kor_rte rte, u32 hysteresis)
{
    return platform<"kor_gatr_switch_bridge_age_hysteresis_set">(With{rte, hysteresis}, [&]() -> u32 {
        chip(rte).registers["switch.age_hysteresis"] = hysteresis;
        return 0;
    });
}

u32 kor_gatr_common_dscp_cos_set(kor_rte rte, u32 dscp, u32 cos)
{
    return platform<"kor_gatr_common_dscp_cos_set">(With{rte, dscp, cos}, [&]() -> u32 {
        check_code_point(dscp, cos);
        chip(rte).registers[format("common.dscp_cos[%u]", dscp)] = cos;
        return 0;
    });
}

u32 kor_gatr_switch_acl_cos_to_dscp_map_set(kor_rte rte, kor_gatr_cos cos, const kor_gatr_cos *dscp)
{
    const With arguments{rte, BytesArg{&cos, sizeof cos}, BytesArg{dscp, sizeof *dscp}};
    return platform<"kor_gatr_switch_acl_cos_to_dscp_map_set">(arguments, [&]() -> u32 {
        given(dscp, "code point");
        if (cos.kind != KOR_GATR_COS || dscp->kind != KOR_GATR_DSCP)
            wrong("map from kind %u to kind %u", cos.kind, dscp->kind);
        check_code_point(dscp->value, cos.value);
        chip(rte).registers[format("switch.acl_cos_to_dscp[%u]", cos.value)] = dscp->value;
        return 0;
    });
}

u32 kor_gatr_switch_bridge_entry_learn(kor_rte rte, const kor_gatr_bridge_entry *entry)
{
    return platform<"kor_gatr_switch_bridge_entry_learn">(
        With{rte, BytesArg{entry, sizeof *entry}}, [&]() -> u32 {
            chip(rte).bridge[bridge_order(given(entry, "entry")->key)] = *entry;
            return 0;
        });
}

u32 kor_gatr_switch_bridge_entry_unlearn(kor_rte rte, const kor_gatr_bridge_key *key)
{
    return platform<"kor_gatr_switch_bridge_entry_unlearn">(
        With{rte, BytesArg{key, sizeof *key}}, [&]() -> u32 {
            return chip(rte).bridge.erase(bridge_order(*given(key, "key"))) ? 0 : status_no_bridge_entry;
        });
}
