// SPDX-License-Identifier: Apache-2.0
/* The demultiplexer of packets for the CPU: one entry for each port value, with the function it goes to. */
#include "call.h"
#include "chip.h"
#include "ovk_sif.h"

namespace sim {

namespace {

static_assert(sizeof(ovk_sif_demux_entry) == 8);

ovk_sif_demux_entry shown(const ovk_sif_demux_entry *entry)
{
    return entry ? *entry : ovk_sif_demux_entry{};
}

} // namespace

std::map<u16, u32> demux(kor_rte rte)
{
    const Guard guard;
    return asked_chip(rte).demux;
}

} // namespace sim

using namespace sim;

u32 ovk_sif_netDriver_demux_add(ovk_system *parent, const ovk_sif_demux_entry *entry)
{
    const With arguments{shown(entry).entry_fn_id, shown(entry).port_value};
    return platform<"ovk_sif_netDriver_demux_add">(arguments, [&]() -> u32 {
        Chip &on = chip_of(parent);
        given(entry, "entry");
        if (!on.is_function(entry->entry_fn_id))
            wrong("no function has id 0x%x", entry->entry_fn_id);
        on.demux[entry->port_value] = entry->entry_fn_id;
        return 0;
    });
}

u32 ovk_sif_netDriver_demux_remove(ovk_system *parent, const ovk_sif_demux_entry *entry)
{
    const With arguments{shown(entry).entry_fn_id, shown(entry).port_value};
    return platform<"ovk_sif_netDriver_demux_remove">(arguments, [&]() -> u32 {
        Chip &on = chip_of(parent);
        const auto at = on.demux.find(given(entry, "entry")->port_value);
        if (at == on.demux.end() || at->second != entry->entry_fn_id)
            return status_absent;
        on.demux.erase(at);
        return 0;
    });
}
