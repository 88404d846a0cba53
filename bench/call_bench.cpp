// SPDX-License-Identifier: Apache-2.0
//
// Times each measured call and its direct side on the null platform, as "call/NAME" and "direct/NAME".
#include "calls.h"
#include "null_platform.h"
#include "ovk_ethernet.h"

#include <benchmark/benchmark.h>

namespace {

void measure(benchmark::State &state, u32 (*side)(ovk_module *), ovk_module *module)
{
    // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores)
    for (auto _ : state)
        benchmark::DoNotOptimize(side(module));
}

} // namespace

int main(int argc, char **argv)
{
    null_platform::Host host;
    if (ovk_ethernet_init(host.module()) != 0)
        return 1;
    for (const bench::Pair &pair : bench::pairs) {
        const std::string name = pair.name;
        benchmark::RegisterBenchmark(("call/" + name).c_str(), measure, pair.call, host.module());
        benchmark::RegisterBenchmark(("direct/" + name).c_str(), measure, pair.direct, host.module());
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return ovk_ethernet_shutdown(host.module()) == 0 ? 0 : 1;
}
