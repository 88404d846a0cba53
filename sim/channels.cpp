// SPDX-License-Identifier: Apache-2.0
/* MAC channels: which there are, which port is which, and what they hold at power-on. */
#include "call.h"
#include "chip.h"
#include "ovk_sys.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

namespace sim {

namespace {

struct ChannelRow {
    u32 channel;
    u32 number; /* of its port, or id of its aggregate */
    const char *name;
};

// clang-format off
constexpr ChannelRow rows[] = {
    {KOR_XGMAC0,  0x00, "XGMAC0"},  {KOR_GMAC1,  0x01, "GMAC1"},  {KOR_GMAC2,  0x02, "GMAC2"},
    {KOR_GMAC3,   0x03, "GMAC3"},   {KOR_GMAC4,  0x04, "GMAC4"},
    {KOR_XGMAC8,  0x08, "XGMAC8"},  {KOR_GMAC9,  0x09, "GMAC9"},  {KOR_GMAC10, 0x0A, "GMAC10"},
    {KOR_GMAC11,  0x0B, "GMAC11"},  {KOR_GMAC12, 0x0C, "GMAC12"},
    {KOR_XGMAC16, 0x10, "XGMAC16"}, {KOR_GMAC17, 0x11, "GMAC17"}, {KOR_GMAC18, 0x12, "GMAC18"},
    {KOR_GMAC19,  0x13, "GMAC19"},  {KOR_GMAC20, 0x14, "GMAC20"},
    {KOR_GMAC32,  0x20, "GMAC32"},  {KOR_GMAC33, 0x21, "GMAC33"},
    {KOR_GMAC48,  0x30, "GMAC48"},  {KOR_GMAC49, 0x31, "GMAC49"},
    {KOR_GMAC64,  0x40, "GMAC64"},  {KOR_GMAC65, 0x41, "GMAC65"},
    {KOR_GMAC80,  0x50, "GMAC80"},  {KOR_GMAC81, 0x51, "GMAC81"},
    {KOR_GMAC96,  0x60, "GMAC96"},  {KOR_GMAC97, 0x61, "GMAC97"},
    {KOR_GMAC112, 0x70, "GMAC112"}, {KOR_GMAC113, 0x71, "GMAC113"},
    {128,         0x80, "AGGR0"},   {129,        0x81, "AGGR1"},
};
// clang-format on
static_assert(std::size(rows) == 27 + 2);
static_assert(std::is_sorted(std::begin(rows), std::end(rows),
                             [](const ChannelRow &a, const ChannelRow &b) {
                                 return a.channel < b.channel;
                             }));

constexpr u32 ten_gigabit = 5;

template <class Key>
const ChannelRow *find_row(Key key, u32 value)
{
    const auto *at = std::find_if(std::begin(rows), std::end(rows),
                                  [&](const ChannelRow &row) { return row.*key == value; });
    return at == std::end(rows) ? nullptr : at;
}

/* A record of which each byte reads 0x80 plus its offset. */
template <class Record>
Record numbered_bytes()
{
    std::array<u8, sizeof(Record)> bytes;
    for (u32 i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<u8>(0x80 + i);
    return std::bit_cast<Record>(bytes);
}

template <class State>
State &channel_at(std::map<u32, State> &states, u32 channel)
{
    const auto at = states.find(channel);
    if (at == states.end())
        wrong("no MAC channel %u", channel);
    return at->second;
}

template <class State>
const State &asked_channel(const std::map<u32, State> &states, u32 channel)
{
    if (const auto at = states.find(channel); at != states.end())
        return at->second;
    throw std::invalid_argument("no MAC channel of that number");
}

} // namespace

Port power_on_port(u32 channel)
{
    Port port;
    if (channel_name(channel).starts_with("XGMAC"))
        port.speed = ten_gigabit;
    port.ingress_options = numbered_bytes<kor_gatr_ingress_options>();
    port.ingress_options.hsw_mode = 0;
    port.ingress_options.byte_1 = 0;
    port.ingress_options.bridging = 0;
    port.ingress_options.byte_20 = 0;
    port.ingress_options.byte_21 = 0;
    port.parsing_options = numbered_bytes<kor_gatr_parsing_options>();
    port.parsing_options.byte_3 = 0;
    port.parsing_options.byte_4 = 0;
    port.parsing_options.untagged_discard = 0;
    return port;
}

SwitchPort power_on_switch_port()
{
    SwitchPort port;
    port.learn_attrs = numbered_bytes<kor_gatr_learn_attrs>();
    port.learn_attrs.byte_5 = 0;
    port.learn_attrs.byte_6 = 0;
    port.learn_attrs.byte_7 = 0;
    port.learn_attrs.byte_8 = 1;
    port.learn_attrs.byte_9 = 0;
    port.bridge_attrs = numbered_bytes<kor_gatr_bridge_port_attrs>();
    port.bridge_attrs.byte_11 = 0;
    port.bridge_attrs.flooding = 0;
    port.bridge_attrs.max_age = 60; // five minutes
    port.acl = numbered_bytes<kor_gatr_acl_port_cfg>();
    port.acl.word_56 = 0;
    port.acl.word_60 = 0;
    port.acl.byte_98 = 0;
    port.acl.byte_99 = 1;
    port.acl_in_force = port.acl;
    return port;
}

kor_gatr_bridging_vp power_on_bridging_vp()
{
    auto record = numbered_bytes<kor_gatr_bridging_vp>();
    std::fill(std::begin(record.pcp_task_priority), std::end(record.pcp_task_priority), u8{1});
    return record;
}

Port &port_at(kor_rte rte, u32 channel)
{
    return channel_at(chip(rte).ports, channel);
}

SwitchPort &switch_port_at(kor_rte rte, u32 channel)
{
    return channel_at(chip(rte).switch_ports, channel);
}

void check_on_off(u32 value, const char *what)
{
    if (value > 1)
        wrong("%s %u: neither off nor on", what, value);
}

void check_vlan(u32 vlan)
{
    if (vlan > 4095)
        wrong("VLAN %u", vlan);
}

std::vector<u32> channels()
{
    std::vector<u32> out;
    for (const ChannelRow &row : rows)
        out.push_back(row.channel);
    return out;
}

std::string channel_name(u32 channel)
{
    if (const ChannelRow *row = find_row(&ChannelRow::channel, channel))
        return row->name;
    throw std::invalid_argument("no MAC channel of that number");
}

std::optional<u32> channel_of(u32 number)
{
    const ChannelRow *row = find_row(&ChannelRow::number, number);
    return row ? std::optional(row->channel) : std::nullopt;
}

Port port(kor_rte rte, u32 channel)
{
    const Guard guard;
    return asked_channel(asked_chip(rte).ports, channel);
}

SwitchPort switch_port(kor_rte rte, u32 channel)
{
    const Guard guard;
    return asked_channel(asked_chip(rte).switch_ports, channel);
}

} // namespace sim

using namespace sim;

u32 ovk_sys_mac_channel_id_get(ovk_system *parent, u32 port, u32 *channel)
{
    return platform<"ovk_sys_mac_channel_id_get">(With{port}, [&]() -> u32 {
        chip_of(parent);
        given(channel, "output");
        const std::optional<u32> found = channel_of(port);
        if (!found)
            return status_unknown_name;
        *channel = *found;
        return 0;
    });
}
