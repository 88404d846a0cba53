// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/statistics.h"

#include <bit>
#include <cstddef>
#include <cstring>

#include "kor_gatr.h"
#include "kor_se.h"
#include "ovk_eth_helper/names.h"
#include "ovk_eth_hw/channel.h"
#include "ovk_print.h"

OVK_LOG_FILE(ovk_eth_hw, 17);

using ovk::on_channel;

static_assert(sizeof(ovk_eth_port_stats) == (KOR_GATR_TX_COUNTERS + KOR_GATR_RX_COUNTERS) * sizeof(u64));
static_assert(offsetof(ovk_eth_port_stats, rx_octets) == KOR_GATR_TX_COUNTERS * sizeof(u64));
static_assert(sizeof(ovk_eth_if_stats) == 232 && offsetof(ovk_eth_if_stats, rx_error_ucast) == 176 &&
              offsetof(ovk_eth_if_stats, ieee_802_3_dropped_bytes) == 208);
static_assert(sizeof(ovk_eth_global_stats) == 92 && sizeof(ovk_eth_l2_stats) == 104);

namespace {

constexpr bool swaps_bytes = std::endian::native == std::endian::little;

// Network to host byte order, word for word, in place.
void words_to_host(u8 *at, size_t size)
{
    for (size_t offset = 0; swaps_bytes && offset < size; offset += sizeof(u32)) {
        u32 word = 0;
        std::memcpy(&word, at + offset, sizeof word);
        word = __builtin_bswap32(word);
        std::memcpy(at + offset, &word, sizeof word);
    }
}

void exchange_halves(u8 *to, const u8 *from)
{
    u64 value = 0;
    std::memcpy(&value, from, sizeof value);
    value = value << 32 | value >> 32;
    std::memcpy(to, &value, sizeof value);
}

// The words of the interface record that the classifier alone reads, and the counters of 64 bits.
constexpr size_t raw_words[] = {offsetof(ovk_eth_if_stats, raw_76), offsetof(ovk_eth_if_stats, raw_92),
                                offsetof(ovk_eth_if_stats, raw_116)};
constexpr size_t wide_counters[] = {
    offsetof(ovk_eth_if_stats, rx_error_ucast), offsetof(ovk_eth_if_stats, rx_error_mcast),
    offsetof(ovk_eth_if_stats, rx_error_bcast), offsetof(ovk_eth_if_stats, ieee_802_3_dropped_bytes)};

u32 read_counters(ovk_module *module, u32 ns_id, void *out, u32 size)
{
    OVK_TRY_RTE(module, kor_se_state_get(module->rte_handle, ns_id, 0, out, size), KOR_E_SE_READ,
                "RTE Error: %s, Failed to read counters from SE memory\n");
    OVK_LOG_RECORD(
        module, se_read, [&] { ovk_byte_string_print(out, size); }, "NS ID 0x%08x idx %d: ", ns_id, 0);
    return KOR_OK;
}

} // namespace

void ovk_eth_copy_hw_stats(ovk_eth_port_stats *out, const u64 *tx, const u64 *rx)
{
    const auto copy = [](u8 *to, const u64 *from, u32 count) {
        const auto *bytes = reinterpret_cast<const u8 *>(from);
        for (size_t offset = 0; offset < count * sizeof(u64); offset += sizeof(u64))
            exchange_halves(to + offset, bytes + offset);
    };
    auto *record = reinterpret_cast<u8 *>(out);
    copy(record, tx, KOR_GATR_TX_COUNTERS);
    copy(record + offsetof(ovk_eth_port_stats, rx_octets), rx, KOR_GATR_RX_COUNTERS);
}

u32 ovk_eth_port_stats_get(ovk_module *module, u32 if_num, ovk_eth_port_stats *out, u32 clear_on_read)
{
    return on_channel(OVK_CALLER, module, if_num, [&](u32 channel) -> u32 {
        // The record is as long as what is read, so that it is put right where it lies.
        auto *tx = reinterpret_cast<u64 *>(out);
        u64 *rx = tx + KOR_GATR_TX_COUNTERS;

        OVK_TRY_RTE(module, kor_gatr_mac_statistics_get(module->rte_handle, channel, tx, rx, clear_on_read),
                    KOR_E_MAC_STATS,
                    "RTE Error: %s, Failed to get the port MAC stats with Clear-On-Read flag %s for mac "
                    "channel %s\n",
                    clear_on_read == 1 ? "Set" : "Reset", ovk_eth_mac_channel_name(channel));
        ovk_eth_copy_hw_stats(out, tx, rx);
        return KOR_OK;
    });
}

u32 ovk_eth_port_counter_reg_stats_get(ovk_module *module, u32 if_num, ovk_eth_port_counter_regs *out)
{
    return on_channel(OVK_CALLER, module, if_num, [&](u32 channel) -> u32 {
        const kor_rte rte = module->rte_handle;
        const char *name = ovk_eth_mac_channel_name(channel);

        OVK_TRY_RTE(module, kor_gatr_port_counter_reg_mode_set(rte, channel, 0), KOR_E_COUNTER_REG_MODE,
                    "RTE Error: %s, Failed to set clear on read register for HSW counters %s\n", name);
        OVK_TRY_RTE(module, kor_gatr_port_counter_reg_get(rte, channel, &out->a, &out->b, &out->c),
                    KOR_E_COUNTER_REG_GET, "RTE Error: %s, Failed to get the port MAC stats %s\n", name);
        return KOR_OK;
    });
}

u32 ovk_eth_if_stats_get(ovk_module *module, u32 ns_id, ovk_eth_if_stats *out)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        OVK_TRY(read_counters(module, ns_id, out, sizeof *out));
        auto *record = reinterpret_cast<u8 *>(out);
        words_to_host(record, sizeof *out);
        for (const size_t offset : raw_words) // back as it came
            words_to_host(record + offset, sizeof(u32));
        for (const size_t offset : wide_counters)
            if (swaps_bytes)
                exchange_halves(record + offset, record + offset);
        return KOR_OK;
    });
}

u32 ovk_eth_global_stats_get(ovk_module *module, u32 ns_id, ovk_eth_global_stats *out)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        OVK_TRY(read_counters(module, ns_id, out, sizeof *out));
        words_to_host(reinterpret_cast<u8 *>(out), sizeof *out);
        return KOR_OK;
    });
}
