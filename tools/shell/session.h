// SPDX-License-Identifier: Apache-2.0
/*
 * Session: a host with its simulated chip, the library that it loaded, and what has come of the calls.
 *
 * All that the shell prints goes to standard output, as the library's own lines do, so that they keep their
 * order in a pipe.
 */
#ifndef OVK_SHELL_SESSION_H
#define OVK_SHELL_SESSION_H

#include "library.h"
#include "sim.h"
#include "text.h"

#include <functional>
#include <map>
#include <type_traits>

namespace shell {

// A tree as the module asked for it when it started.
struct TreeUse {
    u32 index;
    u32 key_bits;
    bool database;
};

// A handle that the library gave, or has taken back: a dead one may still be tried.
struct Interface {
    ovk_ethernet_if_handle handle = nullptr;
    u32 number = 0; // of its port
    bool dead = false;
};

class Session {
  public:
    explicit Session(const std::string &library_file) : library(library_file), origin(library.path()) {}

    // Makes the call on the session's module, prints its status and keeps it.
    template <class... Params>
    u32 call(u32 (*function)(ovk_module *, Params...), std::type_identity_t<Params>... args)
    {
        return made([&] { return function(host.module(), args...); });
    }
    template <class... Params>
    u32 call(u32 (*Calls::*function)(ovk_module *, Params...), std::type_identity_t<Params>... args)
    {
        return call(library.calls().*function, args...);
    }

    // "0x2000001 OVK_ETHERNET_E_INVALID_EXCEPTION_TYPE": the number and the module's name or the platform's
    // text.
    std::string status_text(u32 status);

    // A handle by the name that interface arguments have; "0" or none is the null handle.
    ovk_ethernet_if_handle interface(const std::string &name) const;

    // The MAC channel of a name's port; the null handle has none: throws.
    u32 channel(const std::string &name) const;

    // The name of a handle that lives; empty when it has none.
    std::string name_of(ovk_ethernet_if_handle handle) const;

    // Platform calls of the last library call, whether the journal is on or not.
    const Words &last_calls() const { return last_calls_; }

    sim::Host host{3};
    Library library;
    std::string origin; // the library file that reloads copy
    std::vector<Library> retired;
    std::map<std::string, Interface> interfaces; // by name, for as long as the module is up
    std::map<std::string, TreeUse> trees;        // by short name
    std::string chip_at_start;                   // its image when the module was up
    Words journal;
    bool journal_on = false;
    u32 calls_made = 0;
    u32 last_status = 0;
    u32 misuses = 0;
    bool keep_going = false;
    bool quit = false;

  private:
    u32 made(const std::function<u32()> &call);

    Words last_calls_;
};

// What all of the module's names in the classifier's programme begin with.
inline constexpr const char *programme_prefix = "ovk_ethernet.";

// A name without it.
std::string short_name(std::string_view name);

} // namespace shell

#endif
