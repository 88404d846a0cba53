// SPDX-License-Identifier: Apache-2.0
/*
 * Namespaces. Those that a chip brings have disjoint ranges of ids, chosen so that an id tells where it
 * comes from. A created pool counts from 0, as the host's own pool of LLS flows does. The system module
 * keeps a chip's interface ids in one that other modules can't find.
 */
#include "call.h"
#include "chip.h"
#include "kor_rsrc.h"
#include "ovk_sys.h"

#include <algorithm>
#include <stdexcept>

namespace sim {

namespace {

struct Brought {
    u32 kind;
    const char *name;
    u32 first_id;
    u32 max_ids;
};

constexpr u32 system_kind = ~0U;
constexpr const char *interface_ids = "interface_ids";

constexpr Brought brought[] = {
    {system_kind, interface_ids, 0x61A81, 0x4000},
    {KOR_RSRC_SWITCH, "ethernet_switch", 0x4000, 4096},
    {KOR_RSRC_STATE, "ethernet_intf_stats", 0x900140, 1024},
    {KOR_RSRC_STATE, "ethernet_intf_pcp_stats", 0x900540, 1024},
    {KOR_RSRC_STATE, "ethernet_intf_vlan_stats", 0x900940, 1024},
    {KOR_RSRC_STATE, "ethernet_time_slot_bitmap", 0x901000, 64},
    {KOR_RSRC_STATE, "ethernet_flow_info", 0xD0FE19, 256 + 11256},
};

Namespace make(kor_rte rte, u32 kind, const std::string &name, bool created, u32 first_id, u32 max_ids)
{
    return {rte, kind, name, created, first_id, std::vector<bool>(max_ids), 0};
}

/* The namespace of a chip; the host's own has handle 0 and no chip. */
kor_rsrc find(kor_rte rte, std::string_view name)
{
    for (const auto &[handle, ns] : world().namespaces) {
        if (handle && ns.rte == rte && ns.name == name)
            return handle;
    }
    return 0;
}

kor_rsrc add(Namespace ns)
{
    const kor_rsrc handle = 0x4E000001 + world().namespaces_made++;
    world().namespaces.emplace(handle, std::move(ns));
    return handle;
}

Namespace &namespace_of(kor_rsrc handle)
{
    const auto at = world().namespaces.find(handle);
    if (at == world().namespaces.end())
        wrong("no namespace 0x%x", handle);
    return at->second;
}

/* The interface ids of the chip spoken to. */
Namespace &interface_id_pool(const ovk_system *parent)
{
    chip_of(parent);
    return namespace_of(find(spoken_to(), interface_ids));
}

/* Index of `id`, from where `count` ids must be the namespace's. */
u32 index_of(const Namespace &ns, u32 id, u32 count)
{
    const u32 index = id - ns.first_id;
    if (count == 0 || index >= ns.taken.size() || count > ns.taken.size() - index)
        wrong("%u ids from 0x%x of %s", count, id, ns.name.c_str());
    return index;
}

void give_back(Namespace &to, u32 id, u32 count)
{
    const auto begin = to.taken.begin() + index_of(to, id, count);
    const auto never_out = static_cast<u32>(std::find(begin, begin + count, false) - begin);
    if (never_out != count)
        wrong("id 0x%x of %s isn't out", id + never_out, to.name.c_str());
    std::fill_n(begin, count, false);
    to.in_use -= count;
}

} // namespace

World::World()
{
    namespaces.emplace(0, make(0, KOR_RSRC_POOL, "lls_flows", false, 0, 189));
}

void add_namespaces(kor_rte rte)
{
    for (const Brought &row : brought)
        add(make(rte, row.kind, row.name, false, row.first_id, row.max_ids));
}

bool brings_namespace(std::string_view name)
{
    return std::any_of(std::begin(brought), std::end(brought),
                       [&](const Brought &row) { return row.kind != system_kind && row.name == name; });
}

std::vector<u32> ids_in_use(kor_rte rte, std::string_view name)
{
    const Guard guard;
    const auto at = world().namespaces.find(find(rte, name));
    if (at->second.name != name)
        throw std::invalid_argument("no namespace " + std::string(name));
    std::vector<u32> out;
    for (u32 index = 0; index < at->second.taken.size(); ++index) {
        if (at->second.taken[index])
            out.push_back(at->second.first_id + index);
    }
    return out;
}

std::vector<std::string> namespaces(kor_rte rte)
{
    const Guard guard;
    std::vector<std::string> out;
    for (const auto &[handle, ns] : world().namespaces) {
        if (handle == 0 || ns.rte == rte)
            out.push_back(ns.name);
    }
    return out;
}

} // namespace sim

using namespace sim;

u32 kor_rsrc_create(kor_rte rte, u32 kind, const char *name, u32 max_ids, u32 flags, kor_rsrc *out)
{
    return platform<"kor_rsrc_create">(With{rte, kind, name, max_ids, flags}, [&]() -> u32 {
        chip(rte);
        given(name, "name");
        given(out, "output");
        if (kind != KOR_RSRC_POOL || max_ids == 0 || flags)
            wrong("kind %u, %u ids, flags 0x%x", kind, max_ids, flags);
        if (find(rte, name))
            return status_name_taken;
        *out = add(make(rte, kind, name, true, 0, max_ids));
        return 0;
    });
}

u32 kor_rsrc_find(kor_rte rte, u32 kind, const char *name, kor_rsrc *out)
{
    return platform<"kor_rsrc_find">(With{rte, kind, name}, [&]() -> u32 {
        const Chip &on = chip(rte);
        const kor_rsrc handle = find(rte, given(name, "name"));
        if (!handle || world().namespaces[handle].kind != kind || on.hidden.contains(name))
            return status_unknown_name;
        *given(out, "output") = handle;
        return 0;
    });
}

u32 kor_rsrc_query(kor_rsrc ns, kor_rsrc_info *out)
{
    return platform<"kor_rsrc_query">(With{NamespaceArg{ns}}, [&]() -> u32 {
        const Namespace &of = namespace_of(ns);
        *given(out, "output") = {of.first_id, static_cast<u32>(of.taken.size()), of.in_use};
        return 0;
    });
}

u32 kor_rsrc_allocate_fixed(kor_rsrc ns, u32 count, u32 *first_id)
{
    return platform<"kor_rsrc_allocate_fixed">(
        With{NamespaceArg{ns}, count, first_id ? *first_id : 0}, [&]() -> u32 {
            Namespace &from = namespace_of(ns);
            const auto begin = from.taken.begin() + index_of(from, *given(first_id, "first id"), count);
            if (std::find(begin, begin + count, true) != begin + count)
                return status_ids_taken;
            std::fill_n(begin, count, true);
            from.in_use += count;
            return 0;
        });
}

u32 kor_rsrc_free(kor_rsrc ns, u32 id, u32 count)
{
    return platform<"kor_rsrc_free">(With{NamespaceArg{ns}, id, count}, [&]() -> u32 {
        give_back(namespace_of(ns), id, count);
        return 0;
    });
}

u32 kor_rsrc_destroy(kor_rte rte, kor_rsrc ns)
{
    return platform<"kor_rsrc_destroy">(With{rte, NamespaceArg{ns}}, [&]() -> u32 {
        chip(rte);
        const Namespace &gone = namespace_of(ns);
        if (!gone.created || gone.rte != rte)
            wrong("%s isn't the module's to destroy", gone.name.c_str());
        world().namespaces.erase(ns);
        return 0;
    });
}

u32 ovk_sys_interface_id_alloc(ovk_system *parent, u32 *id)
{
    return platform<"ovk_sys_interface_id_alloc">(With{}, [&]() -> u32 {
        Namespace &from = interface_id_pool(parent);
        given(id, "output");
        const auto free = std::find(from.taken.begin(), from.taken.end(), false);
        if (free == from.taken.end())
            return status_ids_taken;
        *free = true;
        ++from.in_use;
        *id = from.first_id + static_cast<u32>(free - from.taken.begin());
        return 0;
    });
}

u32 ovk_sys_interface_id_free(ovk_system *parent, u32 id)
{
    return platform<"ovk_sys_interface_id_free">(With{id}, [&]() -> u32 {
        give_back(interface_id_pool(parent), id, 1);
        return 0;
    });
}
