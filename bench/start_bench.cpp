// SPDX-License-Identifier: Apache-2.0
//
// Start and stop of a module, as "start_stop", on the null platform or, with OVK_ON_SIMULATOR, on the
// simulator. Before that, lines with the bytes that one start takes: the module object, on the simulator
// all live blocks of the heap, and the process's peak of memory.
#include "common/module_object.h"
#include "ovk_ethernet.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#ifdef OVK_ON_SIMULATOR
#include "sim.h"
using sim::Host;
#else
#include "null_platform.h"
using null_platform::Host;
#endif

namespace {

void begin_process()
{
#ifdef OVK_ON_SIMULATOR
    sim::reset();
#endif
}

// Of this program alone: what getrusage() tells has the memory of whoever started it in it.
size_t peak_memory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::stoul(line.substr(line.find_first_of("0123456789"))) * 1024;
    return 0;
}

bool report_memory()
{
    Host host;
    if (ovk_ethernet_init(host.module()) != 0)
        return false;
    std::printf("object %zu\n", sizeof(ovk_eth_module_object));
#ifdef OVK_ON_SIMULATOR
    std::printf("heap %zu\n", sim::heap::live_bytes());
#endif
    std::printf("peak %zu\n", peak_memory());
    std::fflush(stdout);
    return ovk_ethernet_shutdown(host.module()) == 0;
}

void measure(benchmark::State &state)
{
    // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores)
    for (auto _ : state) {
        state.PauseTiming();
        begin_process();
        auto host = std::make_unique<Host>();
        state.ResumeTiming();
        const u32 status = ovk_ethernet_init(host->module()) + ovk_ethernet_shutdown(host->module());
        state.PauseTiming();
        host.reset();
        if (status != 0)
            state.SkipWithError("no start or no stop");
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (!report_memory())
        return 1;
    benchmark::RegisterBenchmark("start_stop", measure)->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
