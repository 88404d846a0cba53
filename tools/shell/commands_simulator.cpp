// SPDX-License-Identifier: Apache-2.0
// The simulator's journal and faults.
#include "command.h"
#include "session.h"

#include <algorithm>
#include <cstdio>

namespace shell {

namespace {

void journal_show(Session &s, const Arguments &a)
{
    const std::size_t wanted = a.given("N") ? a.number("N") : s.journal.size();
    const std::size_t skipped = s.journal.size() - std::min(wanted, s.journal.size());
    for (std::size_t i = skipped; i < s.journal.size(); ++i)
        std::printf("%zu %s\n", i + 1, s.journal[i].c_str());
}

void fault(Session &, const Arguments &a)
{
    if (!sim::faults::fail(a.text("OPERATION"), a.number("N"), a.number("STATUS")))
        throw Failure("the simulator doesn't take this fault");
}

} // namespace

const Commands &simulator_commands()
{
    static const Commands rows = {
        {"journal on",
         {},
         "From now on keeps the platform calls that the library makes.",
         [](Session &s, const Arguments &) { s.journal_on = true; }},
        {"journal off",
         {},
         "Keeps them no longer. What was kept stays.",
         [](Session &s, const Arguments &) { s.journal_on = false; }},
        {"journal show",
         {optional(number("N"))},
         "Shows the platform calls that were kept, or the last N.",
         journal_show},
        {"journal clear",
         {},
         "Forgets the platform calls that were kept.",
         [](Session &s, const Arguments &) { s.journal.clear(); }},
        {"fault",
         {operation("OPERATION"), number("N", 0xFFFFFFFF, 1), status("STATUS", 1)},
         "Makes the N-th call of a platform operation from now fail with STATUS, once.",
         fault},
        {"fault off",
         {},
         "Takes back the faults that haven't come yet.",
         [](Session &, const Arguments &) { sim::faults::clear(); }},
    };
    return rows;
}

} // namespace shell
