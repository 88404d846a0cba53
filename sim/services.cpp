// SPDX-License-Identifier: Apache-2.0
/* What sibling modules offer: the service registry, queues, sizes of subnet databases. */
#include "call.h"
#include "chip.h"
#include "ovk_qos.h"
#include "ovk_sif.h"

#include <utility>

namespace sim {

namespace {

/* The services of the chip on which the module lives. */
std::map<const ovk_module *, Service> &services_of(const ovk_system *parent, const ovk_module *module,
                                                   const ovk_service_record *record)
{
    given(record, "record");
    if (given(module, "module")->parent != parent) // null in both is a module by itself
        wrong("another parent than the module's");
    return chip(module->rte_handle).services;
}

} // namespace

std::optional<ovk_service_record> service_record(const ovk_module *module)
{
    const Guard guard;
    for (const auto &on : world().chips) {
        if (const auto at = on.second->services.find(module); at != on.second->services.end())
            return at->second.record;
    }
    return std::nullopt;
}

} // namespace sim

using namespace sim;

u32 ovk_module_service_function_register(ovk_system *parent, ovk_module *module,
                                         const ovk_service_record *record)
{
    return platform<"ovk_module_service_function_register">(With{module}, [&]() -> u32 {
        services_of(parent, module, record)[module] = {show(module), *record};
        return 0;
    });
}

u32 ovk_module_service_function_update(ovk_system *parent, ovk_module *module,
                                       const ovk_service_record *record)
{
    const ovk_service_record shown = record ? *record : ovk_service_record{};
    const With arguments{module, shown.indirect_fn_id, shown.direct_fn_id};
    return platform<"ovk_module_service_function_update">(arguments, [&]() -> u32 {
        auto &services = services_of(parent, module, record);
        const auto at = services.find(module);
        if (at == services.end())
            return status_unknown_name;
        const ovk_service_record before = std::exchange(at->second.record, *record);
        at->second.record.indirect_fn_id = before.indirect_fn_id;
        at->second.record.direct_fn_id = before.direct_fn_id;
        return 0;
    });
}

u32 ovk_qos_queue_id_get(ovk_system *parent, ovk_queue_handle queue_handle, u32 *queue_id)
{
    return platform<"ovk_qos_queue_id_get">(With{queue_handle}, [&]() -> u32 {
        given(parent, "parent");
        given(queue_id, "output");
        if (queue_handle - first_queue >= queue_count)
            return status_unknown_name;
        *queue_id = first_queue_id + (queue_handle - first_queue);
        return 0;
    });
}

u32 ovk_sif_max_subnet_entry_sz_get(u32 key_bits, u32 flag, u32 *size, u32 *optimized_size)
{
    return platform<"ovk_sif_max_subnet_entry_sz_get">(With{key_bits, flag}, [&]() -> u32 {
        given(size, "size");
        given(optimized_size, "optimized size");
        if (key_bits == 0 || key_bits > Bits::max_length || flag > 1)
            wrong("%u key bits, flag %u", key_bits, flag);
        *optimized_size = 12 + (key_bits + 31) / 32 * 4; // an action and the key
        *size = *optimized_size + (flag ? 16 : 8);       // and links
        return 0;
    });
}
