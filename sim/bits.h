// SPDX-License-Identifier: Apache-2.0
/*
 * Bits: the bit string behind patterns, rules and database entries, up to 256 bits.
 *
 * A value. Bits stand left-aligned and everything past `length` is zero, so that comparing words compares
 * strings: the order puts a prefix right before whatever it covers, and all that it covers is contiguous.
 */
#ifndef OVK_SIM_BITS_H
#define OVK_SIM_BITS_H

#include "kor_types.h"

#include <array>
#include <compare>
#include <string>

namespace sim {

struct Bits {
    static constexpr u32 max_length = 256;

    std::array<u64, 4> words{};
    u32 length = 0;

    /* Appends the low `count` bits (0 to 64) of `value`. False, with nothing appended, past max_length. */
    bool push(u64 value, u32 count);

    /* The first `count` bits, or all of them when there are fewer. */
    Bits prefix(u32 count) const;

    bool covers(const Bits &other) const { return length <= other.length && other.prefix(length) == *this; }

    /* "0x0a3/9": the bits read as one number, and how many they are. */
    std::string text() const;

    auto operator<=>(const Bits &) const = default; // NOLINT(modernize-use-nullptr): there is no pointer
};

struct BitsHash {
    std::size_t operator()(const Bits &bits) const
    {
        u64 hash = bits.length;
        for (const u64 word : bits.words)
            hash = (hash ^ word) * 0x9E3779B97F4A7C15u, hash ^= hash >> 29;
        return static_cast<std::size_t>(hash ^ (hash >> 32));
    }
};

} // namespace sim

#endif
