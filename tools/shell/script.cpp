// SPDX-License-Identifier: Apache-2.0
#include "script.h"

#include "command.h"

#include <algorithm>

namespace shell {

namespace {

constexpr std::size_t longest_line = 4096;

// Lines without their ends. One that is too long comes cut, a byte over the limit; its rest is skipped only
// when the next is asked for, as it may never end.
class Lines {
  public:
    explicit Lines(std::FILE *file) : file_(file) {}

    bool next(std::string &out)
    {
        int c = 0;
        while (cut_ && (c = std::getc(file_)) != EOF)
            cut_ = c != '\n';
        out.clear();
        while (!cut_ && (c = std::getc(file_)) != EOF && c != '\n') {
            out += static_cast<char>(c);
            cut_ = out.size() > longest_line;
        }
        if (out.ends_with('\r'))
            out.pop_back();
        return c != EOF || !out.empty();
    }

  private:
    std::FILE *file_;
    bool cut_ = false;
};

bool control_byte(char c)
{
    return (c >= 0 && c < ' ' && c != '\t') || c == 0x7F;
}

// The line's words as far as they are no comment; throws Failure for what can't be a line of text.
Words words_of(const std::string &text)
{
    if (text.size() > longest_line)
        throw Failure("the line has more than " + std::to_string(longest_line) + " bytes");
    if (const auto at = std::find_if(text.begin(), text.end(), control_byte); at != text.end())
        throw Failure("the line isn't text: it has the byte " + quoted(std::string(1, *at)));
    Words words = split(text);
    words.erase(std::find_if(words.begin(), words.end(), [](const auto &word) { return word[0] == '#'; }),
                words.end());
    return words;
}

void echo(const std::string &text)
{
    if (text.size() > longest_line || std::any_of(text.begin(), text.end(), control_byte))
        return;
    const bool command = !split(text).empty() && split(text)[0][0] != '#';
    std::printf("%s%s\n", command ? "ovk> " : "", text.c_str());
}

} // namespace

void Runner::run(const std::string &text, const Command *&command)
{
    Words words = words_of(text);
    const bool failure_expected = !words.empty() && words[0][0] == '!';
    if (failure_expected && words[0].erase(0, 1).empty())
        words.erase(words.begin());
    if (words.empty() && failure_expected)
        throw Wrong("'!' stands before a call that is to fail");
    if (words.empty())
        return;
    command = &find_command(words);
    const Arguments arguments = take_arguments(session_, *command, words);
    const u32 calls_before = session_.calls_made;
    command->run(session_, arguments);
    if (session_.calls_made == calls_before) {
        if (failure_expected)
            throw Wrong("'!' stands only before a call of the library");
    } else if (failure_expected && session_.last_status == 0) {
        throw Failure("the call was to fail, but it didn't");
    } else if (!failure_expected && session_.last_status != 0) {
        throw Failure("the call failed");
    }
}

bool Runner::line(const std::string &text, const std::string &place)
{
    const Command *command = nullptr;
    bool well = false;
    const auto complain = [&](const char *what) {
        std::printf("%s%s%s\n", place.c_str(), command ? (command->name + ": ").c_str() : "", what);
    };
    try {
        run(text, command);
        well = true;
    } catch (const Wrong &wrong) {
        complain(wrong.what());
        if (command)
            std::printf("usage: %s\n", usage(*command).c_str());
    } catch (const std::exception &failure) {
        complain(failure.what());
    }
    for (const std::string &misuse : sim::misuse()) {
        complain(("misuse of the platform: " + misuse).c_str());
        ++session_.misuses;
        well = false;
    }
    sim::misuse_clear();
    failed_lines_ += well ? 0 : 1;
    return !session_.quit && (well || session_.keep_going);
}

void Runner::script(std::FILE *file, const std::string &name)
{
    Lines lines(file);
    std::string text;
    bool on = true;
    for (u32 number = 1; on && lines.next(text); ++number) {
        echo(text);
        on = line(text, name + ":" + std::to_string(number) + ": ");
    }
    if (std::ferror(file)) {
        std::printf("%s: can't be read\n", name.c_str());
        ++failed_lines_;
    }
    if (failed_lines_ != 0 && session_.keep_going)
        std::printf("%s: failed lines: %u\n", name.c_str(), failed_lines_);
}

} // namespace shell
