// SPDX-License-Identifier: Apache-2.0
//
// What the tests share: a started module on a simulated host, and the lines that a call prints.
#ifndef OVK_TESTS_SUPPORT_H
#define OVK_TESTS_SUPPORT_H

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "common/module_object.h"
#include "ovk_ethernet.h"
#include "ovk_sys.h"
#include "sim.h"

namespace test {

// A host that no module has started on. Each test begins with a process that has just started, and ends
// with no misuse of the platform and a free lock.
class HostTest : public testing::Test {
  protected:
    HostTest() { begin(); }
    ~HostTest() override { end(); }

    // Another host, as if another test began.
    void start_over()
    {
        end();
        begin();
    }

    sim::Host &host() { return *host_; }
    ovk_module *module() { return host_->module(); }

  private:
    void begin()
    {
        sim::reset();
        host_ = std::make_unique<sim::Host>();
    }
    void end()
    {
        EXPECT_EQ(sim::misuse(), std::vector<std::string>{});
        EXPECT_EQ(sim::lock_depth(host_->lock()), 0u);
    }

    std::unique_ptr<sim::Host> host_;
};

// A module that has started, with all masks 0.
class ModuleTest : public HostTest {
  protected:
    ModuleTest() { EXPECT_EQ(ovk_ethernet_init(module()), 0u); }

    eth_tree_info &tree(ovk_eth_tree index) { return ovk::tree_of(module(), index); }
};

// What goes to standard output during `call`.
template <class Call>
std::string output_of(Call call)
{
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    call();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

// The same line by line.
template <class Call>
std::vector<std::string> lines_of(Call call)
{
    std::vector<std::string> lines;
    std::istringstream output(output_of(call));
    for (std::string line; std::getline(output, line);)
        lines.push_back(line);
    return lines;
}

// The same without positions: "[ovk_ethernet_log: ERROR] Invalid y 9".
template <class Call>
std::vector<std::string> messages_of(Call call)
{
    std::vector<std::string> lines = lines_of(call);
    // A failure text without a newline has the next head on its own line.
    for (std::string &line : lines)
        for (size_t at = 0; (at = line.find("_log: ", at)) != std::string::npos;) {
            at = line.find("] ", at) + 1;
            line.erase(at, line.find(' ', at + 1) - at);
        }
    return lines;
}

// "0x0012abcd", as messages show a handle.
inline std::string hex(const void *handle)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", static_cast<u32>(reinterpret_cast<uintptr_t>(handle)));
    return text;
}

// The lines of a failure as messages_of() gives them: what happened, then the status's text.
inline std::vector<std::string> failure(const std::string &message, u32 status,
                                        const std::string &word = "ERROR")
{
    const std::string head = "[ovk_ethernet_log: " + word + "] ";
    return {head + message, head + ovk_sys_status_get(nullptr, status)};
}

using Lines = std::vector<std::string>;

inline Lines operator+(Lines first, const Lines &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// The pairs of several failures of one status, between '|'. One that ends in '&' has no newline behind its text.
inline Lines failures(const std::string &messages, u32 status)
{
    Lines out;
    std::istringstream rest(messages);
    for (std::string message; std::getline(rest, message, '|');) {
        const bool joined = message.back() == '&';
        const Lines pair = failure(message.substr(0, message.size() - joined), status);
        out = out + (joined ? Lines{pair[0] + pair[1]} : pair);
    }
    return out;
}

// What was traced: "event text".
inline Lines traced()
{
    Lines out;
    for (const sim::traces::Record &record : sim::traces::records())
        out.push_back(std::to_string(record.event) + ' ' + record.text);
    return out;
}

// What a module has taken from its host: databases, ids, namespaces of its own, bridge entries, blocks.
inline std::string holdings(const sim::Host &host)
{
    u32 databases = 0, ids = 0, namespaces = 0, entries = 0;
    for (const std::string &line : sim::image_diff("", host.image())) {
        const bool ns = line.starts_with("+ namespace ");
        databases += line.starts_with("+ database ") && line.find(" width ") != std::string::npos;
        ids += ns && line.find(" id 0x") != std::string::npos;
        namespaces += ns && line.ends_with(" ids");
        entries += line.starts_with("+ bridge ");
    }
    char text[80];
    std::snprintf(text, sizeof text, "db %u id %u ns %u br %u mem %zu", databases, ids, namespaces, entries,
                  sim::heap::live_blocks());
    return text;
}

} // namespace test

#endif
