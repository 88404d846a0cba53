// SPDX-License-Identifier: Apache-2.0
// The shell itself.
#include "command.h"
#include "session.h"

#include <cstdio>

namespace shell {

namespace {

// All commands, those that begin with a word, or one in full.
void help(Session &, const Arguments &a)
{
    Words words = a.words("COMMAND");
    Table table({"command", "what it does"});
    Words listed;
    for (const Command *command : all_commands()) {
        if (words.empty() || (words.size() == 1 && (command->name + " ").starts_with(words[0] + " "))) {
            table.add({command->name, command->help});
            listed.push_back(command->name);
        }
    }
    if (listed.size() > 1)
        table.print();
    else if (!listed.empty())
        words = split(listed[0]);
    if (listed.size() < 2 || listed[0] == join(words, " "))
        explain(find_command(words));
    if (a.words("COMMAND").empty())
        std::puts("'help COMMAND' tells more. '!' before a call wants it to fail; '#' begins a comment.");
}

void expect(Session &s, const Arguments &a)
{
    if (s.calls_made == 0)
        throw Failure("no call was made yet");
    if (s.last_status != a.number("STATUS"))
        throw Failure("expected " + s.status_text(a.number("STATUS")) + ", the last call gave " +
                      s.status_text(s.last_status));
}

} // namespace

const Commands &shell_commands()
{
    static const Commands rows = {
        {"expect", {status("STATUS")}, "Checks the status of the last call.", expect},
        {"set on-error",
         {choice("WHAT", {"stop", "continue"})},
         "Whether a script goes on after a failure.",
         [](Session &s, const Arguments &a) { s.keep_going = a.text("WHAT") == "continue"; }},
        {"help",
         {optional(rest("COMMAND", "a command, or the first word of some"))},
         "Lists the commands, or explains one.",
         help},
        {"quit", {}, "Leaves the shell.", [](Session &s, const Arguments &) { s.quit = true; }},
    };
    return rows;
}

} // namespace shell
