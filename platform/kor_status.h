/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_status: the run-time environment's generic status codes and their texts.
 *
 * 0 is success. Everything else is a failure, and callers compare with 0 or with one value, never with a
 * range. The codes below are those that a service module sets from its own checks; an operation may return
 * others, which travel to the caller unchanged.
 */
#ifndef KOR_STATUS_H
#define KOR_STATUS_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum kor_status {
    KOR_OK = 0,
    KOR_E_INVALID_HANDLE = 1,
    KOR_E_LIST_FULL = 7,
    KOR_E_INVALID_ARGUMENT = 8,
    KOR_E_UNSUPPORTED = 15,
    KOR_E_NO_MEMORY = 18,
    KOR_E_VP_NOT_FOUND = 20,
    KOR_E_VP_FLOW_DATA = 21,
    KOR_E_RSRC_NOT_FOUND = 25,
    KOR_E_RSRC_CREATE = 26,
    KOR_E_RSRC_DESTROY = 27,
    KOR_E_RSRC_QUERY = 28,
    KOR_E_RSRC_ALLOCATE = 29,
    KOR_E_RSRC_FREE = 30,
    KOR_E_SE_READ = 43, /* also a failed clear of the traffic manager's shared memory */
    KOR_E_SE_WRITE = 44,
    KOR_E_SUBNET_CREATE = 58,
    KOR_E_SUBNET_DESTROY = 59,
    KOR_E_SUBNET_ADD = 60,
    KOR_E_SUBNET_DELETE = 61,
    KOR_E_SUBNET_FIND = 62,
    KOR_E_PTN_SYMBOL = 63,
    KOR_E_PTN_LEARN = 64,
    KOR_E_PTN_UNLEARN = 65,
    KOR_E_OTREESET_DEFAULT = 77,
    KOR_E_OTREESET_INSERT = 78,
    KOR_E_OTREESET_DELETE = 79,
    KOR_E_OTREESET_BUILD = 81,
    KOR_E_OTREESET_COUNT = 82,
    KOR_E_PORT_VP = 94,
    KOR_E_TAG_GET = 96,
    KOR_E_TAG_SET = 97,
    KOR_E_TAG_ENABLE = 98,
    KOR_E_MAC_ADDR = 100,
    KOR_E_QINQ = 101,
    KOR_E_CRC = 102,
    KOR_E_UNICAST_FILTER = 103,
    KOR_E_BROADCAST_FILTER = 104,
    KOR_E_UNICAST_FILTER_MACS = 105,
    KOR_E_SPEED_GET = 106,
    KOR_E_SPEED_SET = 107,
    KOR_E_MAC_STATS = 108,
    KOR_E_FLOW_CONTROL = 110,
    KOR_E_SWITCH_LPORT = 131,
    KOR_E_COUNTER_REG_MODE = 132,
    KOR_E_COUNTER_REG_GET = 133,
    KOR_E_LEARN_ATTRS_GET = 134,
    KOR_E_LEARN_ATTRS_SET = 135,
    KOR_E_BRIDGE_ATTRS_GET = 136,
    KOR_E_BRIDGE_ATTRS_SET = 137,
    KOR_E_DEFAULT_VLAN = 138,
    KOR_E_INGRESS_VLAN_SET = 139, /* also a failed read of a VLAN's virtual ports */
    KOR_E_INGRESS_VLAN_REM = 140,
    KOR_E_CVLAN_MAP_SET = 141, /* also a failed write of a VLAN's virtual ports */
    KOR_E_CVLAN_MAP_REM = 142,
    KOR_E_INGRESS_OPTIONS_GET = 143,
    KOR_E_INGRESS_OPTIONS_SET = 144,
    KOR_E_PARSING_OPTIONS_GET = 145,
    KOR_E_PARSING_OPTIONS_SET = 146,
    KOR_E_UNKNOWN_MULTICAST = 148,
    KOR_E_ACL_GET = 149, /* also a failed write of a port's source set */
    KOR_E_ACL_SET = 150,
    KOR_E_ACL_BUILD = 151,
    KOR_E_DESTINATION_VPS = 152,
    KOR_E_BRIDGE_LEARN = 153,
    KOR_E_BRIDGE_UNLEARN = 154,

    /* A set that finds the thing there, a read that finds none yet. Callers that expect it take it as
     * success. */
    KOR_S_ALREADY = 0x1081,

    /* A domain that no module knows; the family's own argument code. */
    OVK_E_INVALID_ARGUMENT = 0x30008,
    /* The module lock. Kept apart from all other codes, so that a host can tell them. */
    OVK_E_LOCK_ACQUIRE = 0x300A5,
    OVK_E_LOCK_RELEASE = 0x100A5
};

/* Text of a status that came out of a kor_ operation. Any code has one; the text stays the platform's. */
const char *kor_status_get(u32 status);

#ifdef __cplusplus
}
#endif

#endif
