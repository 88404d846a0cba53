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

void add_simulator_commands(CommandTable &table)
{
    table.group("Simulator");
    table.add("journal on", {}, "From now on keeps the platform calls that the library makes.", "",
              [](Session &s, const Arguments &) { s.journal_on = true; });
    table.add("journal off", {}, "Keeps them no longer. What was kept stays.", "",
              [](Session &s, const Arguments &) { s.journal_on = false; });
    table.add("journal show", {optional(number("N"))},
              "Shows the platform calls that were kept, or the last N.", "10", journal_show);
    table.add("journal clear", {}, "Forgets the platform calls that were kept.", "",
              [](Session &s, const Arguments &) { s.journal.clear(); });
    table.add("fault", {operation("OPERATION"), number("N", "", 0xFFFFFFFF, 1), status("STATUS", 1)},
              "Makes the N-th call of a platform operation from now fail with STATUS, once.",
              "kor_ptn_learn 1 5", fault);
    table.add("fault off", {}, "Takes back the faults that haven't come yet.", "",
              [](Session &, const Arguments &) { sim::faults::clear(); });
}

} // namespace shell
