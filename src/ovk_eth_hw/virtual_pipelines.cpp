// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/virtual_pipelines.h"

#include "common/frame.h"

OVK_LOG_FILE(ovk_eth_hw, 5);

namespace {

struct pipeline_row {
    u32 (*get)(kor_rte rte, kor_vp *out);
    const char *name;
    kor_vp ovk_eth_module_object::*handle;
};

using object = ovk_eth_module_object;

constexpr pipeline_row pipelines[] = {
    {.get = kor_vp_handle_get_tvu_ethernet_egress_encap_ipv4,
     .name = "ethernet_egress_encap_ipv4",
     .handle = &object::vp_egress_encap_ipv4},
    {.get = kor_vp_handle_get_tvu_ethernet_egress_encap,
     .name = "ethernet_egress_encap",
     .handle = &object::vp_egress_encap},
    {.get = kor_vp_handle_get_expander_ethernet_switch,
     .name = "ethernet_switch",
     .handle = &object::vp_expander_switch},
    {.get = kor_vp_handle_get_gatr_ethernet_hsw_switch,
     .name = "ethernet_hsw_switch",
     .handle = &object::vp_hsw_switch},
    {.get = kor_vp_handle_get_gatr_ethernet_hsw_flood,
     .name = "ethernet_hsw_flood",
     .handle = &object::vp_hsw_flood},
    {.get = kor_vp_handle_get_gatr_ethernet_hsw_default,
     .name = "ethernet_hsw_default",
     .handle = &object::vp_hsw_default},
};

} // namespace

u32 ovk::bind_virtual_pipelines(ovk_module *module, ovk_eth_module_object &object)
{
    for (const pipeline_row &row : pipelines)
        if (row.get(module->rte_handle, &(object.*row.handle)) != KOR_OK)
            return OVK_FAIL(module, KOR_E_VP_NOT_FOUND, "Failed to find %s VP handle\n", row.name);
    return KOR_OK;
}
