// SPDX-License-Identifier: Apache-2.0
//
// What the tests share: a started module on a simulated host, and the lines that a call prints.
#ifndef OVK_TESTS_SUPPORT_H
#define OVK_TESTS_SUPPORT_H

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "common/module_object.h"
#include "ovk_ethernet.h"
#include "sim.h"

namespace test {

// A host that no module has started on. Each test begins with a process that has just started, and ends with no
// misuse of the platform and a free lock.
class HostTest : public testing::Test {
  protected:
    HostTest()
    {
        sim::reset();
        host_ = std::make_unique<sim::Host>();
    }
    ~HostTest() override
    {
        EXPECT_EQ(sim::misuse(), std::vector<std::string>{});
        EXPECT_EQ(sim::lock_depth(host_->lock()), 0u);
    }

    sim::Host &host() { return *host_; }
    ovk_module *module() { return host_->module(); }

  private:
    std::unique_ptr<sim::Host> host_;
};

// A module that has started, with all masks 0.
class ModuleTest : public HostTest {
  protected:
    ModuleTest() { EXPECT_EQ(ovk_ethernet_init(module()), 0u); }

    eth_tree_info &tree(ovk_eth_tree index) { return ovk::tree_of(module(), index); }
};

// Everything that goes to standard output during `call`, line by line.
template <class Call>
std::vector<std::string> lines_of(Call call)
{
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    call();
    std::fflush(stdout);
    std::vector<std::string> lines;
    std::string rest = testing::internal::GetCapturedStdout();
    for (size_t end; (end = rest.find('\n')) != std::string::npos; rest.erase(0, end + 1))
        lines.push_back(rest.substr(0, end));
    if (!rest.empty())
        lines.push_back(rest);
    return lines;
}

// The same without positions: "[ovk_ethernet_log: ERROR] Invalid y 9".
template <class Call>
std::vector<std::string> messages_of(Call call)
{
    std::vector<std::string> lines = lines_of(call);
    for (std::string &line : lines) {
        const size_t head = line.find("] ");
        if (head == std::string::npos)
            continue;
        const size_t position = line.find(' ', head + 2);
        line.erase(head + 1, position == std::string::npos ? std::string::npos : position - head - 1);
    }
    return lines;
}

} // namespace test

#endif
