// SPDX-License-Identifier: Apache-2.0
// ovk-shell: a host process with the simulated platform in it, which loads the shared library and takes
// commands.
#include "command.h"
#include "prompt.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <getopt.h>
#include <memory>
#include <unistd.h>

namespace {

constexpr const char *help_text =
    "usage: ovk-shell [--library FILE] [--keep-going] [SCRIPT]\n"
    "Loads libovk-ethernet.so.1 into a host with a simulated platform and runs commands: from SCRIPT,\n"
    "from a pipe, or at a prompt. 'help' lists them.\n"
    "  --library FILE  the library to load; by default the one that was built with this program, the\n"
    "                  one beside it, or the one that the system's loader finds\n"
    "  --keep-going    goes on after a failure\n"
    "The exit status is 0 if all went well, 1 if a command failed or output was lost, 2 for wrong "
    "options.\n";

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

int run(const std::string &library, const char *script, bool keep_going)
{
    shell::Session session(library);
    session.keep_going = keep_going;
    shell::Runner runner(session);
    if (script) {
        const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(script, "re"));
        if (!file)
            throw shell::Failure(std::string(script) + ": " + std::strerror(errno));
        runner.script(file.get(), script);
    } else if (isatty(STDIN_FILENO)) {
        shell::prompt(runner);
    } else {
        runner.script(stdin, "stdin");
    }
    const bool printed = std::fflush(stdout) == 0 && !std::ferror(stdout);
    return runner.all_well() && printed ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    const option options[] = {{"library", required_argument, nullptr, 'l'},
                              {"keep-going", no_argument, nullptr, 'k'},
                              {"help", no_argument, nullptr, 'h'},
                              {}};
    std::string library;
    bool keep_going = false;
    for (int found = 0; (found = getopt_long(argc, argv, "", options, nullptr)) != -1;) {
        if (found == 'l') {
            library = optarg;
        } else if (found == 'k') {
            keep_going = true;
        } else {
            std::fputs(help_text, found == 'h' ? stdout : stderr);
            return found == 'h' ? 0 : 2;
        }
    }
    if (argc - optind > 1) {
        std::fputs(help_text, stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    try {
        return run(library.empty() ? shell::default_library() : library, argv[optind], keep_going);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "ovk-shell: %s\n", failure.what());
        return 1;
    }
}
