// SPDX-License-Identifier: Apache-2.0
/* Virtual pipelines: the chips' pipeline map, and the look-up operation that is made for each name. */
#include "call.h"
#include "kor_vp.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::string_view pipelines[] = {
    "tvu_ethernet_egress_encap_ipv4", "tvu_ethernet_egress_encap", "expander_ethernet_switch",
    "gatr_ethernet_hsw_switch",       "gatr_ethernet_hsw_flood",   "gatr_ethernet_hsw_default",
};

/* Handles differ from chip to chip, so that one used on another chip can be told. */
u32 handle_get(kor_rte rte, std::string_view name, kor_vp *out)
{
    const Chip &on = chip(rte);
    given(out, "output");
    if (on.hidden.contains(name))
        return status_unknown_name;
    const auto *at = std::find(std::begin(pipelines), std::end(pipelines), name);
    *out = 0x56500000 + on.ordinal * 0x100 + static_cast<u32>(at - std::begin(pipelines));
    return 0;
}

} // namespace

bool has_pipeline(std::string_view name)
{
    return std::find(std::begin(pipelines), std::end(pipelines), name) != std::end(pipelines);
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
