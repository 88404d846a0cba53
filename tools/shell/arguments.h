// SPDX-License-Identifier: Apache-2.0
/*
 * Arguments: what a command takes, and what it was given.
 *
 * Parameters are made by the functions below, one for each kind of word. They stand in a command's row in
 * the order in which the words come; those made by key() come behind, as name=value, in any order.
 *
 * A word is one of the parameter's names, whatever the case, with or without the prefix that their full
 * forms share; or it is read otherwise, for instance as a number.
 */
#ifndef OVK_SHELL_ARGUMENTS_H
#define OVK_SHELL_ARGUMENTS_H

#include "text.h"

#include <functional>
#include <map>
#include <stdexcept>

namespace shell {

class Session;

struct Wrong : std::runtime_error { // the command isn't well put; its usage helps
    using std::runtime_error::runtime_error;
};

struct Failure : std::runtime_error { // well put, but it can't be done
    using std::runtime_error::runtime_error;
};

struct Value {
    bool given = false;
    u64 number = 0;
    std::string text; // a name in full
    Words words;      // of rest()
};

// Short names and what they stand for.
using Names = std::vector<std::pair<std::string, u64>>;

// An enumeration of the library, known by its name function.
struct Enumeration {
    const char *title; // with its article
    const char *(*name)(u32);
    u32 first;
    Names usual{}; // what people call the values, before the library's names

    std::string prefix() const;        // what the library's names share
    Names names() const;               // the usual ones, then the library's without the prefix
    std::string text(u32 value) const; // the first of its names, or the number
};

extern const Enumeration exception_types;
extern const Enumeration exception_actions;
extern const Enumeration statuses;
extern const Enumeration forwarding_modes;
extern const Enumeration rates;
extern const Enumeration duplexes;
extern const Enumeration pause_policies;
extern const Enumeration encapsulations;

struct Parameter {
    std::string name;
    std::string what; // what the word is to be: "a number from 0 to 7"; the name itself: just that word
    std::string prefix{};
    std::function<Names(const Session &)> names{};
    std::function<bool(const std::string &, Value &)> otherwise{}; // false: the word is nothing of the kind
    const Enumeration *enumeration = nullptr;
    bool needed = true; // else it may be left out
    bool keyed = false; // written name=value
    bool rest = false;  // takes all words that are left
    u32 with = 0;       // bits of the values of the enumeration before it that it goes with; 0: with any
};

// `what` tells what the library takes; it may be given any number that the call's type holds.
Parameter number(const char *name, const char *what = "", u64 max = 0xFFFFFFFF, u64 min = 0);
Parameter one_of(const char *name, const Enumeration &enumeration);
Parameter status(const char *name, u64 min = 0);
Parameter choice(const char *name, const Words &words, u64 first = 0); // numbered from `first`
Parameter on_off(const char *name);
Parameter word(const char *fixed); // stands there as it is
Parameter mac(const char *name);   // as a number, the first octet on top
Parameter new_name(const char *name);
Parameter byte_pair(const char *name); // hi.lo, or both as one number
Parameter queue(const char *name);     // a handle; q0 to q15 are those that the platform gave out
Parameter interface(const char *name); // only what the session knows: a made-up handle would be read
Parameter tree(const char *name);
Parameter function(const char *name); // any text may be one: the library is to find out
Parameter operation(const char *name);
Parameter rest(const char *name, const char *what);

Parameter optional(Parameter parameter);
Parameter key(Parameter parameter, u32 with = 0);
Parameter needed_key(Parameter parameter);

// The parameter's names, for completion; empty when it has none.
Words names_of(const Session &session, const Parameter &parameter);

// The word as the parameter's value; throws Wrong.
Value read(const Session &session, const Parameter &parameter, const std::string &word);

// A command's arguments by the names of its row. What wasn't given reads as 0 or empty.
class Arguments {
  public:
    bool given(const std::string &name) const { return values_.at(name).given; }
    u64 wide(const std::string &name) const { return values_.at(name).number; }
    u32 number(const std::string &name, u32 otherwise = 0) const
    {
        return given(name) ? static_cast<u32>(wide(name)) : otherwise;
    }
    const std::string &text(const std::string &name) const { return values_.at(name).text; }
    const Words &words(const std::string &name) const { return values_.at(name).words; }
    Value &operator[](const std::string &name) { return values_[name]; }

  private:
    std::map<std::string, Value> values_;
};

} // namespace shell

#endif
