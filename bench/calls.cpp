// SPDX-License-Identifier: Apache-2.0
#include "calls.h"

#include "ovk_ethernet.h"

namespace {

constexpr ovk_ethernet_exception_action send_to_cpu = {
    .type = OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU,
    .send_to_cpu = {.priority = bench::priority,
                    .cpu_param = bench::cpu_param,
                    .cpu_queue = {.hi = bench::cpu_queue >> 8, .lo = bench::cpu_queue & 0xFF},
                    .queue_handle = bench::queue_handle}};
constexpr ovk_ethernet_exception_action drop = {.type = OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP};

} // namespace

u32 bench::call_frame(ovk_module *module)
{
    return ovk_ethernet_log_enable(module, 0);
}

u32 bench::call_send_to_cpu(ovk_module *module)
{
    return ovk_ethernet_exception_configure(module, domain, type, &send_to_cpu);
}

u32 bench::call_drop(ovk_module *module)
{
    return ovk_ethernet_exception_configure(module, domain, type, &drop);
}
