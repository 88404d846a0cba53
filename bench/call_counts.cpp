// SPDX-License-Identifier: Apache-2.0
//
// Counts, exactly, the platform calls of each measured call and of its direct side. Prints one line a pair,
// and fails when either differs from the number stated, or when the two differ in order or arguments.
#include "calls.h"
#include "null_platform.h"
#include "ovk_ethernet.h"

#include <cstdio>

namespace {

using Calls = std::vector<null_platform::Call>;

Calls calls_of(u32 (*side)(ovk_module *), ovk_module *module)
{
    (void)null_platform::take_calls();
    const u32 status = side(module);
    Calls calls = null_platform::take_calls();
    if (status != 0)
        calls.push_back({"failure", std::to_string(status)});
    return calls;
}

std::map<std::string, u32> count(const Calls &calls)
{
    std::map<std::string, u32> counts;
    for (const null_platform::Call &call : calls)
        ++counts[call.operation];
    return counts;
}

bool as_stated(const bench::Pair &pair, const char *side, const Calls &calls)
{
    const auto counts = count(calls);
    if (counts == pair.platform_calls)
        return true;
    for (const auto &[operation, made] : counts) {
        const auto at = pair.platform_calls.find(operation);
        const u32 stated = at == pair.platform_calls.end() ? 0 : at->second;
        if (made != stated)
            std::fprintf(stderr, "%s, %s: %s %u times, stated %u\n", pair.name, side, operation.c_str(),
                         made, stated);
    }
    for (const auto &[operation, stated] : pair.platform_calls)
        if (!counts.contains(operation))
            std::fprintf(stderr, "%s, %s: %s never, stated %u\n", pair.name, side, operation.c_str(),
                         stated);
    return false;
}

bool same(const bench::Pair &pair, const Calls &call, const Calls &direct)
{
    for (size_t i = 0; i < call.size() && i < direct.size(); i++)
        if (call[i] != direct[i]) {
            std::fprintf(stderr, "%s: platform call %zu is %s(%s), direct %s(%s)\n", pair.name, i + 1,
                         call[i].operation.c_str(), call[i].arguments.c_str(), direct[i].operation.c_str(),
                         direct[i].arguments.c_str());
            return false;
        }
    return call.size() == direct.size();
}

} // namespace

int main()
{
    null_platform::Host host;
    if (ovk_ethernet_init(host.module()) != 0)
        return 1;
    bool good = true;
    for (const bench::Pair &pair : bench::pairs) {
        const Calls call = calls_of(pair.call, host.module());
        const Calls direct = calls_of(pair.direct, host.module());
        size_t stated = 0;
        for (const auto &[operation, times] : pair.platform_calls)
            stated += times;
        const bool exact = as_stated(pair, "the call", call) & as_stated(pair, "directly", direct) &
                           same(pair, call, direct);
        good = good && exact;
        std::printf("%s %zu %zu %s\n", pair.name, call.size(), stated, exact ? "exact" : "WRONG");
    }
    return good ? 0 : 1;
}
