// SPDX-License-Identifier: Apache-2.0
// The prompt: with history and completion where the line editor was there at build time, plain where not.
#ifndef OVK_SHELL_PROMPT_H
#define OVK_SHELL_PROMPT_H

#include "script.h"

namespace shell {

// Reads and runs lines until the input ends or the shell is left. A failure doesn't end it.
void prompt(Runner &runner);

} // namespace shell

#endif
