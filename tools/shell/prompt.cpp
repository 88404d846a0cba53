// SPDX-License-Identifier: Apache-2.0
#include "prompt.h"

#include "command.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#ifdef OVK_SHELL_LINE_EDITOR
#include <editline/readline.h>
#endif

namespace shell {

namespace {

constexpr const char *prompt_text = "ovk> ";

#ifdef OVK_SHELL_LINE_EDITOR

// The editor's callbacks carry no context.
Session *completed_session = nullptr;
Words candidates;

char *next_candidate(const char *, int asked_before)
{
    static std::size_t next = 0;
    next = asked_before ? next : 0;
    return next < candidates.size() ? strdup(candidates[next++].c_str()) : nullptr;
}

char **completions(const char *word, int, int end)
{
    rl_attempted_completion_over = 1; // no file names where there are no candidates
    candidates = complete(*completed_session,
                          std::string_view(rl_line_buffer).substr(0, static_cast<std::size_t>(end)));
    const bool value_follows = candidates.size() == 1 && candidates[0].ends_with('=');
    rl_completion_append_character = value_follows ? 0 : static_cast<int>(' ');
    return rl_completion_matches(word, next_candidate);
}

void start_editor(Session &session)
{
    completed_session = &session;
    rl_readline_name = "ovk-shell";
    rl_attempted_completion_function = completions;
    static char blanks[] = " \t";
    rl_completer_word_break_characters = blanks;
    rl_basic_word_break_characters = blanks; // the one that the editor looks at
    using_history();
}

bool read_line(std::string &out)
{
    char *line = readline(prompt_text);
    if (!line)
        return false;
    out = line;
    if (!split(out).empty())
        add_history(line);
    std::free(line); // NOLINT(cppcoreguidelines-no-malloc): the editor's allocation
    return true;
}

#else

void start_editor(Session &) {}

bool read_line(std::string &out)
{
    std::fputs(prompt_text, stdout);
    std::fflush(stdout);
    out.clear();
    char piece[256];
    while (std::fgets(piece, sizeof piece, stdin)) {
        out += piece;
        if (out.ends_with('\n')) {
            out.pop_back();
            return true;
        }
    }
    return !out.empty();
}

#endif

} // namespace

void prompt(Runner &runner)
{
    Session &session = runner.session();
    session.keep_going = true;
    start_editor(session);
    std::string text;
    bool on = true;
    while (on && read_line(text))
        on = runner.line(text, "");
    if (on)
        std::puts("");
}

} // namespace shell
