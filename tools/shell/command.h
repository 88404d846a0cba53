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
 *     table.add("priority set", {number("PORT"), number("PRIORITY")}, "Sets ...", "0x11 7", priority_set);
 *
 * Calls as plain as that one need no function: handlers.h has them ready. A handler finds its arguments
 * checked. It throws Wrong for what the table can't tell, Failure for what was asked rightly but can't be
 * done.
 */
#ifndef OVK_SHELL_COMMAND_H
#define OVK_SHELL_COMMAND_H

#include "arguments.h"

namespace shell {

using Handler = void (*)(Session &, const Arguments &);

struct Command {
    const char *group; // what 'help' lists it under
    std::string name;  // one or two words
    std::vector<Parameter> parameters;
    std::string help;    // a sentence or two
    std::string example; // of the arguments
    Handler run;
};

class CommandTable {
  public:
    void group(const char *title) { group_ = title; } // of the rows that follow
    void add(std::string name, std::vector<Parameter> parameters, std::string help, std::string example,
             Handler run);
    const std::vector<Command> &rows() const { return rows_; }

  private:
    const char *group_ = "";
    std::vector<Command> rows_;
};

void add_module_commands(CommandTable &table);
void add_interface_commands(CommandTable &table);
void add_counter_commands(CommandTable &table);
void add_show_commands(CommandTable &table);
void add_port_show_commands(CommandTable &table);
void add_simulator_commands(CommandTable &table);
void add_shell_commands(CommandTable &table);

const std::vector<Command> &all_commands();

// The command that the words begin with; throws Wrong. Takes its name off the words.
const Command &find_command(Words &words);

// The words behind the name, checked against the row; throws Wrong.
Arguments take_arguments(const Session &session, const Command &command, const Words &words);

std::string usage(const Command &command);

// Usage, help text, what each argument may be, an example.
void explain(const Command &command);

// What may stand in the place of the last word of `line`, which may be empty.
Words complete(const Session &session, std::string_view line);

} // namespace shell

#endif
