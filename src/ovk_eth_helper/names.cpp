// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_helper/names.h"

#include <span>

#include "kor_gatr.h"
#include "ovk_ethernet_enums.h"
#include "ovk_ethernet_status.h"

namespace {

struct name_row {
    u32 value;
    const char *name;
};

// A row's name is the enumerator's own, so the two can't part.
#define NAME(enumerator)                                                                                   \
    {                                                                                                      \
        enumerator, #enumerator                                                                            \
    }

// Most tables have no gap, so the value's distance from the first row is tried before the search.
const char *name_of(std::span<const name_row> rows, u32 value, const char *fallback)
{
    const u32 guess = value - rows.front().value;
    if (guess < rows.size() && rows[guess].value == value)
        return rows[guess].name;
    for (const name_row &row : rows)
        if (row.value == value)
            return row.name;
    return fallback;
}

constexpr name_row statuses[] = {
    NAME(OVK_ETHERNET_E_INVALID_EXCEPTION_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_EXCEPTION_ACTION_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_IF_HANDLE),
    NAME(OVK_ETHERNET_E_INVALID_FLOW_HANDLE),
    NAME(OVK_ETHERNET_E_INVALID_IF_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_PORT_NUMBER),
    NAME(OVK_ETHERNET_E_INVALID_PROTO_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_LLC_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_VLAN_ID),
    NAME(OVK_ETHERNET_E_INVALID_BG_ID),
    NAME(OVK_ETHERNET_E_INVALID_PORT_TAG_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_MCAST_GROUP_HANDLE),
    NAME(OVK_ETHERNET_E_INVALID_MAC_ADDR),
    NAME(OVK_ETHERNET_E_INVALID_IPV4_ADDR),
    NAME(OVK_ETHERNET_E_INVALID_MAC_SUBNET),
    NAME(OVK_ETHERNET_E_INVALID_PRIORITY),
    NAME(OVK_ETHERNET_E_INVALID_DSCP),
    NAME(OVK_ETHERNET_E_INVALID_POLICING_LEVEL),
    NAME(OVK_ETHERNET_E_INVALID_OUTPUT_RATE),
    NAME(OVK_ETHERNET_E_INVALID_VLAN_ASSIGN_POLICY_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_FLOW_ACTION_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_DUPLEX_MODE),
    NAME(OVK_ETHERNET_E_INVALID_ENCAP),
    NAME(OVK_ETHERNET_E_INVALID_QOS_MODE),
    NAME(OVK_ETHERNET_E_INVALID_FWD_MODE),
    NAME(OVK_ETHERNET_E_INVALID_STATS_TYPE),
    NAME(OVK_ETHERNET_E_INVALID_ASSOCIATION_MASK),
    NAME(OVK_ETHERNET_E_INVALID_MTU),
    NAME(OVK_ETHERNET_E_INCOMPAT_PORT_TYPE),
    NAME(OVK_ETHERNET_E_INCOMPAT_IF_TYPE),
    NAME(OVK_ETHERNET_E_INCOMPAT_STATS_TYPE),
    NAME(OVK_ETHERNET_E_INCOMPAT_FLOW_TYPE),
    NAME(OVK_ETHERNET_E_INCOMPAT_IF_STATE),
    NAME(OVK_ETHERNET_E_INCOMPAT_FWD_MODE),
    NAME(OVK_ETHERNET_E_INCOMPAT_VLAN_ASSIGN_POLICY_TYPE),
    NAME(OVK_ETHERNET_E_INCOMPAT_GATR_VLAN_ETH_TYPE),
    NAME(OVK_ETHERNET_E_INCONSIST_IF_STATE),
    NAME(OVK_ETHERNET_E_UNSUPPORT_STATS_TYPE),
    NAME(OVK_ETHERNET_E_INTF_ALREADY_EXISTS),
    NAME(OVK_ETHERNET_E_NON_EXISTENT_INTF),
    NAME(OVK_ETHERNET_E_INTF_IS_ALREADY_MEMBER_OF_MCAST_GROUP),
    NAME(OVK_ETHERNET_E_INTF_IS_NOT_MEMBER_OF_MCAST_GROUP),
    NAME(OVK_ETHERNET_E_GATR_VLAN_ETH_TYPE_FULL),
    NAME(OVK_ETHERNET_E_GATR_VLAN_ETH_TYPE_ABSENT),
    NAME(OVK_ETHERNET_E_EXCEEDED_ETHTYPE_SUPPORTED),
};

constexpr name_row mac_channels[] = {
    NAME(KOR_XGMAC0),  NAME(KOR_GMAC1),   NAME(KOR_GMAC2),  NAME(KOR_GMAC3),  NAME(KOR_GMAC4),
    NAME(KOR_XGMAC8),  NAME(KOR_GMAC9),   NAME(KOR_GMAC10), NAME(KOR_GMAC11), NAME(KOR_GMAC12),
    NAME(KOR_XGMAC16), NAME(KOR_GMAC17),  NAME(KOR_GMAC18), NAME(KOR_GMAC19), NAME(KOR_GMAC20),
    NAME(KOR_GMAC32),  NAME(KOR_GMAC33),  NAME(KOR_GMAC48), NAME(KOR_GMAC49), NAME(KOR_GMAC64),
    NAME(KOR_GMAC65),  NAME(KOR_GMAC80),  NAME(KOR_GMAC81), NAME(KOR_GMAC96), NAME(KOR_GMAC97),
    NAME(KOR_GMAC112), NAME(KOR_GMAC113),
};

constexpr name_row exceptions[] = {
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_STATIC_FWD_NOT_SETUP),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_UNSUPPORTED_IEEE_802_3_PKT),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_INVALID_VLAN_TAG),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_INVALID_NUM_VLAN_TAGS),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_NO_FLOW_ID_DEFINED),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_NO_ENCAP_FLOW_FOUND),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_NO_STAG_MAPPING),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN_ASSOCIATION),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_BINDING_ERROR),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN_DEST_MAC),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_NO_OUTPUT_QOS_POLICY),
    NAME(OVK_ETHERNET_EXCEPTION_TYPE_ETH_MTU_FAILED),
};

constexpr name_row exception_actions[] = {
    NAME(OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP),
    NAME(OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU),
    NAME(OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_BDL),
    NAME(OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_PORT),
    NAME(OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_TVU_FUNC),
};

constexpr name_row speeds[] = {
    NAME(OVK_ETHERNET_SPEED_10M),  NAME(OVK_ETHERNET_SPEED_100M), NAME(OVK_ETHERNET_SPEED_1G),
    NAME(OVK_ETHERNET_SPEED_2_5G), NAME(OVK_ETHERNET_SPEED_10G),
};

constexpr name_row duplexes[] = {
    NAME(OVK_ETHERNET_DUPLEX_INVALID),
    NAME(OVK_ETHERNET_DUPLEX_HALF),
    NAME(OVK_ETHERNET_DUPLEX_FULL),
    NAME(OVK_ETHERNET_DUPLEX_MAX),
};

constexpr name_row flow_control_policies[] = {
    NAME(OVK_ETHERNET_FLOW_CONTROL_INVALID),  NAME(OVK_ETHERNET_FLOW_CONTROL_RESPOND),
    NAME(OVK_ETHERNET_FLOW_CONTROL_FILTER),   NAME(OVK_ETHERNET_FLOW_CONTROL_FORWARD),
    NAME(OVK_ETHERNET_FLOW_CONTROL_GENERATE), NAME(OVK_ETHERNET_FLOW_CONTROL_DROP_RX_GENERATE),
    NAME(OVK_ETHERNET_FLOW_CONTROL_MAX),
};

constexpr name_row stp_states[] = {
    NAME(OVK_ETHERNET_STP_STATE_INVALID),    NAME(OVK_ETHERNET_STP_STATE_DISABLED),
    NAME(OVK_ETHERNET_STP_STATE_FILTERING),  NAME(OVK_ETHERNET_STP_STATE_LEARNING),
    NAME(OVK_ETHERNET_STP_STATE_FORWARDING), NAME(OVK_ETHERNET_STP_STATE_MAX),
};

constexpr name_row intf_types[] = {
    NAME(INTERFACE_TYPE_INVALID),        NAME(INTERFACE_TYPE_PHY),  NAME(INTERFACE_TYPE_VLAN),
    NAME(INTERFACE_TYPE_SWITCH_VIRTUAL), NAME(INTERFACE_TYPE_AGGR), NAME(INTERFACE_TYPE_MAX),
};

constexpr name_row fwd_modes[] = {
    NAME(OVK_ETHERNET_FWD_MODE_INVALID),      NAME(OVK_ETHERNET_FWD_MODE_SWITCH_ACCESS),
    NAME(OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK), NAME(OVK_ETHERNET_FWD_MODE_SWITCH_TUNNEL),
    NAME(OVK_ETHERNET_FWD_MODE_HIGHER_LAYER), NAME(OVK_ETHERNET_FWD_MODE_STATIC),
    NAME(OVK_ETHERNET_FWD_MODE_MAX),
};

constexpr name_row stats_types[] = {
    NAME(OVK_ETHERNET_STATS_TYPE_INVALID),  NAME(OVK_ETHERNET_STATS_TYPE_INTF),
    NAME(OVK_ETHERNET_STATS_TYPE_INTF_PCP), NAME(OVK_ETHERNET_STATS_TYPE_INTF_VLAN),
    NAME(OVK_ETHERNET_STATS_TYPE_MAX),
};

constexpr name_row policing_levels[] = {
    NAME(OVK_ETHERNET_POLICING_LEVEL_INVALID),
    NAME(OVK_ETHERNET_POLICING_LEVEL_INTERFACE),
    NAME(OVK_ETHERNET_POLICING_LEVEL_INTERFACE_VLAN),
    NAME(OVK_ETHERNET_POLICING_LEVEL_INTERFACE_VLAN_PRI),
    NAME(OVK_ETHERNET_POLICING_LEVEL_INTERFACE_VLAN_PRI_MAC),
    NAME(OVK_ETHERNET_POLICING_LEVEL_INTERFACE_PRI),
    NAME(OVK_ETHERNET_POLICING_LEVEL_MAX),
};

constexpr name_row vlan_assign_policies[] = {
    NAME(OVK_ETHERNET_VLAN_ASSIGN_PORT_BASED),
    NAME(OVK_ETHERNET_VLAN_ASSIGN_PORT_PROTO_BASED),
    NAME(OVK_ETHERNET_VLAN_ASSIGN_PORT_SMAC_BASED),
    NAME(OVK_ETHERNET_VLAN_ASSIGN_PORT_PRI_SMAC_BASED),
    NAME(OVK_ETHERNET_VLAN_ASSIGN_PROTO_BASED),
    NAME(OVK_ETHERNET_VLAN_ASSIGN_SMAC_BASED),
    NAME(OVK_ETHERNET_VLAN_ASSIGN_MAX),
};

constexpr name_row encaps[] = {
    NAME(OVK_ETHERNET_ENCAP_INVALID),
    NAME(OVK_ETHERNET_ENCAP_DIX),
    NAME(OVK_ETHERNET_ENCAP_LLC_SNAP),
    NAME(OVK_ETHERNET_ENCAP_MAX),
};

constexpr name_row flow_types[] = {
    NAME(ETH_FLOW_TYPE_INVALID),           NAME(ETH_FLOW_TYPE_SIMPLE_INGRESS),
    NAME(ETH_FLOW_TYPE_EXT_INGRESS_ASSOC), NAME(ETH_FLOW_TYPE_POLICING),
    NAME(ETH_FLOW_TYPE_SIMPLE_EGRESS),     NAME(ETH_FLOW_TYPE_EGRESS_ENCAP),
    NAME(ETH_FLOW_TYPE_CPU_ORIGIN),        NAME(ETH_FLOW_TYPE_MAX),
};

constexpr name_row flow_actions[] = {
    NAME(OVK_ETHERNET_ASSOCIATION_RULE_TYPE_INVALID),
    NAME(OVK_ETHERNET_ASSOCIATION_RULE_TYPE_FORWARD),
    NAME(OVK_ETHERNET_ASSOCIATION_RULE_TYPE_SEND_TO_PORT),
    NAME(OVK_ETHERNET_ASSOCIATION_RULE_TYPE_BIND),
    NAME(OVK_ETHERNET_ASSOCIATION_RULE_TYPE_SEND_TO_CPU),
    NAME(OVK_ETHERNET_ASSOCIATION_RULE_TYPE_SEND_TO_BDL),
    NAME(OVK_ETHERNET_ASSOCIATION_RULE_TYPE_DROP),
    NAME(OVK_ETHERNET_ASSOCIATION_RULE_TYPE_MAX),
};

constexpr name_row egress_flow_actions[] = {
    NAME(OVK_ETHERNET_EGRESS_FLOW_RULE_TYPE_INVALID),
    NAME(OVK_ETHERNET_EGRESS_FLOW_RULE_TYPE_BIND),
    NAME(OVK_ETHERNET_EGRESS_FLOW_RULE_TYPE_DROP),
    NAME(OVK_ETHERNET_EGRESS_FLOW_RULE_TYPE_MAX),
};

} // namespace

const char *ovk_eth_error_name(u32 status)
{
    return name_of(statuses, status, "OVK_ETHERNET_E_UNKNOWN");
}

const char *ovk_eth_mac_channel_name(u32 channel)
{
    return name_of(mac_channels, channel, "KOR_UNKNOWN_MAC");
}

const char *ovk_eth_exception_name(u32 value)
{
    return name_of(exceptions, value, "OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN");
}

const char *ovk_eth_exception_action_name(u32 value)
{
    return name_of(exception_actions, value, "OVK_ETHERNET_EXCEPTION_ACTION_TYPE_UNKNOWN");
}

const char *ovk_eth_mac_speed_name(u32 value)
{
    return name_of(speeds, value, "KOR_UNKNOWN_SPEED");
}

const char *ovk_eth_port_rate_name(u32 value)
{
    return name_of(speeds, value, "UNKNOWN_RATE");
}

const char *ovk_eth_mac_duplex_name(u32 value)
{
    return name_of(duplexes, value, "OVK_ETHERNET_DUPLEX_UNKNOWN");
}

const char *ovk_eth_flow_control_policy_name(u32 value)
{
    return name_of(flow_control_policies, value, "OVK_ETHERNET_FLOW_CONTROL_UNKNOWN");
}

const char *ovk_eth_stp_state_name(u32 value)
{
    return name_of(stp_states, value, "OVK_ETHERNET_STP_STATE_UNKNOWN");
}

const char *ovk_eth_intf_type_name(u32 value)
{
    return name_of(intf_types, value, "INTERFACE_TYPE_UNKNOWN");
}

const char *ovk_eth_fwd_mode_name(u32 value)
{
    return name_of(fwd_modes, value, "UNKNOWN_FWD_MODE");
}

const char *ovk_eth_stats_name(u32 value)
{
    return name_of(stats_types, value, "UNKNOWN_FWD_MODE");
}

const char *ovk_eth_police_level_name(u32 value)
{
    return name_of(policing_levels, value, "OVK_ETHERNET_POLICING_LEVEL_UNKNOWN");
}

const char *ovk_eth_vlan_assign_policy_name(u32 value)
{
    return name_of(vlan_assign_policies, value, "OVK_ETHERNET_VLAN_ASSIGN_UNKNOWN");
}

const char *ovk_ethernet_encap_type_name(u32 value)
{
    return name_of(encaps, value, "OVK_ETHERNET_ENCAP_UNKNOWN");
}

const char *ovk_eth_flow_type_name(u32 value)
{
    return name_of(flow_types, value, "ETH_FLOW_TYPE_UNKNOWN");
}

const char *ovk_eth_flow_action_name(u32 value)
{
    return name_of(flow_actions, value, "OVK_ETHERNET_ASSOCIATION_RULE_TYPE_UNKNOWN");
}

const char *ovk_eth_egress_flow_action_name(u32 value)
{
    return name_of(egress_flow_actions, value, "OVK_ETHERNET_EGRESS_FLOW_RULE_TYPE_UNKNOWN");
}
