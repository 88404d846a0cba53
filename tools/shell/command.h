// SPDX-License-Identifier: Apache-2.0
/*
 * The command table: what a command is called, what it takes, what it says about itself, and what it does.
 *
 * Parsing, checks, help and completion all come from the table's rows. A new command is a row in one of the
 * commands_*.cpp files and a short handler:
 *
 *     void priority_set(Session &s, const Arguments &a)
 *     {
 *         s.call(&Calls::ovk_ethernet_priority_set, a.number("PORT"), a.number("PRIORITY"));
 *     }
 *     {"priority set", {number("PORT", 0xFF), number("PRIORITY", 7)}, "Sets ...", priority_set},
 *
 * A handler finds its arguments checked. It throws Wrong for what the table can't tell, Failure for what
 * was asked rightly but can't be done.
 */
#ifndef OVK_SHELL_COMMAND_H
#define OVK_SHELL_COMMAND_H

#include "arguments.h"

#include <span>

namespace shell {

struct Command {
    std::string name; // one or two words
    std::vector<Parameter> parameters;
    std::string help; // a sentence or two
    void (*run)(Session &, const Arguments &);
};

using Commands = std::vector<Command>;
const Commands &module_commands();
const Commands &interface_commands();
const Commands &counter_commands();
const Commands &show_commands();
const Commands &port_show_commands();
const Commands &simulator_commands();
const Commands &shell_commands();

std::vector<const Command *> all_commands();

// The command that the words begin with; throws Wrong. Takes its name off the words.
const Command &find_command(Words &words);

// The words behind the name, checked against the row; throws Wrong.
Arguments take_arguments(const Session &session, const Command &command, const Words &words);

std::string usage(const Command &command);

// Usage, help text, and what each argument may be.
void explain(const Command &command);

// What may stand in the place of the last word of `line`, which may be empty.
Words complete(const Session &session, std::string_view line);

} // namespace shell

#endif
