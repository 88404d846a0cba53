// SPDX-License-Identifier: Apache-2.0
/* Patterns. clear and extend touch the caller's object alone and are light operations. */
#include "call.h"
#include "ovk_print.h"
#include "ovk_ptn.h"

#include <cstdio>

namespace sim {

namespace {

kor_ptn_data *live(kor_ptn_data *data)
{
    if (given(data, "pattern object")->state == kor_ptn_data::freed)
        wrong("pattern is freed");
    if (data->state != kor_ptn_data::live)
        wrong("no pattern object");
    return data;
}

/* A pattern by value, for the operations that take it so. */
kor_ptn whole(kor_ptn_data *data, u32 length, u32 width)
{
    return {data, length, width};
}

} // namespace

const kor_ptn_data &live_data(const kor_ptn *pattern)
{
    return *live(given(pattern, "pattern")->data);
}

std::size_t live_patterns()
{
    const Guard guard;
    return world().live_patterns;
}

} // namespace sim

using namespace sim;

u32 ovk_ptn_new(u32 width, kor_ptn *pattern)
{
    return platform<"ovk_ptn_new">(With{width}, [&]() -> u32 {
        given(pattern, "pattern");
        if (width == 0 || width > Bits::max_length)
            wrong("width %u", width);
        *pattern = {&world().patterns.emplace_back(), 0, width};
        ++world().live_patterns;
        return 0;
    });
}

u32 ovk_ptn_clear(kor_ptn *pattern)
{
    return platform<"ovk_ptn_clear">(With{pattern}, [&]() -> u32 {
        live(given(pattern, "pattern")->data)->bits = {};
        pattern->length = 0;
        return 0;
    });
}

u32 ovk_ptn_extend(kor_ptn *pattern, u32 value, u32 bits)
{
    return platform<"ovk_ptn_extend">(With{pattern, value, bits}, [&]() -> u32 {
        Bits &key = live(given(pattern, "pattern")->data)->bits;
        if (pattern->length != key.length)
            wrong("length word %u of a pattern of %u bits", pattern->length, key.length);
        if (bits > 32 || !key.push(value, bits))
            wrong("%u bits more on a pattern of %u", bits, key.length);
        pattern->length = key.length;
        return 0;
    });
}

u32 ovk_ptn_free(kor_ptn_data *data, u32 length, u32 width)
{
    const kor_ptn pattern = whole(data, length, width);
    return platform<"ovk_ptn_free">(With{&pattern}, [&]() -> u32 {
        if (!data) // the pattern of a function, which has no key
            return 0;
        live(data)->state = kor_ptn_data::freed;
        --world().live_patterns;
        return 0;
    });
}

void ovk_ptn_print(kor_ptn_data *data, u32 length, u32 width)
{
    const kor_ptn pattern = whole(data, length, width);
    platform<"ovk_ptn_print">(With{&pattern}, [&] { std::fputs(show(&pattern).c_str(), stdout); });
}

void ovk_ptn_action_print(u32 type, u32 w1, u32 w2)
{
    const kor_ptn_action action = {type, w1, w2};
    platform<"ovk_ptn_action_print">(With{&action}, [&] { std::printf(" -> %s", show(&action).c_str()); });
}

void ovk_byte_string_print(const void *bytes, u32 length)
{
    platform<"ovk_byte_string_print">(With{BytesArg{bytes, length}}, [&] {
        if (length)
            std::fputs(hex(given(bytes, "bytes"), length).c_str(), stdout);
    });
}
