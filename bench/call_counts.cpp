// SPDX-License-Identifier: Apache-2.0
//
// Counts, exactly, the platform calls of each measured call and of its direct side. Prints one line a pair,
// and fails when either differs from the number stated, or when the two differ in order or arguments.
#include "null_platform.h"
#include "pairs.h"

#include <cstdio>
#include <map>
#include <sstream>

namespace {

using Calls = std::vector<null_platform::Call>;
using Counts = std::map<std::string, u32>;

Calls calls_of(u32 (*side)(ovk_module *), ovk_module *module)
{
    (void)null_platform::take_calls();
    const u32 status = side(module);
    Calls calls = null_platform::take_calls();
    if (status != 0)
        calls.push_back({"failure", std::to_string(status)});
    return calls;
}

Counts count(const Calls &calls)
{
    Counts counts;
    for (const null_platform::Call &call : calls)
        ++counts[call.operation];
    return counts;
}

Counts stated_for(const bench::Pair &pair)
{
    Counts stated;
    std::istringstream words(pair.platform_calls);
    u32 times = 0;
    for (std::string operation; words >> operation >> times;)
        stated[operation] += times;
    return stated;
}

bool as_stated(const bench::Pair &pair, const char *side, const Calls &calls, Counts stated)
{
    Counts made = count(calls);
    if (made == stated)
        return true;
    for (const Counts &either : {made, stated})
        for (const auto &[operation, times] : either)
            if (made[operation] != stated[operation]) {
                std::fprintf(stderr, "%s, %s: %s %u times, stated %u\n", pair.name, side, operation.c_str(),
                             made[operation], stated[operation]);
                stated[operation] = made[operation];
            }
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
    if (bench::begin(host.module()) != 0)
        return 1;
    bool good = true;
    for (const bench::Pair &pair : bench::pairs) {
        const Calls call = calls_of(pair.call, host.module());
        const Calls direct = calls_of(pair.direct, host.module());
        const Counts stated = stated_for(pair);
        size_t total = 0;
        for (const auto &[operation, times] : stated)
            total += times;
        const bool exact = as_stated(pair, "the call", call, stated) &
                           as_stated(pair, "directly", direct, stated) & same(pair, call, direct);
        good = good && exact;
        std::printf("%s %zu %zu %s\n", pair.name, call.size(), total, exact ? "exact" : "WRONG");
    }
    return good && bench::end(host.module()) == 0 ? 0 : 1;
}
