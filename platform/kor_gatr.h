/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_gatr: the port adapter and the switch front end.
 *
 * Records are in the hardware's format: explicit widths, host byte order.
 */
#ifndef KOR_GATR_H
#define KOR_GATR_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* MAC channels. Up to 9 the value and the digit in the name differ: each group of channels starts at 8n. */
enum kor_mac_channel {
    KOR_XGMAC0 = 0,
    KOR_GMAC1 = 1,
    KOR_GMAC2 = 2,
    KOR_GMAC3 = 3,
    KOR_GMAC4 = 4,
    KOR_XGMAC8 = 5,
    KOR_GMAC9 = 6,
    KOR_GMAC10 = 7,
    KOR_GMAC11 = 8,
    KOR_GMAC12 = 9,
    KOR_XGMAC16 = 16,
    KOR_GMAC17 = 17,
    KOR_GMAC18 = 18,
    KOR_GMAC19 = 19,
    KOR_GMAC20 = 20,
    KOR_GMAC32 = 32,
    KOR_GMAC33 = 33,
    KOR_GMAC48 = 48,
    KOR_GMAC49 = 49,
    KOR_GMAC64 = 64,
    KOR_GMAC65 = 65,
    KOR_GMAC80 = 80,
    KOR_GMAC81 = 81,
    KOR_GMAC96 = 96,
    KOR_GMAC97 = 97,
    KOR_GMAC112 = 112,
    KOR_GMAC113 = 113
};

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

/* Port adapter: the class of service, 0 to 7, for a DSCP code point (RFC 2474), 0 to 63, on all ports. */
u32 kor_gatr_common_dscp_cos_set(kor_rte rte, u32 dscp, u32 cos);

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

#ifdef __cplusplus
}
#endif

#endif
