// SPDX-License-Identifier: Apache-2.0
/*
 * Running commands, line by line, from a script, a pipe or a prompt.
 *
 * A line fails when its command is wrong, can't be done, ends with a status that wasn't asked for, or makes
 * the simulator report misuse. '!' before a call asks for any status but 0. The first failure ends a script
 * unless it is told to go on.
 */
#ifndef OVK_SHELL_SCRIPT_H
#define OVK_SHELL_SCRIPT_H

#include "session.h"

#include <cstdio>

namespace shell {

struct Command;

class Runner {
  public:
    explicit Runner(Session &session) : session_(session) {}

    // False when no more lines are to be run. `place` stands before messages: "first-steps.ovk:12: ".
    bool line(const std::string &text, const std::string &place);

    // Runs the lines of a file, and shows each.
    void script(std::FILE *file, const std::string &name);

    Session &session() { return session_; }
    bool all_well() const { return failed_lines_ == 0; }

  private:
    void run(const std::string &text, const Command *&command);

    Session &session_;
    u32 failed_lines_ = 0;
};

} // namespace shell

#endif
