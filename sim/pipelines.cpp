// SPDX-License-Identifier: Apache-2.0
/*
 * Virtual pipelines: the chips' pipeline map, the look-up operation that is made for each name, and the
 * pipelines' flow data. To some the port adapter alone can send, by name; those have no handle.
 */
#include "call.h"
#include "chip.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace sim {

namespace {

constexpr std::string_view pipelines[] = {
    "tvu_ethernet_egress_encap_ipv4", "tvu_ethernet_egress_encap", "expander_ethernet_switch",
    "gatr_ethernet_hsw_switch",       "gatr_ethernet_hsw_flood",   "gatr_ethernet_hsw_default",
};

constexpr std::string_view adapter_pipelines[] = {
    "ethernet_hsw_higher_layer_forward",
    "ethernet_static_forwarding",
};

constexpr kor_vp first_handle = 0x56500000;
constexpr u32 handles_per_chip = 0x100;
constexpr u32 index_limit = 0x1000000; // ids have 24 bits; more is a stray index

template <class Names>
bool is_among(const Names &names, std::string_view name)
{
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/* Number of a pipeline in the map. */
u32 number_of(std::string_view name)
{
    return static_cast<u32>(std::find(std::begin(pipelines), std::end(pipelines), name) -
                            std::begin(pipelines));
}

/* Handles differ from chip to chip, so that one used on another chip can be told. */
u32 handle_get(kor_rte rte, std::string_view name, kor_vp *out)
{
    const Chip &on = chip(rte);
    given(out, "output");
    if (on.hidden.contains(name))
        return status_unknown_name;
    *out = first_handle + on.ordinal * handles_per_chip + number_of(name);
    return 0;
}

/* The chip that gave a handle out, and which of its pipelines it is. */
std::pair<Chip &, u32> pipeline_of(kor_vp vp)
{
    const u32 ordinal = (vp - first_handle) / handles_per_chip;
    const u32 number = (vp - first_handle) % handles_per_chip;
    for (const auto &[rte, on] : world().chips) {
        if (on->ordinal == ordinal && number < std::size(pipelines))
            return {chip(rte), number};
    }
    wrong("no virtual pipeline 0x%x", vp);
}

} // namespace

bool has_pipeline(std::string_view name)
{
    return is_among(pipelines, name) || is_among(adapter_pipelines, name);
}

std::string pipeline_name(u32 number)
{
    return std::string(pipelines[number]);
}

std::vector<u8> flow_data(kor_rte rte, std::string_view pipeline, u32 bank, u32 index)
{
    const Guard guard;
    const FlowData &data = asked_chip(rte).flow_data;
    if (!is_among(pipelines, pipeline))
        throw std::invalid_argument("no virtual pipeline " + std::string(pipeline));
    const auto at = data.find({number_of(pipeline), bank, index});
    return at == data.end() ? std::vector<u8>(KOR_VP_FLOW_DATA_SIZE)
                            : std::vector<u8>(at->second.begin(), at->second.end());
}

} // namespace sim

using namespace sim;

#define PIPELINE(NAME)                                                                                     \
    u32 kor_vp_handle_get_##NAME(kor_rte rte, kor_vp *out)                                                 \
    {                                                                                                      \
        return platform<"kor_vp_handle_get_" #NAME>(With{rte},                                             \
                                                    [&] { return handle_get(rte, #NAME, out); });          \
    }

PIPELINE(tvu_ethernet_egress_encap_ipv4)
PIPELINE(tvu_ethernet_egress_encap)
PIPELINE(expander_ethernet_switch)
PIPELINE(gatr_ethernet_hsw_switch)
PIPELINE(gatr_ethernet_hsw_flood)
PIPELINE(gatr_ethernet_hsw_default)

u32 kor_vp_flow_data_write(kor_vp vp, u32 bank, u32 index, const void *data)
{
    const With arguments{vp, bank, index, BytesArg{data, KOR_VP_FLOW_DATA_SIZE}};
    return platform<"kor_vp_flow_data_write">(arguments, [&]() -> u32 {
        const auto [on, number] = pipeline_of(vp);
        given(data, "data");
        if (bank > 1 || index >= index_limit)
            wrong("bank %u, index 0x%x", bank, index);
        std::memcpy(on.flow_data[{number, bank, index}].data(), data, KOR_VP_FLOW_DATA_SIZE);
        return 0;
    });
}
