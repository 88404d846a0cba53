// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_helper/names.h"

#include <sstream>

#include "support.h"

namespace {

struct name_table {
    const char *(*name)(u32 value);
    u32 first;
    const char *prefix;
    const char *names;              // from `first` on, without the prefix; "-3" is a gap of three values
    const char *fallback = nullptr; // "..._UNKNOWN" of the prefix unless said otherwise
};

constexpr const char *speeds = "10M 100M 1G 2_5G 10G";

constexpr name_table tables[] = {
    {ovk_eth_error_name, 0x2000001, "OVK_ETHERNET_E_",
     "INVALID_EXCEPTION_TYPE INVALID_EXCEPTION_ACTION_TYPE INVALID_IF_HANDLE INVALID_FLOW_HANDLE "
     "INVALID_IF_TYPE INVALID_PORT_NUMBER INVALID_PROTO_TYPE INVALID_LLC_TYPE INVALID_VLAN_ID "
     "INVALID_BG_ID "
     "INVALID_PORT_TAG_TYPE INVALID_MCAST_GROUP_HANDLE INVALID_MAC_ADDR INVALID_IPV4_ADDR "
     "INVALID_MAC_SUBNET "
     "INVALID_PRIORITY INVALID_DSCP INVALID_POLICING_LEVEL INVALID_OUTPUT_RATE "
     "INVALID_VLAN_ASSIGN_POLICY_TYPE INVALID_FLOW_ACTION_TYPE INVALID_DUPLEX_MODE INVALID_ENCAP "
     "INVALID_QOS_MODE INVALID_FWD_MODE INVALID_STATS_TYPE INVALID_ASSOCIATION_MASK INVALID_MTU "
     "INCOMPAT_PORT_TYPE INCOMPAT_IF_TYPE INCOMPAT_STATS_TYPE INCOMPAT_FLOW_TYPE INCOMPAT_IF_STATE "
     "INCOMPAT_FWD_MODE INCOMPAT_VLAN_ASSIGN_POLICY_TYPE INCOMPAT_GATR_VLAN_ETH_TYPE INCONSIST_IF_STATE "
     "UNSUPPORT_STATS_TYPE INTF_ALREADY_EXISTS NON_EXISTENT_INTF INTF_IS_ALREADY_MEMBER_OF_MCAST_GROUP "
     "INTF_IS_NOT_MEMBER_OF_MCAST_GROUP GATR_VLAN_ETH_TYPE_FULL GATR_VLAN_ETH_TYPE_ABSENT "
     "EXCEEDED_ETHTYPE_SUPPORTED"},
    {ovk_eth_mac_channel_name, 0, "KOR_",
     "XGMAC0 GMAC1 GMAC2 GMAC3 GMAC4 XGMAC8 GMAC9 GMAC10 GMAC11 GMAC12 -6 "
     "XGMAC16 GMAC17 GMAC18 GMAC19 GMAC20 -11 GMAC32 GMAC33 -14 GMAC48 GMAC49 -14 GMAC64 GMAC65 -14 "
     "GMAC80 GMAC81 -14 GMAC96 GMAC97 -14 GMAC112 GMAC113",
     "KOR_UNKNOWN_MAC"},
    {ovk_eth_exception_name, 1, "OVK_ETHERNET_EXCEPTION_TYPE_",
     "STATIC_FWD_NOT_SETUP UNSUPPORTED_IEEE_802_3_PKT INVALID_VLAN_TAG INVALID_NUM_VLAN_TAGS "
     "NO_FLOW_ID_DEFINED NO_ENCAP_FLOW_FOUND NO_STAG_MAPPING UNKNOWN_ASSOCIATION BINDING_ERROR "
     "UNKNOWN_DEST_MAC NO_OUTPUT_QOS_POLICY ETH_MTU_FAILED"},
    {ovk_eth_exception_action_name, 1, "OVK_ETHERNET_EXCEPTION_ACTION_TYPE_",
     "DROP SEND_TO_CPU SEND_TO_BDL SEND_TO_PORT SEND_TO_TVU_FUNC"},
    {ovk_eth_mac_speed_name, 1, "OVK_ETHERNET_SPEED_", speeds, "KOR_UNKNOWN_SPEED"},
    {ovk_eth_port_rate_name, 1, "OVK_ETHERNET_SPEED_", speeds, "UNKNOWN_RATE"},
    {ovk_eth_mac_duplex_name, 0, "OVK_ETHERNET_DUPLEX_", "INVALID HALF FULL MAX"},
    {ovk_eth_flow_control_policy_name, 0, "OVK_ETHERNET_FLOW_CONTROL_",
     "INVALID RESPOND FILTER FORWARD GENERATE DROP_RX_GENERATE MAX"},
    {ovk_eth_stp_state_name, 0, "OVK_ETHERNET_STP_STATE_",
     "INVALID DISABLED FILTERING LEARNING FORWARDING MAX"},
    {ovk_eth_intf_type_name, 0, "INTERFACE_TYPE_", "INVALID PHY VLAN SWITCH_VIRTUAL AGGR MAX"},
    {ovk_eth_fwd_mode_name, 0, "OVK_ETHERNET_FWD_MODE_",
     "INVALID SWITCH_ACCESS SWITCH_TRUNK SWITCH_TUNNEL HIGHER_LAYER STATIC MAX", "UNKNOWN_FWD_MODE"},
    {ovk_eth_stats_name, 0, "OVK_ETHERNET_STATS_TYPE_", "INVALID INTF INTF_PCP INTF_VLAN MAX",
     "UNKNOWN_FWD_MODE"},
    {ovk_eth_police_level_name, 0, "OVK_ETHERNET_POLICING_LEVEL_",
     "INVALID INTERFACE INTERFACE_VLAN INTERFACE_VLAN_PRI INTERFACE_VLAN_PRI_MAC INTERFACE_PRI MAX"},
    {ovk_eth_vlan_assign_policy_name, 0, "OVK_ETHERNET_VLAN_ASSIGN_",
     "PORT_BASED PORT_PROTO_BASED -1 PORT_SMAC_BASED PORT_PRI_SMAC_BASED PROTO_BASED -1 SMAC_BASED MAX"},
    {ovk_ethernet_encap_type_name, 0, "OVK_ETHERNET_ENCAP_", "INVALID DIX LLC_SNAP MAX"},
    {ovk_eth_flow_type_name, 0, "ETH_FLOW_TYPE_",
     "INVALID SIMPLE_INGRESS EXT_INGRESS_ASSOC POLICING SIMPLE_EGRESS EGRESS_ENCAP CPU_ORIGIN -1 MAX"},
    {ovk_eth_flow_action_name, 0, "OVK_ETHERNET_ASSOCIATION_RULE_TYPE_",
     "INVALID FORWARD SEND_TO_PORT BIND SEND_TO_CPU SEND_TO_BDL DROP MAX"},
    {ovk_eth_egress_flow_action_name, 0, "OVK_ETHERNET_EGRESS_FLOW_RULE_TYPE_", "INVALID BIND DROP MAX"},
};

TEST(Names, ValuesHaveTheirNamesAndAllOthersTheFallback)
{
    for (const name_table &table : tables) {
        const std::string fallback =
            table.fallback != nullptr ? table.fallback : table.prefix + std::string("UNKNOWN");
        u32 value = table.first;
        std::istringstream names(table.names);
        for (std::string name; names >> name;) {
            const u32 gap_end = value + (name[0] == '-' ? std::stoul(name.substr(1)) : 0);
            if (gap_end == value) {
                EXPECT_EQ(table.name(value++), table.prefix + name);
            }
            while (value < gap_end)
                EXPECT_EQ(table.name(value++), fallback);
        }
        for (const u32 none : {value, value + 1, value + 0x100, table.first - 1, 0x300A5u, 0x7FFFFFFFu})
            EXPECT_EQ(table.name(none), fallback) << none;
    }
    EXPECT_STREQ(ovk_eth_error_name(18), "OVK_ETHERNET_E_UNKNOWN");
}

} // namespace
