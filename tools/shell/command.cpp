// SPDX-License-Identifier: Apache-2.0
#include "command.h"

#include <algorithm>
#include <cstdio>

namespace shell {

namespace {

// The command whose name the words begin with, the longest of them, taken off the words; null if none.
const Command *take_name(Words &words)
{
    const Command *found = nullptr;
    std::size_t most = 0;
    for (const Command &command : all_commands()) {
        const Words name = split(command.name);
        if (name.size() > most && words.size() >= name.size() &&
            std::equal(name.begin(), name.end(), words.begin())) {
            found = &command;
            most = name.size();
        }
    }
    words.erase(words.begin(), words.begin() + static_cast<long>(most));
    return found;
}

bool goes_with(const Parameter &parameter, u64 value)
{
    return parameter.with == 0 || (value < 32 && (parameter.with >> value & 1) != 0);
}

// The values that a key goes with; empty when it goes with any.
std::string condition(const Parameter &parameter, const Enumeration *enumeration)
{
    Words names;
    if (enumeration && parameter.with) {
        for (const auto &[name, value] : enumeration->names()) {
            if (goes_with(parameter, value))
                names.push_back(name);
        }
    }
    return join(names, " or ");
}

const Parameter *find_key(const Command &command, const std::string &word)
{
    const std::string name = word.substr(0, word.find('='));
    for (const Parameter &parameter : command.parameters) {
        if (parameter.keyed && word.find('=') != word.npos && parameter.name == name)
            return &parameter;
    }
    return nullptr;
}

[[noreturn]] void missing(const Parameter &parameter)
{
    if (parameter.what == parameter.name)
        throw Wrong(quoted(parameter.name) + " is missing");
    throw Wrong(parameter.name + (parameter.keyed ? "=" : "") + " is missing: " + parameter.what);
}

std::string shape(const Parameter &parameter)
{
    const std::string plain = parameter.keyed  ? parameter.name + "=VALUE"
                              : parameter.rest ? parameter.name + " ..."
                                               : parameter.name;
    return parameter.needed ? plain : "[" + plain + "]";
}

// Candidates for the word behind `words`, the first of which stand for the row's parameters.
Words argument_candidates(const Session &session, const Command &command, const Words &words,
                          const std::string &begun)
{
    std::size_t place = 0;
    u64 selector = 0;
    for (const Parameter &parameter : command.parameters) {
        if (parameter.keyed)
            continue;
        if (place == words.size() || parameter.rest)
            return names_of(session, parameter);
        try {
            const Value value = read(session, parameter, words[place++]);
            selector = parameter.enumeration ? value.number : selector;
        } catch (const Wrong &) {
            return {};
        }
    }
    Words out;
    for (const Parameter &parameter : command.parameters) {
        if (!parameter.keyed || !goes_with(parameter, selector))
            continue;
        const std::string start = parameter.name + "=";
        if (!begun.starts_with(start))
            out.push_back(start);
        else
            for (const std::string &name : names_of(session, parameter))
                out.push_back(start + name);
    }
    return out;
}

} // namespace

void CommandTable::add(std::string name, std::vector<Parameter> parameters, std::string help,
                       std::string example, Handler run)
{
    rows_.push_back(
        {group_, std::move(name), std::move(parameters), std::move(help), std::move(example), run});
}

const std::vector<Command> &all_commands()
{
    static const CommandTable table = [] {
        CommandTable out;
        for (const auto add :
             {add_module_commands, add_interface_commands, add_counter_commands, add_port_show_commands,
              add_show_commands, add_simulator_commands, add_shell_commands})
            add(out);
        return out;
    }();
    return table.rows();
}

const Command &find_command(Words &words)
{
    if (const Command *found = take_name(words))
        return *found;
    Words names;
    for (const Command &command : all_commands())
        names.push_back(command.name);
    Words hints;
    if (words.size() > 1)
        hints = near(words[0] + " " + words[1], names);
    if (hints.empty())
        std::copy_if(names.begin(), names.end(), std::back_inserter(hints),
                     [&](const std::string &name) { return name.starts_with(words[0] + " "); });
    if (hints.empty())
        hints = near(words[0], names);
    throw Wrong("no command " + quoted(join(words, " ")) + hint(hints) + "; 'help' lists all");
}

Arguments take_arguments(const Session &session, const Command &command, const Words &words)
{
    Arguments out;
    const Enumeration *enumeration = nullptr;
    u64 selector = 0;
    auto word = words.begin();
    for (const Parameter &parameter : command.parameters) {
        Value &value = out[parameter.name];
        if (parameter.keyed)
            continue;
        if (word == words.end() || (!parameter.needed && find_key(command, *word))) {
            if (parameter.needed)
                missing(parameter);
        } else if (parameter.rest) {
            value.given = true;
            value.words.assign(word, words.end());
            word = words.end();
        } else {
            value = read(session, parameter, *word++);
            enumeration = parameter.enumeration ? parameter.enumeration : enumeration;
            selector = parameter.enumeration ? value.number : selector;
        }
    }
    for (; word != words.end(); ++word) {
        const Parameter *parameter = find_key(command, *word);
        if (!parameter)
            throw Wrong(quoted(*word) + " is too much");
        if (out.given(parameter->name))
            throw Wrong(parameter->name + "= is there twice");
        if (!goes_with(*parameter, selector))
            throw Wrong(parameter->name + "= goes only with " + condition(*parameter, enumeration));
        out[parameter->name] = read(session, *parameter, word->substr(parameter->name.size() + 1));
    }
    for (const Parameter &parameter : command.parameters) {
        if (parameter.keyed && parameter.needed && !out.given(parameter.name))
            missing(parameter);
    }
    return out;
}

std::string usage(const Command &command)
{
    std::string out = command.name;
    for (const Parameter &parameter : command.parameters)
        out += " " + shape(parameter);
    return out;
}

void explain(const Command &command)
{
    std::printf("usage: %s\n%s\n", usage(command).c_str(), command.help.c_str());
    const Enumeration *enumeration = nullptr;
    for (const Parameter &parameter : command.parameters) {
        if (parameter.what == parameter.name)
            continue;
        const std::string with = condition(parameter, enumeration);
        std::printf("  %s: %s%s\n", parameter.name.c_str(), parameter.what.c_str(),
                    with.empty() ? "" : ("; only with " + with).c_str());
        enumeration = parameter.enumeration ? parameter.enumeration : enumeration;
    }
    if (!command.example.empty())
        std::printf("example: %s %s\n", command.name.c_str(), command.example.c_str());
}

Words complete(const Session &session, std::string_view line)
{
    Words words = split(line);
    const bool fresh = line.empty() || line.back() == ' ' || line.back() == '\t';
    const std::string last = fresh || words.empty() ? "" : words.back();
    if (!fresh && !words.empty())
        words.pop_back();
    if (!words.empty() && words[0] == "!")
        words.erase(words.begin());

    Words candidates;
    for (const Command &command : all_commands()) {
        const Words name = split(command.name);
        if (words.size() < name.size() && std::equal(words.begin(), words.end(), name.begin()))
            candidates.push_back(name[words.size()]);
    }
    if (const Command *command = take_name(words)) {
        const Words more = argument_candidates(session, *command, words, last);
        candidates.insert(candidates.end(), more.begin(), more.end());
    }
    Words out;
    for (const std::string &candidate : candidates) {
        const bool fits = same(std::string_view(candidate).substr(0, last.size()), last);
        if (fits && std::find(out.begin(), out.end(), candidate) == out.end())
            out.push_back(candidate);
    }
    return out;
}

} // namespace shell
