// SPDX-License-Identifier: Apache-2.0
/* State memory and the traffic manager's shared memory: bytes by namespace id. */
#include "call.h"
#include "chip.h"
#include "kor_qsh.h"
#include "kor_se.h"

#include <algorithm>
#include <cstring>

namespace sim {

namespace {

constexpr u32 record_limit = 0x10000; /* bytes; more is a stray offset or size */

void put(Memory &memory, u32 id, u32 offset, const void *bytes, u32 size)
{
    if (size == 0)
        return;
    std::vector<u8> &record = memory[id];
    if (record.size() < offset + size)
        record.resize(offset + size);
    std::memcpy(record.data() + offset, bytes, size);
}

std::vector<u8> read(const Memory &memory, u32 id, u32 size)
{
    const auto at = memory.find(id);
    std::vector<u8> out = at == memory.end() ? std::vector<u8>() : at->second;
    out.resize(size);
    return out;
}

void check(const void *bytes, u32 offset, u32 size)
{
    if (size)
        given(bytes, "buffer");
    if (offset > record_limit || size > record_limit - offset)
        wrong("%u bytes at %u", size, offset);
}

} // namespace

std::vector<u8> state(kor_rte rte, u32 id, u32 size)
{
    const Guard guard;
    return read(asked_chip(rte).state, id, size);
}

void state_put(kor_rte rte, u32 id, u32 offset, const std::vector<u8> &bytes)
{
    const Guard guard;
    put(asked_chip(rte).state, id, offset, bytes.data(), static_cast<u32>(bytes.size()));
}

std::vector<u8> shared(kor_rte rte, u32 id, u32 size)
{
    const Guard guard;
    return read(asked_chip(rte).shared, id, size);
}

void shared_put(kor_rte rte, u32 id, const std::vector<u8> &bytes)
{
    const Guard guard;
    put(asked_chip(rte).shared, id, 0, bytes.data(), static_cast<u32>(bytes.size()));
}

} // namespace sim

using namespace sim;

u32 kor_se_state_set(kor_rte rte, u32 ns_id, u32 offset, const void *buffer, u32 size)
{
    return platform<"kor_se_state_set">(With{rte, ns_id, offset, BytesArg{buffer, size}}, [&]() -> u32 {
        check(buffer, offset, size);
        put(chip(rte).state, ns_id, offset, buffer, size);
        return 0;
    });
}

u32 kor_se_state_get(kor_rte rte, u32 ns_id, u32 offset, void *buffer, u32 size)
{
    return platform<"kor_se_state_get">(With{rte, ns_id, offset, size}, [&]() -> u32 {
        check(buffer, offset, size);
        const std::vector<u8> record = read(chip(rte).state, ns_id, offset + size);
        std::copy(record.begin() + offset, record.end(), static_cast<u8 *>(buffer));
        return 0;
    });
}

u32 kor_qsh_shared_param_mod(kor_rte rte, const kor_qsh_shared_param *param, u32 flags)
{
    const kor_qsh_shared_param shown = param ? *param : kor_qsh_shared_param{};
    const With arguments{rte, shown.ns_id, BytesArg{shown.buffer, shown.length}, flags};
    return platform<"kor_qsh_shared_param_mod">(arguments, [&]() -> u32 {
        given(param, "descriptor");
        check(param->buffer, 0, param->length);
        if (flags)
            wrong("flags 0x%x", flags);
        put(chip(rte).shared, param->ns_id, 0, param->buffer, param->length);
        return 0;
    });
}
