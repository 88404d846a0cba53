// SPDX-License-Identifier: Apache-2.0
// Handlers for calls that take an interface, or nothing, and the numbers of some arguments: a row needs no
// function of its own for them.
#ifndef OVK_SHELL_HANDLERS_H
#define OVK_SHELL_HANDLERS_H

#include "command.h"
#include "session.h"

#include <algorithm>

namespace shell {

// The name of an argument, as a template takes it.
template <std::size_t size>
struct Label {
    char text[size];
    // NOLINTNEXTLINE(google-explicit-constructor): it stands for the literal
    consteval Label(const char (&literal)[size]) { std::copy_n(literal, size, text); }
};

inline ovk_ethernet_if_handle interface_of(const Session &s, const Arguments &a)
{
    return s.interface(a.text("NAME"));
}

template <auto function, Label... numbers>
void call(Session &s, const Arguments &a)
{
    s.call(function, a.number(numbers.text)...);
}

template <auto function, Label... numbers>
void call_on(Session &s, const Arguments &a)
{
    s.call(function, interface_of(s, a), a.number(numbers.text)...);
}

} // namespace shell

#endif
