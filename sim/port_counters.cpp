// SPDX-License-Identifier: Apache-2.0
/* The counters of a MAC channel. They count what a test says: no frame ever passes. */
#include "call.h"
#include "chip.h"

#include <algorithm>
#include <stdexcept>

namespace sim {

namespace {

Port &asked_port(kor_rte rte, u32 channel)
{
    auto &ports = asked_chip(rte).ports;
    if (const auto at = ports.find(channel); at != ports.end())
        return at->second;
    throw std::invalid_argument("no MAC channel of that number");
}

/* Counters as the hardware hands them out: the 32-bit halves of each stand the wrong way round. */
template <class Counters>
void hand_out(const Counters &from, u64 *to)
{
    std::transform(from.begin(), from.end(), to, [](u64 count) { return count << 32 | count >> 32; });
}

} // namespace

void mac_counters_set(kor_rte rte, u32 channel, const TxCounters &tx, const RxCounters &rx)
{
    const Guard guard;
    Port &port = asked_port(rte, channel);
    port.tx_counters = tx;
    port.rx_counters = rx;
}

void counter_regs_set(kor_rte rte, u32 channel, const CounterRegs &values)
{
    const Guard guard;
    asked_port(rte, channel).counter_regs = values;
}

} // namespace sim

using namespace sim;

u32 kor_gatr_mac_statistics_get(kor_rte rte, u32 channel, u64 *tx, u64 *rx, u32 clear)
{
    return platform<"kor_gatr_mac_statistics_get">(With{rte, channel, clear}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        hand_out(port.tx_counters, given(tx, "transmit counters"));
        hand_out(port.rx_counters, given(rx, "receive counters"));
        if (clear == 1) {
            port.tx_counters = {};
            port.rx_counters = {};
        }
        return 0;
    });
}

u32 kor_gatr_port_counter_reg_mode_set(kor_rte rte, u32 channel, u32 clear_on_read)
{
    return platform<"kor_gatr_port_counter_reg_mode_set">(With{rte, channel, clear_on_read}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        check_on_off(clear_on_read, "clear on read");
        port.counter_regs_clear = clear_on_read;
        return 0;
    });
}

u32 kor_gatr_port_counter_reg_get(kor_rte rte, u32 channel, u32 *a, u32 *b, u32 *c)
{
    return platform<"kor_gatr_port_counter_reg_get">(With{rte, channel}, [&]() -> u32 {
        Port &port = port_at(rte, channel);
        *given(a, "first counter") = port.counter_regs[0];
        *given(b, "second counter") = port.counter_regs[1];
        *given(c, "third counter") = port.counter_regs[2];
        if (port.counter_regs_clear)
            port.counter_regs = {};
        return 0;
    });
}
