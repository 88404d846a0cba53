// SPDX-License-Identifier: Apache-2.0
//
// MAC addresses: six bytes in network order.
#ifndef OVK_ETH_COMMON_MAC_H
#define OVK_ETH_COMMON_MAC_H

#include <cstring>

#include "kor_types.h"

inline constexpr u32 OVK_ETH_MAC_BYTES = 6;
inline constexpr u32 OVK_ETH_MAC_BITS = 48;

// For messages: OVK_ETH_MAC_FORMAT in the format, OVK_ETH_MAC_ARGS(mac) among the arguments.
#define OVK_ETH_MAC_FORMAT "%02x-%02x-%02x-%02x-%02x-%02x"
#define OVK_ETH_MAC_ARGS(mac) (mac)[0], (mac)[1], (mac)[2], (mac)[3], (mac)[4], (mac)[5]

// An address and the number of its leading bits that count.
struct ovk_eth_mac_prefix {
    u8 mac[OVK_ETH_MAC_BYTES];
    u8 bits;
};

namespace ovk {

inline void copy_mac(u8 *to, const u8 *from)
{
    std::memcpy(to, from, OVK_ETH_MAC_BYTES);
}

// IEEE 802: the low bit of the first octet marks a group address.
inline bool is_group_mac(const u8 *mac)
{
    return (mac[0] & 1) != 0;
}

inline ovk_eth_mac_prefix whole_mac(const u8 *mac)
{
    return {.mac = {mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]}, .bits = OVK_ETH_MAC_BITS};
}

// Hands the prefix to `append(value, bits)` as a key wants it: whole octets, then what is left of the next
// one from its top. Octets past the address's end are zero.
template <class Append>
void append_mac_prefix(const u8 *mac, u32 bits, Append append)
{
    const auto octet = [mac](u32 index) -> u32 { return index < OVK_ETH_MAC_BYTES ? mac[index] : 0; };
    const u32 whole = bits / 8;
    const u32 rest = bits % 8;
    for (u32 index = 0; index < whole; index++)
        append(octet(index), 8);
    if (rest != 0)
        append(octet(whole) >> (8 - rest), rest);
}

} // namespace ovk

#endif
