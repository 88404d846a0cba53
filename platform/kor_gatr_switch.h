/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_gatr_switch: the switch front end.
 *
 * It bridges and learns MAC addresses by itself, among virtual ports. A set of virtual ports is 64 bits,
 * one for each, passed as a low and a high word. Records are in the hardware's format, as in kor_gatr.h.
 * All operations return 0 or a platform status.
 */
#ifndef KOR_GATR_SWITCH_H
#define KOR_GATR_SWITCH_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* One side of a class-of-service map entry: which code point space, and the code point. */
typedef struct kor_gatr_cos {
    u8 kind;
    u8 value;
} kor_gatr_cos;

enum kor_gatr_cos_kind {
    KOR_GATR_COS = 3,
    KOR_GATR_DSCP = 6
};

/* Switch: how much an entry's age may swing before it is reported. */
u32 kor_gatr_switch_bridge_age_hysteresis_set(kor_rte rte, u32 hysteresis);

/* Switch: the code point that an access list puts in for a class of service. */
u32 kor_gatr_switch_acl_cos_to_dscp_map_set(kor_rte rte, kor_gatr_cos cos, const kor_gatr_cos *dscp);

enum kor_gatr_bridge_entry_kind {
    KOR_GATR_BRIDGE_MAC = 0,
    KOR_GATR_BRIDGE_DEFAULT = 3
};

/* Key of a bridge table entry, 16 bytes. */
typedef struct kor_gatr_bridge_key {
    u32 kind;
    u16 bridge_group;
    u8 mac[6]; /* zero in a default entry */
    u32 reserved;
} kor_gatr_bridge_key;

/* Bridge table entry, 32 bytes. */
typedef struct kor_gatr_bridge_entry {
    kor_gatr_bridge_key key;
    u8 port;
    u8 reserved_17[5];
    u8 mac_flags[3]; /* bytes 22 to 24: 1 each in a MAC entry that the control plane makes */
    u8 reserved_25;
    u8 age; /* byte 26: 0 marks an entry that never ages */
    u8 reserved_27;
    u16 bridge_group;
    u8 destination_index; /* byte 30 */
    u8 reserved_31;
} kor_gatr_bridge_entry;

/* Puts the entry into the bridge table; replaces one of the same key. */
u32 kor_gatr_switch_bridge_entry_learn(kor_rte rte, const kor_gatr_bridge_entry *entry);

/* Removes the entry of that key. */
u32 kor_gatr_switch_bridge_entry_unlearn(kor_rte rte, const kor_gatr_bridge_key *key);

/* Which logical port of the switch a MAC channel is. */
u32 kor_gatr_switch_bridge_port_lport_set(kor_rte rte, u32 channel, u32 lport);

/* A port's learning: the switch for it, and 10 bytes of attributes. */
typedef struct kor_gatr_learn_attrs {
    u8 reserved_0[5];
    u8 byte_5; /* 1 where the control plane decides learning */
    u8 byte_6; /* likewise */
    u8 byte_7; /* likewise */
    u8 byte_8; /* 0 there */
    u8 byte_9; /* 1 there */
} kor_gatr_learn_attrs;
u32 kor_gatr_switch_bridge_port_learn_attrs_get(kor_rte rte, u32 channel, u8 *learn,
                                                kor_gatr_learn_attrs *out);
u32 kor_gatr_switch_bridge_port_learn_attrs_set(kor_rte rte, u32 channel, u32 learn,
                                                const kor_gatr_learn_attrs *attrs);

/* A port's bridging attributes. 24 bytes. */
typedef struct kor_gatr_bridge_port_attrs {
    u8 reserved_0[11];
    u8 byte_11; /* 1 where learning options were set */
    u8 reserved_12[4];
    u8 flooding; /* byte 16 */
    u8 reserved_17[3];
    u32 max_age; /* byte 20: maximum age of a learnt entry, in steps of 5 seconds */
} kor_gatr_bridge_port_attrs;
u32 kor_gatr_switch_bridge_port_attrs_get(kor_rte rte, u32 channel, kor_gatr_bridge_port_attrs *out);
u32 kor_gatr_switch_bridge_port_attrs_set(kor_rte rte, u32 channel,
                                          const kor_gatr_bridge_port_attrs *attrs);

/* A port's access list settings. 100 bytes. Changes come into force with the build. */
typedef struct kor_gatr_acl_port_cfg {
    u8 reserved_0[56];
    u32 word_56; /* 1 on a port of the switch */
    u32 word_60; /* likewise */
    u8 reserved_64[34];
    u8 byte_98; /* 3 there */
    u8 byte_99; /* 0 there */
} kor_gatr_acl_port_cfg;
u32 kor_gatr_switch_acl_port_cfg_get(kor_rte rte, u32 channel, kor_gatr_acl_port_cfg *out);
u32 kor_gatr_switch_acl_port_cfg_set(kor_rte rte, u32 channel, const kor_gatr_acl_port_cfg *cfg);
u32 kor_gatr_switch_acl_build(kor_rte rte);

/* The destination index for multicast that the port's bridge doesn't know. */
u32 kor_gatr_switch_bridge_unknown_multicast_set(kor_rte rte, u32 channel, u32 destination_index);

/* Virtual ports behind a destination index, and those that a port may send to. */
u32 kor_gatr_switch_bridge_destination_vps_set(kor_rte rte, u8 index, u32 low, u32 high);
u32 kor_gatr_switch_bridge_source_port_vps_set(kor_rte rte, u32 channel, u32 low, u32 high);

/* Virtual ports of a VLAN of the switch. A read of a set that was never written gives 0x1081. */
u32 kor_gatr_switch_bridge_vlan_vps_get(kor_rte rte, u32 vlan, u64 *vps);
u32 kor_gatr_switch_bridge_vlan_vps_set(kor_rte rte, u32 vlan, u32 low, u32 high);

#ifdef __cplusplus
}
#endif

#endif
