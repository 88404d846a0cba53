// SPDX-License-Identifier: Apache-2.0
//
// What the tests share: a started module on a simulated host, and the lines that a call prints.
#ifndef OVK_TESTS_SUPPORT_H
#define OVK_TESTS_SUPPORT_H

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "common/module_object.h"
#include "fault_outcomes.h"
#include "ovk_ethernet.h"
#include "ovk_sys.h"
#include "sim.h"

namespace test {

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
using handle = ovk_ethernet_if_handle;

inline Lines operator+(Lines first, const Lines &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// The pairs of several failures of one status, between '|'. One that ends in '&' has no newline behind its
// text.
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

// A live record of a kind, in a mode where the kind has one.
inline ovk_eth_intf live_record(u32 type, u32 mode = 0)
{
    ovk_eth_intf intf = {};
    intf.if_magic = OVK_ETH_IF_MAGIC;
    intf.if_type = type;
    if (type == INTERFACE_TYPE_PHY)
        intf.phy.attrs.fwd_mode = mode;
    if (type == INTERFACE_TYPE_AGGR)
        intf.aggr.fwd_mode = mode;
    return intf;
}

// An aggregate made by hand: a live record, owner of its id, with a VLAN table and the given ports as
// members. Its MAC address ends in its id. Its flags words are those of a create; no rule of it is in any
// tree. Undone by its destructor, which comes before the module's.
class HandMadeAggregate {
  public:
    HandMadeAggregate(ovk_module *module, u32 slot, u32 fwd_mode, std::vector<ovk_eth_intf *> members)
        : object_(ovk::object_of(module)), slot_(slot), record_(live_record(INTERFACE_TYPE_AGGR, fwd_mode)),
          members_(std::move(members)), vlans_(4096)
    {
        record_.eth_handle = module;
        record_.if_guard = OVK_ETH_IF_GUARD;
        record_.if_id = 0x80 + slot;
        record_.hsw_if_id = members_.empty() ? 0xff : members_.front()->hsw_if_id;
        record_.inif_flags = record_.outif_flags = record_.if_id + (fwd_mode * 256) + 0x20000;
        EXPECT_EQ(ovk_sys_interface_id_alloc(module->parent, &record_.stats_ns_id), 0u);
        ovk_eth_aggr_tail &aggr = record_.aggr;
        aggr.src_mac[0] = 0x02;
        aggr.src_mac[5] = static_cast<u8>(record_.if_id);
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
            if (ovk_eth_valid_if_handle(member))
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
    ovk_eth_intf record_;
    std::vector<ovk_eth_intf *> members_;
    std::vector<ovk_eth_aggr_vlan_entry> vlans_;
};

// A record of the hardware's, as an image shows it: each byte reads 0x80 plus its offset, but for those
// given.
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

// What a successful call changes on the chip, in one line: "- gone + new ", without the names of port and
// tree.
template <class Call>
std::string changes(const sim::Host &host, Call call)
{
    const std::string before = host.image();
    EXPECT_EQ(call(), 0u);
    std::string out;
    for (const std::string &line : sim::image_diff(before, host.image()))
        out += line + ' ';
    return std::regex_replace(out, std::regex("(switch_)?port \\S+ |tree \\S+ |(vlan|flag) (?=0x)"), "");
}

inline u32 faults_injected = 0;

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
    Lines changes_since(const std::string &image) { return sim::image_diff(image, host().image()); }
    std::string answer(const char *of, const std::vector<sim::Field> &key)
    {
        return sim::action_text(host().rte(), sim::lookup(host().rte(), of, key).action);
    }

    // A call's status and, with errors shown, its lines: pairs of that status, as failures() takes them.
    template <class Call>
    void expect(Call call, u32 status, const std::string &messages)
    {
        u32 given = 0;
        module()->log_mask = 3;
        EXPECT_EQ(messages_of([&] { given = call(); }), failures(messages, status));
        EXPECT_EQ(given, status) << messages;
        module()->log_mask = 0;
    }
    // What a call that succeeds prints at a mask, line by line: "info] Created Interface 0x0012abcd".
    template <class Call>
    std::string told(u32 log_mask, Call call)
    {
        module()->log_mask = log_mask;
        std::string text;
        for (const std::string &line : messages_of([&] { EXPECT_EQ(call(), 0u); }))
            text += line.substr(line.find(": ") + 2) + '\n';
        module()->log_mask = 0;
        return text;
    }
    // What the call fails with and says first when the first of its platform calls fails, when the second
    // does, and so on, with `after()` behind each: "108 RTE, Failed to ...|". Repeats are left out;
    // `prepare()` comes before each run.
    std::string faults_of(
        const std::function<u32()> &call, const std::function<void()> &prepare = [] {},
        const std::function<std::string()> &after = [] { return ""; })
    {
        std::string out, last;
        const auto add = [&](const FaultyRun &run) {
            if (run.failed == "nothing")
                return;
            const std::string &line = run.lines.at(0);
            const std::string text =
                printed("%u ", run.status) + line.substr(line.find("] ") + 2) + after();
            out += text == last ? "" : text + '|';
            last = text;
        };
        each_fault(
            call, prepare, add,
            {.except = {"ovk_lttng_fn_ptr_get", "ovk_ptn_free", "ovk_sys_sem_lock_wait", "kor_sem_post"}});
        return out;
    }
    // The same runs, held against fault_outcome(); `settle` comes behind each, with the operation that
    // failed and whether the call did its work. `own_status` goes before the table. Gives the number of
    // faults.
    u32 sweep(const std::string &name, const std::function<u32()> &call,
              const std::function<void()> &prepare,
              const std::function<void(const std::string &, bool)> &settle,
              const sim::faults::Sweep &of = {},
              const std::function<std::optional<u32>(const std::string &)> &own_status = {})
    {
        SCOPED_TRACE(name);
        const auto check = [&](const FaultyRun &run) {
            FaultOutcome expected = fault_outcome(run.failed);
            if (const auto status = own_status ? own_status(run.failed) : std::nullopt)
                expected = {"", *status};
            EXPECT_EQ(run.status, expected.status);
            EXPECT_TRUE(*expected.cause == 0 ||
                        std::regex_search(run.lines.at(0), std::regex(expected.cause)))
                << run.lines.at(0);
            EXPECT_EQ(sim::misuse(), Lines{});
            // A lock that couldn't be given back stays with its holder, whose call has done its work.
            const bool is_held = run.failed == "kor_sem_post";
            EXPECT_EQ(sim::lock_depth(host().lock()), is_held ? 1u : 0u);
            EXPECT_EQ(is_held ? kor_sem_post(host().lock()) : 0, 0u);
            settle(run.failed, run.status == 0 || is_held);
        };
        return each_fault(call, prepare, check, of);
    }

  private:
    struct FaultyRun {
        std::string failed; // the operation, or "nothing"
        u32 status;
        Lines lines;
    };
    // Until no call is left to fail.
    u32 each_fault(const std::function<u32()> &call, const std::function<void()> &prepare,
                   const std::function<void(const FaultyRun &)> &settle, const sim::faults::Sweep &of)
    {
        for (u32 number = 1;; number++) {
            prepare();
            FaultyRun run = {"nothing", 0, {}};
            module()->log_mask = 3;
            sim::faults::fail_any(number, of);
            for (const std::string &line : messages_of([&] { run.status = call(); }))
                run.lines.push_back(
                    std::regex_replace(line, std::regex("RTE Error: injected fault"), "RTE"));
            if (!sim::faults::fired().empty())
                run.failed = sim::faults::fired().front();
            sim::faults::clear();
            module()->log_mask = 0;
            SCOPED_TRACE(run.failed + " failed, call " + std::to_string(number));
            settle(run);
            if (run.failed == "nothing")
                return number - 1;
            faults_injected++;
        }
    }
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

} // namespace test

#endif
