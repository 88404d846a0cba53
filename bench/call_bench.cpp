// SPDX-License-Identifier: Apache-2.0
//
// Times each measured call and its direct side on the null platform, as "call/NAME" and "direct/NAME", and
// "heap".
#include "common/module_object.h"
#include "kor_nvm.h"
#include "null_platform.h"
#include "pairs.h"

#include <benchmark/benchmark.h>

namespace {

void measure(benchmark::State &state, u32 (*side)(ovk_module *), ovk_module *module)
{
    // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores)
    for (auto _ : state)
        benchmark::DoNotOptimize(side(module));
}

// What the blocks of a create take of its time: the platform's zeroing, for the most part.
void measure_heap(benchmark::State &state)
{
    // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores)
    for (auto _ : state) {
        void *record = kor_nvm_calloc(1, sizeof(ovk_eth_intf));
        void *vlans = kor_nvm_calloc(OVK_ETH_VLAN_IDS, sizeof(ovk_eth_vlan_entry));
        kor_nvm_free(vlans);
        kor_nvm_free(record);
    }
}

} // namespace

int main(int argc, char **argv)
{
    null_platform::Host host;
    if (bench::begin(host.module()) != 0)
        return 1;
    for (const bench::Pair &pair : bench::pairs) {
        const std::string name = pair.name;
        benchmark::RegisterBenchmark(("call/" + name).c_str(), measure, pair.call, host.module());
        benchmark::RegisterBenchmark(("direct/" + name).c_str(), measure, pair.direct, host.module());
    }
    benchmark::RegisterBenchmark("heap", measure_heap);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return bench::end(host.module()) == 0 ? 0 : 1;
}
