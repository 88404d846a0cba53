// SPDX-License-Identifier: Apache-2.0
//
// What the tests share: a started module on a simulated host, and the lines that a call prints.
#ifndef OVK_TESTS_SUPPORT_H
#define OVK_TESTS_SUPPORT_H

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/module_object.h"
#include "ovk_ethernet.h"
#include "ovk_sys.h"
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

// A port as tests create it: its MAC address ends in its number, and port 0 runs at 10G, all others at 1G.
inline ovk_ethernet_intf_attrs port_attrs(u32 if_num, u32 fwd_mode)
{
    return {.if_num = if_num,
            .fwd_mode = fwd_mode,
            .output_rate = if_num == 0 ? u32{OVK_ETHERNET_SPEED_10G} : u32{OVK_ETHERNET_SPEED_1G},
            .tx_enable = 1,
            .rx_enable = 1,
            .full_duplex = 1,
            .autoneg = 0,
            .src_mac = {0x02, 0, 0, 0, 0, static_cast<u8>(if_num)},
            .encap_type = OVK_ETHERNET_ENCAP_DIX};
}

inline ovk_ethernet_if_handle make_port(ovk_module *module, u32 if_num, u32 fwd_mode)
{
    const ovk_ethernet_intf_attrs attrs = port_attrs(if_num, fwd_mode);
    ovk_ethernet_if_handle port = nullptr;
    EXPECT_EQ(ovk_ethernet_interface_create(module, &attrs, &port), 0u);
    return port;
}

// An aggregate made by hand: a live record, owner of its id, with a VLAN table and the given ports as members. Its
// MAC address ends in its id. Its flags words are those of a create; no rule of it is in any tree. Undone by its
// destructor, which comes before the module's.
class HandMadeAggregate {
  public:
    HandMadeAggregate(ovk_module *module, u32 slot, u32 fwd_mode, std::vector<ovk_eth_intf *> members)
        : object_(ovk::object_of(module)), slot_(slot), members_(std::move(members)), vlans_(4096)
    {
        record_.eth_handle = module;
        record_.if_guard = OVK_ETH_IF_GUARD;
        record_.if_magic = OVK_ETH_IF_MAGIC;
        record_.if_type = INTERFACE_TYPE_AGGR;
        record_.if_id = 0x80 + slot;
        record_.hsw_if_id = members_.empty() ? 0xff : members_.front()->hsw_if_id;
        record_.inif_flags = record_.outif_flags = record_.if_id + (fwd_mode * 256) + 0x20000;
        EXPECT_EQ(ovk_sys_interface_id_alloc(module->parent, &record_.stats_ns_id), 0u);
        ovk_eth_aggr_tail &aggr = record_.aggr;
        aggr.src_mac[0] = 0x02;
        aggr.src_mac[5] = static_cast<u8>(record_.if_id);
        aggr.fwd_mode = fwd_mode;
        aggr.encap_type = OVK_ETHERNET_ENCAP_DIX;
        aggr.promiscuous = aggr.in_flow_filter = aggr.out_flow_filter = 1;
        aggr.vlan_eth_type[0] = aggr.vlan_eth_type[1] = 0x8100;
        aggr.member_count = static_cast<u8>(members_.size());
        aggr.members = members_.data();
        for (ovk_eth_intf *member : members_)
            own(*member, 1, &record_);
        object_.aggr_in_use[slot] = 1;
        object_.port_owner_table[record_.if_id] = &record_;
        object_.aggr_vlan_table[slot] = vlans_.data();
    }
    ~HandMadeAggregate()
    {
        for (ovk_eth_intf *member : members_)
            own(*member, 0, nullptr);
        object_.aggr_in_use[slot_] = 0;
        object_.port_owner_table[record_.if_id] = nullptr;
        object_.aggr_vlan_table[slot_] = nullptr;
    }
    HandMadeAggregate(const HandMadeAggregate &) = delete;
    HandMadeAggregate &operator=(const HandMadeAggregate &) = delete;

    ovk_eth_intf *handle() { return &record_; }
    ovk_eth_aggr_vlan_entry &vlan(u32 vlan_id) { return vlans_[vlan_id]; }

  private:
    static void own(ovk_eth_intf &member, u8 in_aggregate, ovk_eth_intf *aggregate)
    {
        member.in_aggregate = in_aggregate;
        member.phy.parent_aggr = aggregate;
    }

    ovk_eth_module_object &object_;
    u32 slot_;
    ovk_eth_intf record_{};
    std::vector<ovk_eth_intf *> members_;
    std::vector<ovk_eth_aggr_vlan_entry> vlans_;
};

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

// All that a failed public call prints: the cause, then the operation.
inline Lines refusal(const std::string &cause, const std::string &operation, u32 status)
{
    return failure(cause, status) + failure(operation, status);
}

// All that a public call prints that was given a module that isn't one.
inline Lines no_module(const std::string &operation)
{
    const std::string head = "[ovk_unknown_log: ERROR] ";
    return {head + "Invalid Ethernet module handle 0x00000000", head + operation};
}

// A record of the hardware's, as an image shows it: each byte reads 0x80 plus its offset, but for those given.
inline std::string numbered(u32 size, std::initializer_list<std::pair<u32, u8>> bytes)
{
    std::string out;
    for (u32 offset = 0; offset < size; offset++) {
        u32 value = 0x80 + offset;
        for (const auto &[at, given] : bytes)
            value = at == offset ? given : value;
        char text[4];
        std::snprintf(text, sizeof text, "%02x", value);
        out += text;
    }
    return out;
}

// A text as printf makes it.
[[gnu::format(printf, 1, 2)]] inline std::string printed(const char *format, ...)
{
    char text[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

} // namespace test

#endif
