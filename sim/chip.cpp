// SPDX-License-Identifier: Apache-2.0
#include "chip.h"

#include "call.h"

#include <stdexcept>

namespace sim {

namespace {
thread_local kor_rte speaking_to = 0;
}

Chip &chip(kor_rte rte)
{
    const auto at = world().chips.find(rte);
    if (at == world().chips.end())
        wrong("no chip has the rte handle 0x%x", rte);
    speaking_to = rte;
    return *at->second;
}

Chip &asked_chip(kor_rte rte)
{
    if (const auto at = world().chips.find(rte); at != world().chips.end())
        return *at->second;
    throw std::invalid_argument("no chip of that rte handle");
}

Chip &chip_of(const ovk_system *parent)
{
    return chip(given(given(parent, "parent")->sys_module, "system module")->rte_handle);
}

kor_rte spoken_to()
{
    return speaking_to;
}

kor_rte chip_add()
{
    const Guard guard;
    const u32 ordinal = world().chips_made++;
    const kor_rte rte = 0x7E000001 + ordinal;
    world().chips.emplace(rte, std::make_unique<Chip>(ordinal));
    add_namespaces(rte);
    return rte;
}

void chip_remove(kor_rte rte)
{
    const Guard guard;
    world().chips.erase(rte);
    std::erase_if(world().namespaces, [rte](const auto &ns) { return ns.first && ns.second.rte == rte; });
    std::erase_if(world().databases, [rte](const auto &db) { return db.second.rte == rte; });
}

bool hide(kor_rte rte, std::string_view name, bool hidden)
{
    const Guard guard;
    Chip &on = asked_chip(rte);
    if (on.symbols.find(name) == on.symbols.end() && !has_pipeline(name) && !brings_namespace(name))
        return false;
    if (hidden)
        on.hidden.emplace(name);
    else if (const auto at = on.hidden.find(name); at != on.hidden.end())
        on.hidden.erase(at);
    return true;
}

std::vector<std::string> symbols(kor_rte rte)
{
    const Guard guard;
    std::vector<std::string> out;
    for (const auto &symbol : asked_chip(rte).symbols)
        out.push_back(symbol.first);
    return out;
}

} // namespace sim
