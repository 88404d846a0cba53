// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <optional>

#include "common/rule_key.h"
#include "ovk_eth_helper/names.h"
#include "ovk_eth_hw/exception.h"

namespace {

using namespace test;
using action_record = ovk_ethernet_exception_action;

constexpr u32 queue = sim::first_queue + 3; // of the id 0x103
constexpr u32 bad_queue = 0x1234;
constexpr char tvu_function[] = "ovk_ethernet.Process_CPU_Pkts";

constexpr action_record drop = {.type = 1, .send_to_cpu = {}};

action_record to_cpu(u8 priority, u32 param, u8 hi, u8 lo, u32 queue_handle)
{
    return {.type = 2, .send_to_cpu = {priority, param, {hi, lo}, queue_handle}};
}
action_record to_bdl(u8 priority, u16 bdl_queue, u32 queue_handle)
{
    return {.type = 3, .send_to_bdl = {priority, bdl_queue, queue_handle}};
}
action_record to_port(ovk_eth_intf *if_handle, u8 priority, u32 queue_handle)
{
    return {.type = 4, .send_to_port = {if_handle, priority, queue_handle}};
}
action_record to_function(const char *name)
{
    return {.type = 5, .send_to_tvu_func = {name}};
}

class ExceptionConfigure : public ModuleTest {
  protected:
    ExceptionConfigure() { port_.if_id = 0x2abcd; }
    u32 configure(u32 domain, u32 type, const action_record &action)
    {
        return ovk_ethernet_exception_configure(module(), domain, type, &action);
    }
    static std::string closing(u32 action_type, u32 type)
    {
        return std::string("|Failed to configure ") + ovk_eth_exception_action_name(action_type) +
               " action for " + ovk_eth_exception_name(type) + " exception type";
    }
    // What changes_since() gives, with the names of the CPU trees and the handler's shortened.
    std::string rules_since(const std::string &image)
    {
        std::string out;
        for (const std::string &line : changes_since(image))
            out += line + '\n';
        const std::regex noise("tree ovk_ethernet\\.|Get_cpu_path_|Exception_Handler_|rule ");
        return std::regex_replace(out, noise, "");
    }

    ovk_eth_intf port_ = live_record(INTERFACE_TYPE_PHY);
    ovk_eth_intf subif_ = live_record(INTERFACE_TYPE_VLAN);
};

TEST_F(ExceptionConfigure, RefusesTheFirstWrongArgumentInItsOrder)
{
    const struct {
        u32 domain, type;
        std::optional<action_record> action;
        u32 status;
        std::string message;
    } cases[] = {
        {1, 13, {}, 8, "NULL exception action pointer"},
        {1, 13, to_cpu(8, 0, 0, 0, bad_queue), 0x30008, "Invalid Exception domain specified"},
        {4, 1, drop, 0x30008, "Invalid Exception domain specified"},
        {2, 13, to_cpu(8, 0, 0, 0, bad_queue), 0x2000001, "Invalid exception type 13 specified"},
        {0, 0, drop, 0x2000001, "Invalid exception type 0 specified"},
        {0, 1, to_cpu(8, 0, 0, 0, bad_queue), 0x1001,
         "Failed to get Queue ID from the Queue handle 0x1234"},
        {0, 1, to_bdl(8, 0, 0), 0x1001, "Failed to get Queue ID from the Queue handle 0x0"},
        {0, 1, to_port(nullptr, 8, bad_queue), 0x1001,
         "Failed to get Queue ID from the Queue handle 0x1234"},
        {0, 1, action_record{.type = 0, .send_to_cpu = {}}, 0x2000002, "Invalid exception action type 0"},
        {0, 1, action_record{.type = 6, .send_to_cpu = {}}, 0x2000002, "Invalid exception action type 6"},
        {0, 1, to_cpu(8, 0, 0, 0, 0), 0x2000010, "Invalid priority 8"},
        {0, 1, to_bdl(255, 0, queue), 0x2000010, "Invalid priority 255"},
        {0, 1, to_port(nullptr, 8, queue), 0x2000003, "Invalid Interface handle 0x00000000"},
        {0, 1, to_port(&subif_, 8, queue), 0x200001e,
         "Incompatible Interface type INTERFACE_TYPE_VLAN. Must be INTERFACE_TYPE_PHY"},
        {0, 1, to_port(&port_, 8, queue), 0x2000010, "Invalid priority value 8"},
        {0, 1, to_function(nullptr), 8, "NULL TVU XGR Function name"},
        {0, 1, to_function("ovk_ethernet.Nowhere"), 63,
         "RTE Error: unknown name, Failed to return ID for the XGR function"},
    };
    const std::string before = host().image();
    for (const auto &at : cases) {
        const action_record *action = at.action ? &*at.action : nullptr;
        expect([&] { return ovk_ethernet_exception_configure(module(), at.domain, at.type, action); },
               at.status, at.message + closing(action ? action->type : 0, at.type));
    }
    EXPECT_EQ(changes_since(before), Lines{});
}

TEST_F(ExceptionConfigure, WritesTheRulesOfEachActionAndDropTakesThemBack)
{
    // Keys: two bits of domain and eight of code; in the CPU trees the identifier.
    const struct {
        u32 domain, type;
        action_record action;
        const char *rules;
    } cases[] = {
        {0, 1, to_cpu(5, 0x89234567, 0xab, 0xcd, queue),
         "+ lookup 0x01c/10 -> data 0x800001 0x25abcd\n"
         "+ param 0x800001/24 -> data 0x234567 0x0\n"
         "+ qsh_queue 0x800001/24 -> data 0x103 0x1\n"},
        {3, 12, to_cpu(7, 0, 1, 2, 0), // no queue of the traffic manager
         "+ lookup 0x350/10 -> data 0x80030c 0x270102\n"
         "+ param 0x80030c/24 -> data 0x0 0x0\n"
         "+ qsh_queue 0x80030c/24 -> data 0xffffff 0x0\n"},
        {2, 7, to_bdl(3, 0xbeef, queue),
         "+ lookup 0x22c/10 -> data 0x800207 0x33beef\n"
         "+ qsh_queue 0x800207/24 -> data 0x103 0x1\n"},
        // The interface id and the priority, which counts double here, are added.
        {2, 4, to_port(&port_, 1, queue), "+ lookup 0x264/10 -> data 0x103 0x14abcd\n"},
        {3, 9, to_port(&port_, 7, queue), "+ lookup 0x360/10 -> data 0x103 0x20abcd\n"},
        {0, 11, to_function(tvu_function), "+ lookup 0x058/10 -> function ovk_ethernet.Process_CPU_Pkts\n"},
    };
    const std::string before = host().image();
    for (const auto &at : cases) {
        EXPECT_EQ(configure(at.domain, at.type, at.action), 0u);
        EXPECT_EQ(rules_since(before), at.rules);
        EXPECT_EQ(configure(at.domain, at.type, drop), 0u);
        EXPECT_EQ(changes_since(before), Lines{});
    }
}

TEST_F(ExceptionConfigure, EachDomainAndTypeHasItsOwnRuleButTypesSixAndEight)
{
    constexpr u32 codes[] = {0, 28, 60, 56, 100, 104, 64, 44, 64, 96, 72, 88, 80};
    const std::string tree = "Exception_Handler_lookup";
    const std::string before = host().image();
    const auto each = [](auto visit) {
        for (const u32 domain : {0u, 2u, 3u})
            for (u32 type = 1; type <= 12; type++)
                visit(domain, type);
    };
    each([&](u32 domain, u32 type) {
        const u32 word = domain << 8 | type;
        EXPECT_EQ(configure(domain, type, to_bdl(0, static_cast<u16>(word), queue)), 0u);
        const sim::Answer found = sim::lookup(host().rte(), tree, {{domain, 2}, {codes[type], 8}});
        EXPECT_EQ(found.length, 10u);
        EXPECT_EQ(found.action.w1, 0x800000 | word);
    });
    EXPECT_EQ(sim::rules(host().rte(), tree).size(), 33u);
    // The last of the two decides, and dropping either drops both.
    EXPECT_EQ(sim::lookup(host().rte(), tree, {{0, 2}, {64, 8}}).action.w1, 0x800008u);
    EXPECT_EQ(configure(0, 6, drop), 0u);
    EXPECT_EQ(sim::lookup(host().rte(), tree, {{0, 2}, {64, 8}}).function, "ovk_ethernet.Discard_Pdu");
    each([&](u32 domain, u32 type) { EXPECT_EQ(configure(domain, type, drop), 0u); });
    EXPECT_EQ(changes_since(before), Lines{});
}

TEST_F(ExceptionConfigure, DropWithoutRulesIsThePlatformsToRefuse)
{
    const std::string refused = "RTE Error: no such rule, Failed to unlearn the input pattern"
                                "|Failed to update LPM Tree";
    EXPECT_EQ(configure(2, 8, to_function(tvu_function)), 0u);
    const std::string before = host().image();
    EXPECT_EQ(configure(2, 9, drop), 0u);
    sim::strict_unlearn(host().rte(), true);
    expect([&] { return configure(2, 9, drop); }, 65, refused + closing(1, 9));
    // A rule without the two of the CPU trees stands behind the first refusal.
    EXPECT_EQ(configure(2, 8, drop), 65u);
    EXPECT_EQ(changes_since(before), Lines{});
}

TEST_F(ExceptionConfigure, WritesInOrderAndWhatIsWrittenBeforeAFailureStands)
{
    const std::pair<char, const char *> trees[] = {
        {'h', "Exception_Handler_lookup"}, {'p', "Get_cpu_path_param"}, {'q', "Get_cpu_path_qsh_queue"}};
    const auto standing = [&] {
        std::string out = ": ";
        for (const auto &[letter, tree] : trees)
            if (!sim::rules(host().rte(), tree).empty())
                out += letter;
        return out;
    };
    const action_record cpu = to_cpu(0, 0, 0, 0, queue);
    const auto step = [](const char *failure, const std::string &at) {
        return "32522 Could not build the input pattern: " + at + '|' + failure + ": " + at + '|';
    };
    const auto learn = std::bind_front(step, "64 RTE, Failed to learn the input pattern");
    const auto unlearn = std::bind_front(step, "65 RTE, Failed to unlearn the input pattern");
    const auto check = [&](const action_record &before, const action_record &action,
                           const std::string &failures) {
        const auto prepare = [&] { EXPECT_EQ(configure(3, 5, drop) + configure(3, 5, before), 0u); };
        EXPECT_EQ(faults_of([&] { return configure(3, 5, action); }, prepare, standing), failures);
    };
    const std::string none = "32522 Failed to get Queue ID from the Queue handle 0x51000004: |";
    check(drop, cpu, none + learn("") + learn("h") + learn("hp"));
    check(drop, to_bdl(0, 0, queue), none + learn("") + learn("h"));
    check(drop, to_port(&port_, 0, queue), none + learn(""));
    check(drop, to_function(tvu_function),
          "32522 Could not build the input pattern: |63 RTE, Failed to return ID for the XGR function: |"
          "64 RTE, Failed to learn the input pattern: |");
    check(cpu, drop, unlearn("hpq") + unlearn("hq") + unlearn("h"));
}

TEST_F(ExceptionConfigure, ReportsSuccessAtInfoLevel)
{
    EXPECT_EQ(told(15, [&] { return configure(0, 12, to_port(&port_, 0, queue)); }),
              "info] Configured OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_PORT action for "
              "OVK_ETHERNET_EXCEPTION_TYPE_ETH_MTU_FAILED exception type\n");
}

TEST_F(ExceptionConfigure, WriterRefusesAKeyAndThenAnActionThatCantBeMade)
{
    const u64 writes = sim::journal::write_count();
    const auto write = [&](u32 op) { return ovk_eth_exception_config(module(), op, 0, 1, &drop, 0); };
    for (const u32 op : {1u, 2u}) {
        sim::faults::fail("ovk_ptn_clear", 1, 0x100);
        sim::faults::fail_always("ovk_ptn_extend", 0x11);
        expect([&] { return write(op); }, 0x122, "Could not build the input pattern"); // the sum
        sim::faults::clear();
    }
    expect([&] { return write(1); }, 8, "Invalid exception action type specified!");
    EXPECT_EQ(sim::journal::write_count(), writes);
}

TEST_F(ExceptionConfigure, CpuTreeOfTwoQueuesSaysWhetherOneIsGiven)
{
    const std::string before = host().image();
    EXPECT_EQ(ovk_eth_cpu_qsh_and_bdl_queue(module(), OVK_ETH_ADD, 0xa00001, 0x103, 0x1234), 0u);
    EXPECT_EQ(ovk_eth_cpu_qsh_and_bdl_queue(module(), OVK_ETH_ADD, 2, OVK_ETH_NO_QUEUE_ID, 0xffff), 0u);
    EXPECT_EQ(rules_since(before), "+ qsh_and_bdl_queue 0x000002/24 -> data 0xffffff 0xffff0000\n"
                                   "+ qsh_and_bdl_queue 0xa00001/24 -> data 0x103 0x12340001\n");
    EXPECT_EQ(ovk_eth_cpu_qsh_and_bdl_queue(module(), OVK_ETH_REMOVE, 2, 9, 9), 0u);
    EXPECT_EQ(ovk_eth_cpu_qsh_and_bdl_queue(module(), OVK_ETH_REMOVE, 0xa00001, 9, 9), 0u);
    EXPECT_EQ(changes_since(before), Lines{});
}

} // namespace
