// SPDX-License-Identifier: Apache-2.0
//
// One rule learnt and deleted again through the rule engine, in the ingress flow tree of two simulated
// chips of which one holds 1,000 rules and the other 60,000: "rule/1000" and "rule/60000". Before that, a
// line for each with the platform's writes, which must be those stated at either size.
//
// Each pass takes another key, so that the tables have none of them at hand.
//
// And what a host does with ports in service, on a third simulated chip: "ports/interface", created and
// deleted, "ports/vlan", added and deleted, and "ports/counters", read.
#include "calls.h"
#include "common/rule_key.h"
#include "ovk_eth_hw_helper/rule_engine.h"
#include "sim.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr u32 sizes[] = {1000, 60000};
constexpr u32 writes_stated = 4; // learn and database add, unlearn and database delete

// The shapes of an ingress flow's key in turn: interface and ether type; with half a destination MAC; with
// a whole one. Another number is another key.
u32 write_rule(ovk_module *module, u32 op, u32 number)
{
    ovk::rule_key key(module, OVK_ETH_TREE_LOOKUP_FLOW_ID);
    key.add(1u << 20 | number, 21).add(0x0800, 16);
    if (number % 3 != 0)
        key.add(0x020000, 24);
    if (number % 3 == 2)
        key.add(number, 24);
    return ovk::write_rule(module, {"rule_bench", __LINE__}, key, op, ovk::data_action(number, 0));
}

u32 learn_and_delete(ovk_module *module, u32 number)
{
    const u32 learnt = write_rule(module, OVK_ETH_ADD, number);
    return learnt + write_rule(module, OVK_ETH_REMOVE, number);
}

// The key of a pass, of `keys` (a power of two) that no chip is filled with: they have the highest bit set.
u32 free_number(u32 pass, u32 keys)
{
    return 0x80000 | ((pass & (keys - 1)) * 7919 & 0xFFFF);
}

class FilledHost {
  public:
    explicit FilledHost(u32 rules)
    {
        u32 status = ovk_ethernet_init(host_.module());
        for (u32 number = 0; number < rules; number++)
            status += write_rule(host_.module(), OVK_ETH_ADD, number);
        if (status != 0)
            std::abort();
    }

    ovk_module *module() { return host_.module(); }

  private:
    sim::Host host_;
};

// Of one rule a few stand in, one for each shape and then some.
constexpr u32 one_rule = 16;
constexpr u32 any_rule = 0x10000;

void measure(benchmark::State &state, ovk_module *module, u32 keys)
{
    u32 pass = 0;
    u32 status = 0;
    // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores)
    for (auto _ : state)
        status += learn_and_delete(module, free_number(pass++, keys));
    if (status != 0)
        state.SkipWithError("a rule couldn't be written");
}

ovk_ethernet_if_handle trunk;

u32 create_and_delete(ovk_module *module)
{
    ovk_ethernet_if_handle handle = nullptr;
    const u32 created = ovk_ethernet_interface_create(module, &bench::port_attrs, &handle);
    return created + ovk_ethernet_interface_delete(module, handle);
}

u32 add_and_delete_vlan(ovk_module *module)
{
    const u32 added = ovk_ethernet_vlan_id_add(module, trunk, bench::vlan, bench::bridge_group);
    return added + ovk_ethernet_vlan_id_del(module, trunk, bench::vlan, bench::bridge_group);
}

u32 read_counters(ovk_module *module)
{
    ovk_eth_port_stats stats;
    return ovk_ethernet_port_statistics_get(module, trunk, &stats, 0);
}

void measure_ports(benchmark::State &state, u32 (*work)(ovk_module *), ovk_module *module)
{
    u32 status = 0;
    // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores)
    for (auto _ : state)
        status += work(module);
    if (status != 0)
        state.SkipWithError("a call on a port failed");
}

void register_ports(ovk_module *module)
{
    ovk_ethernet_intf_attrs attrs = bench::port_attrs;
    attrs.if_num = bench::trunk_port;
    if (ovk_ethernet_interface_create(module, &attrs, &trunk) != 0)
        std::abort();
    benchmark::RegisterBenchmark("ports/interface", measure_ports, create_and_delete, module);
    benchmark::RegisterBenchmark("ports/vlan", measure_ports, add_and_delete_vlan, module);
    benchmark::RegisterBenchmark("ports/counters", measure_ports, read_counters, module);
}

bool writes_as_stated(u32 size, ovk_module *module)
{
    const u64 before = sim::journal::write_count();
    const u32 status = learn_and_delete(module, free_number(0, one_rule));
    const u64 writes = sim::journal::write_count() - before;
    const bool exact = status == 0 && writes == writes_stated;
    std::printf("rules/%u %u %u %s\n", size, static_cast<u32>(writes), writes_stated,
                exact ? "exact" : "WRONG");
    return exact;
}

} // namespace

int main(int argc, char **argv)
{
    FilledHost hosts[] = {FilledHost(sizes[0]), FilledHost(sizes[1])};
    FilledHost port_host(0);
    bool exact = true;
    for (size_t i = 0; i < std::size(sizes); i++) {
        exact = writes_as_stated(sizes[i], hosts[i].module()) && exact;
        const std::string size = std::to_string(sizes[i]);
        benchmark::RegisterBenchmark(("one_rule/" + size).c_str(), measure, hosts[i].module(), one_rule);
        benchmark::RegisterBenchmark(("any_rule/" + size).c_str(), measure, hosts[i].module(), any_rule);
    }
    sim::heap::quarantine_limit(1u << 20);
    register_ports(port_host.module());
    std::fflush(stdout);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return exact && sim::misuse().empty() ? 0 : 1;
}
