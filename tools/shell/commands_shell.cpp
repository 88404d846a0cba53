// SPDX-License-Identifier: Apache-2.0
// The shell itself.
#include "command.h"
#include "session.h"

#include <cstdio>

namespace shell {

namespace {

std::string first_sentence(const std::string &text)
{
    const std::size_t end = text.find(". ");
    return text.substr(0, end == text.npos ? end : end + 1);
}

// All commands in their groups, those that begin with some words, or one in full.
void help(Session &, const Arguments &a)
{
    Words words = a.words("COMMAND");
    const std::string wanted = join(words, " ");
    Table table({"Command", "What it does"});
    std::vector<const Command *> listed;
    const char *group = "";
    for (const Command &command : all_commands()) {
        if (!words.empty() && !(command.name + " ").starts_with(wanted + " "))
            continue;
        if (words.empty() && command.group != group)
            table.add({group = command.group});
        table.add({"  " + command.name, first_sentence(command.help)});
        listed.push_back(&command);
    }
    if (listed.size() > 1)
        table.print();
    if (words.empty())
        std::puts("'help COMMAND' tells more. '!' before a call wants it to fail; '#' begins a comment.");
    else if (listed.size() == 1 || (listed.size() > 1 && listed[0]->name == wanted))
        explain(*listed[0]);
    else if (listed.empty())
        explain(find_command(words));
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

void add_shell_commands(CommandTable &table)
{
    table.group("Shell");
    table.add("expect", {status("STATUS")}, "Checks the status of the last call.", "invalid_if_handle",
              expect);
    table.add("set on-error", {choice("WHAT", {"stop", "continue"})},
              "Whether a script goes on after a failure.", "continue",
              [](Session &s, const Arguments &a) { s.keep_going = a.text("WHAT") == "continue"; });
    table.add("help", {optional(rest("COMMAND", "a command, or how some begin"))},
              "Lists the commands, or explains one.", "vlan add", help);
    table.add("quit", {}, "Leaves the shell.", "", [](Session &s, const Arguments &) { s.quit = true; });
}

} // namespace shell
