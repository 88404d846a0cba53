// SPDX-License-Identifier: Apache-2.0
//
// Of the platform that does nothing: the port adapter and the switch. Records are read as zero, a port has
// its receiver on and its transmitter off and runs at 1G, full duplex.
#include "kor_gatr.h"
#include "kor_gatr_switch.h"
#include "null_calls.h"
#include "ovk_ethernet_enums.h"

// An operation that sets something, on all ports or on one: what is written down of its parameters, and
// these.
#define SETTING(name, format, arguments, ...)                                                              \
    OPERATION(name, "%u " format, (rte, ARGUMENTS arguments), kor_rte rte, __VA_ARGS__)
#define ON_PORT(name, format, arguments, ...)                                                              \
    SETTING(name, "%u " format, (channel, ARGUMENTS arguments), u32 channel, __VA_ARGS__)

// A record that is read and written by `key`, a channel or an id; `record` is what the writer calls it.
#define READ_AND_WRITTEN(name, type, key, record)                                                          \
    u32 name##_get(kor_rte rte, u32 key, type *out)                                                        \
    {                                                                                                      \
        CALLED("%u %u", rte, key);                                                                         \
        *out = {};                                                                                         \
        return 0;                                                                                          \
    }                                                                                                      \
    SETTING(name##_set, "%u %s", (key, RECORD(record)), u32 key, const type *record)

// Port adapter.

READ_AND_WRITTEN(kor_gatr_common_vps_bridging_vp, kor_gatr_bridging_vp, id, record)
READ_AND_WRITTEN(kor_gatr_port_ingress_options, kor_gatr_ingress_options, channel, options)
READ_AND_WRITTEN(kor_gatr_port_ingress_parsing_options, kor_gatr_parsing_options, channel, options)
SETTING(kor_gatr_common_dscp_cos_set, "%u %u", (dscp, cos), u32 dscp, u32 cos)
ON_PORT(kor_gatr_port_enable_set, "%u %u", (rx, tx), u32 rx, u32 tx)
ON_PORT(kor_mac_speed_duplex_set, "%u %u", (speed, duplex), u32 speed, u32 duplex)
ON_PORT(kor_gatr_mac_flow_ctrl_set, "%u %u %u", (enable, policy, time), u32 enable, u32 policy, u32 time)
ON_PORT(kor_gatr_mac_addr_set, "%s", (BYTES(mac, 6)), const u8 *mac)
ON_PORT(kor_gatr_unicast_filter_enable, "%u", (enable), u32 enable)
ON_PORT(kor_gatr_unicast_filter_set, "%u %s %s %s",
        (enable, BYTES(mac1, 6), BYTES(mac2, 6), BYTES(mac3, 6)), u32 enable, const u8 *mac1,
        const u8 *mac2, const u8 *mac3)
ON_PORT(kor_gatr_broadcast_filter_set, "%u", (enable), u32 enable)
ON_PORT(kor_gatr_qinq_set, "%u", (enable), u32 enable)
ON_PORT(kor_gatr_crc_set, "%u %u %u", (append, check, strip), u32 append, u32 check, u32 strip)
ON_PORT(kor_gatr_tag_config_set, "%u %u 0x%x", (stop, start, msb), u32 stop, u32 start, u32 msb)
ON_PORT(kor_gatr_tag_enable_set, "%u", (enable), u32 enable)
ON_PORT(kor_gatr_port_vp_set, "%u %s %s", (tagged, vp_name, RECORD(params)), u32 tagged,
        const char *vp_name, const kor_gatr_vp_params *params)
ON_PORT(kor_gatr_port_ingress_vlan_set, "%u %u", (vlan, flag), u32 vlan, u32 flag)
ON_PORT(kor_gatr_port_ingress_vlan_rem, "%u", (vlan), u32 vlan)
ON_PORT(kor_gatr_port_ingress_qinq_cvlan_map_set, "%u %u", (cvlan, vlan), u32 cvlan, u32 vlan)
ON_PORT(kor_gatr_port_ingress_qinq_cvlan_map_rem, "%u", (cvlan), u32 cvlan)
ON_PORT(kor_gatr_port_default_vlan_set, "%u", (vlan), u16 vlan)
ON_PORT(kor_gatr_port_counter_reg_mode_set, "%u", (clear), u32 clear)

u32 kor_gatr_port_enable_get(kor_rte rte, u32 channel, u32 *rx, u32 *tx)
{
    CALLED("%u %u", rte, channel);
    *rx = 1;
    *tx = 0;
    return 0;
}

u32 kor_mac_speed_duplex_get(kor_rte rte, u32 channel, u32 *speed, u32 *duplex)
{
    CALLED("%u %u", rte, channel);
    *speed = OVK_ETHERNET_SPEED_1G;
    *duplex = OVK_ETHERNET_DUPLEX_FULL;
    return 0;
}

u32 kor_gatr_tag_config_get(kor_rte rte, u32 channel, u32 *stop, u32 *start, u32 *msb, u32 *flag)
{
    CALLED("%u %u", rte, channel);
    *stop = 16;
    *start = 12;
    *msb = *flag = 0;
    return 0;
}

// The counters are left as they come: filling them is no work of the library's.
u32 kor_gatr_mac_statistics_get(kor_rte rte, u32 channel, u64 *, u64 *, u32 clear)
{
    CALLED("%u %u %u", rte, channel, clear);
    return 0;
}

u32 kor_gatr_port_counter_reg_get(kor_rte rte, u32 channel, u32 *a, u32 *b, u32 *c)
{
    CALLED("%u %u", rte, channel);
    *a = *b = *c = 0;
    return 0;
}

// Switch.

READ_AND_WRITTEN(kor_gatr_switch_bridge_port_attrs, kor_gatr_bridge_port_attrs, channel, attrs)
READ_AND_WRITTEN(kor_gatr_switch_acl_port_cfg, kor_gatr_acl_port_cfg, channel, cfg)
SETTING(kor_gatr_switch_bridge_age_hysteresis_set, "%u", (hysteresis), u32 hysteresis)
SETTING(kor_gatr_switch_acl_cos_to_dscp_map_set, "%u %u %s", (cos.kind, cos.value, RECORD(dscp)),
        kor_gatr_cos cos, const kor_gatr_cos *dscp)
SETTING(kor_gatr_switch_bridge_entry_learn, "%s", (RECORD(entry)), const kor_gatr_bridge_entry *entry)
SETTING(kor_gatr_switch_bridge_entry_unlearn, "%s", (RECORD(key)), const kor_gatr_bridge_key *key)
SETTING(kor_gatr_switch_bridge_destination_vps_set, "%u 0x%x 0x%x", (index, low, high), u8 index, u32 low,
        u32 high)
SETTING(kor_gatr_switch_bridge_vlan_vps_set, "%u 0x%x 0x%x", (vlan, low, high), u32 vlan, u32 low, u32 high)
ON_PORT(kor_gatr_switch_bridge_port_lport_set, "%u", (lport), u32 lport)
ON_PORT(kor_gatr_switch_bridge_port_learn_attrs_set, "%u %s", (learn, RECORD(attrs)), u32 learn,
        const kor_gatr_learn_attrs *attrs)
ON_PORT(kor_gatr_switch_bridge_unknown_multicast_set, "%u", (index), u32 index)
ON_PORT(kor_gatr_switch_bridge_source_port_vps_set, "0x%x 0x%x", (low, high), u32 low, u32 high)

u32 kor_gatr_switch_bridge_port_learn_attrs_get(kor_rte rte, u32 channel, u8 *learn,
                                                kor_gatr_learn_attrs *out)
{
    CALLED("%u %u", rte, channel);
    *learn = 0;
    *out = {};
    return 0;
}

u32 kor_gatr_switch_bridge_vlan_vps_get(kor_rte rte, u32 vlan, u64 *vps)
{
    CALLED("%u %u", rte, vlan);
    *vps = 0;
    return 0;
}

u32 kor_gatr_switch_acl_build(kor_rte rte)
{
    CALLED("%u", rte);
    return 0;
}
