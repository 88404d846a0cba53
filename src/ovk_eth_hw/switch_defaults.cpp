// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/switch_defaults.h"

#include "kor_gatr.h"
#include "kor_gatr_switch.h"

OVK_LOG_FILE(ovk_eth_hw, 8);

u32 ovk::set_switch_defaults(ovk_module *module)
{
    const kor_rte rte = module->rte_handle;

    if (const u32 rc = kor_gatr_switch_bridge_age_hysteresis_set(rte, 0))
        return OVK_FAIL(module, rc, "kor_gatr_switch_bridge_age_hysteresis_set failedError: %s",
                        kor_status_get(rc));
    for (u8 cos = 0; cos < 8; cos++) {
        if (const u32 rc = kor_gatr_common_dscp_cos_set(rte, cos, cos))
            return OVK_FAIL(module, rc, "kor_gatr_common_dscp_cos_set FailedError: %s", kor_status_get(rc));
        const kor_gatr_cos cos_spec = {.kind = KOR_GATR_COS, .value = cos};
        const kor_gatr_cos dscp_spec = {.kind = KOR_GATR_DSCP, .value = cos};
        if (const u32 rc = kor_gatr_switch_acl_cos_to_dscp_map_set(rte, cos_spec, &dscp_spec))
            return OVK_FAIL(module, rc, "kor_gatr_switch_acl_cos_to_dscp_map_set FailedError: %s",
                            kor_status_get(rc));
    }
    return KOR_OK;
}
