// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <algorithm>

#include "ovk_eth_hw/bridge_table.h"
#include "ovk_eth_hw/state_memory.h"

namespace {

using namespace test;
using bytes = std::vector<u8>;

constexpr u32 id = 0xd0fe20;
constexpr u8 mac[6] = {0x00, 0x1b, 0x19, 0xa0, 0xb1, 0xc2};

using StateMemory = HostTest;
using BridgeTableEntry = HostTest;

// 300 bytes, of which the first `size` were cleared.
bytes cleared(u32 size)
{
    bytes out(300, 0xee);
    std::fill_n(out.begin(), size, 0);
    return out;
}

TEST_F(StateMemory, ClearWritesZeroesFromTheStartInOneCall)
{
    const kor_rte rte = host().rte();
    sim::journal_on(true);
    for (const u32 size : {256u, 144u, 32u, 5u, 0u}) {
        sim::state_put(rte, id, 0, cleared(0));
        sim::shared_put(rte, id, cleared(0));
        sim::journal::clear();
        EXPECT_EQ(ovk_eth_clear_se_state(module(), id, size), 0u);
        EXPECT_EQ(ovk_eth_clear_shared_namespace_state(module(), id, size), 0u);
        EXPECT_EQ(sim::state(rte, id, 300), cleared(size));
        EXPECT_EQ(sim::shared(rte, id, 300), cleared(size));
        EXPECT_EQ(sim::journal::writes(), (Lines{"kor_se_state_set", "kor_qsh_shared_param_mod"})) << size;
    }
}

TEST_F(StateMemory, ClearOfStateHasAClassLineAndOfSharedMemoryNone)
{
    const auto clear_both = [&] {
        return ovk_eth_clear_se_state(module(), id, 5) +
               ovk_eth_clear_shared_namespace_state(module(), id, 5);
    };
    sim::traces::on(true);
    EXPECT_EQ(told(0x80, clear_both), "se_write] NS ID 0x00d0fe20 idx 0: 0000000000\n");
    EXPECT_EQ(told(0x16f, clear_both), "");
    const Lines once = {"8 ovk_eth_clear_se_state",
                        "27 NS ID 0x00d0fe20 idx 0: ", "9 ovk_eth_clear_se_state",
                        "8 ovk_eth_clear_shared_namespace_state", "9 ovk_eth_clear_shared_namespace_state"};
    EXPECT_EQ(traced(), operator+(once, once));
}

TEST_F(StateMemory, FailureOfSharedMemoryHasTheStatusOfARead)
{
    sim::faults::fail("kor_qsh_shared_param_mod");
    expect([&] { return ovk_eth_clear_shared_namespace_state(module(), id, 32); }, 43,
           "RTE Error: injected fault, Failed to initialize QSH shared memory");
}

TEST_F(BridgeTableEntry, HasItsFieldsAtTheirBytes)
{
    const u8 *const unreadable = reinterpret_cast<const u8 *>(1);
    const struct {
        u32 port;
        const u8 *mac;
        u32 group;
        u8 is_default;
        const char *record; // kind, group, MAC; port at 16, flags at 22, group at 28, destination at 30
    } cases[] = {
        {0, nullptr, 4095, 1, "03000000 ff0f 000000000000 00000000 00 0000000000 000000 000000 ff0f c8 00"},
        // Nothing of a default entry comes from the MAC, and its destination isn't the port's.
        {0x107, unreadable, 63, 0xff,
         "03000000 3f00 000000000000 00000000 07 0000000000 000000 000000 3f00 c8 00"},
        {21, mac, 0x123, 0, "00000000 2301 001b19a0b1c2 00000000 15 0000000000 010101 000000 2301 16 00"},
    };
    const std::string before = host().image();
    for (const auto &at : cases) {
        std::string record = at.record;
        std::erase(record, ' ');
        EXPECT_EQ(ovk_eth_hsw_bridge_table_entry(module(), 1, at.port, at.mac, at.group, at.is_default),
                  0u);
        EXPECT_EQ(changes_since(before), Lines{"+ bridge " + record});
        // Every other operation takes the entry of that key out, whatever the port.
        for (const u32 op : {2u, 0u, 3u}) {
            EXPECT_EQ(ovk_eth_hsw_bridge_table_entry(module(), op, 99, at.mac, at.group, at.is_default),
                      op == 2 ? 0u : 154u);
            EXPECT_EQ(host().image(), before);
        }
    }
}

} // namespace
