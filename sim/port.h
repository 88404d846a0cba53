// SPDX-License-Identifier: Apache-2.0
/*
 * MAC channels: the registers that the port adapter and the switch front end keep for each, as a test or a
 * tool reads them.
 *
 * A chip has the 27 channels of kor_mac_channel and two pseudo channels, 128 and 129, which stand for the
 * aggregates 0x80 and 0x81: they have all registers, but no MAC behind them. At power-on receiver and
 * transmitter are off, the filters on, XGMACs run at 10G and all others at 1G, full duplex; the tag stands
 * from 12 to 16. In records of the hardware's format each byte that has no name reads 0x80 plus its offset,
 * so that a writer which drops what it should keep is seen.
 *
 * Everything is copied out under the simulator's lock. A channel that isn't there is a mistake of the asker
 * and throws std::invalid_argument.
 */
#ifndef OVK_SIM_PORT_H
#define OVK_SIM_PORT_H

#include "kor_gatr.h"
#include "kor_gatr_switch.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace sim {

using Mac = std::array<u8, 6>; /* network order */
using TxCounters = std::array<u64, KOR_GATR_TX_COUNTERS>;
using RxCounters = std::array<u64, KOR_GATR_RX_COUNTERS>;
using CounterRegs = std::array<u32, 3>;

/* The port adapter's part. Switches are 0 or 1. */
struct Port {
    struct FlowControl {
        u32 enable, policy_bit, time;
    };
    struct Crc {
        u32 append, check, strip;
    };
    struct Tag {
        u32 start, stop, msb, flag, enable;
    };
    struct Pipeline {
        std::string name; /* empty until set */
        kor_gatr_vp_params params{};
    };

    u32 rx = 0;
    u32 tx = 0;
    u32 speed = 3;  /* 1 10M, 2 100M, 3 1G, 4 2.5G, 5 10G */
    u32 duplex = 2; /* 1 half, 2 full */
    FlowControl flow_control{};
    Mac mac{};
    u32 unicast_filter = 1;
    std::array<Mac, 3> unicast_macs{};
    u32 broadcast_filter = 1;
    u32 qinq = 0;
    Crc crc{0, 1, 0};
    Tag tag{12, 16, 0, 0, 0};
    std::array<Pipeline, 2> pipelines; /* untagged, tagged */
    kor_gatr_ingress_options ingress_options;
    kor_gatr_parsing_options parsing_options;
    std::map<u32, u32> vlans;  /* ingress VLAN of the switch -> its flag */
    std::map<u32, u32> cvlans; /* customer VLAN -> VLAN of the switch */
    std::optional<u16> default_vlan;
    TxCounters tx_counters{};
    RxCounters rx_counters{};
    CounterRegs counter_regs{};
    u32 counter_regs_clear = 0; /* reading clears them */
};

/* The switch front end's part. */
struct SwitchPort {
    std::optional<u32> logical_port;
    u32 learn = 0;
    kor_gatr_learn_attrs learn_attrs;
    kor_gatr_bridge_port_attrs bridge_attrs;
    kor_gatr_acl_port_cfg acl;          /* as written last */
    kor_gatr_acl_port_cfg acl_in_force; /* as it was at the last build */
    u32 unknown_multicast = 0;          /* destination index */
    u64 source_vps = 0;
};

std::vector<u32> channels();           /* in order */
std::string channel_name(u32 channel); /* "GMAC17", "AGGR0" */

/* The channel of a port number or an aggregate id; ports 8 to 12 belong to the second group of MACs. */
std::optional<u32> channel_of(u32 number);

Port port(kor_rte rte, u32 channel);
SwitchPort switch_port(kor_rte rte, u32 channel);

/* What the MAC, and the port's counter registers, have counted. */
void mac_counters_set(kor_rte rte, u32 channel, const TxCounters &tx, const RxCounters &rx);
void counter_regs_set(kor_rte rte, u32 channel, const CounterRegs &values);

/* What the switch keeps beside its ports. Nothing for a VLAN whose set was never written. */
u64 destination_vps(kor_rte rte, u8 index);
std::optional<u64> vlan_vps(kor_rte rte, u32 vlan);
kor_gatr_bridging_vp bridging_vp(kor_rte rte, u32 id); /* 0x16 to 0x18 */

} // namespace sim

#endif
