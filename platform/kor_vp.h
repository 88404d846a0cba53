/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_vp: virtual pipelines.
 *
 * The host's pipeline map gives each virtual pipeline a name, and a look-up operation is generated for each
 * name. A handle is good until the process that got it is replaced.
 */
#ifndef KOR_VP_H
#define KOR_VP_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef u32 kor_vp;

/* Each fills `out` and returns 0, or a platform status when the map has no such pipeline. */
u32 kor_vp_handle_get_tvu_ethernet_egress_encap_ipv4(kor_rte rte, kor_vp *out);
u32 kor_vp_handle_get_tvu_ethernet_egress_encap(kor_rte rte, kor_vp *out);
u32 kor_vp_handle_get_expander_ethernet_switch(kor_rte rte, kor_vp *out);
u32 kor_vp_handle_get_gatr_ethernet_hsw_switch(kor_rte rte, kor_vp *out);
u32 kor_vp_handle_get_gatr_ethernet_hsw_flood(kor_rte rte, kor_vp *out);
u32 kor_vp_handle_get_gatr_ethernet_hsw_default(kor_rte rte, kor_vp *out);

/* One entry of a pipeline's flow data, in bank 0 or 1. */
enum {
    KOR_VP_FLOW_DATA_SIZE = 136
};
u32 kor_vp_flow_data_write(kor_vp vp, u32 bank, u32 index, const void *data);

#ifdef __cplusplus
}
#endif

#endif
