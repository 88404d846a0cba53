// SPDX-License-Identifier: Apache-2.0
//
// Each platform call that a call on ports makes fails once. One module runs on through a whole sweep, since
// starting one costs a hundred times what a call does; what a failure leaves is put right before the next.
#include "support.h"

#include <functional>
#include <iostream>

#include "kor_gatr.h"
#include "kor_nvm.h"

namespace {

using handle = ovk_ethernet_if_handle;

constexpr u32 own = sim::status_injected; // handed on as it came
constexpr u32 ignored = 0;                // the outcome isn't looked at

struct outcome {
    u32 status;
    const char *cause = ""; // in the first line, where no other test has it
};

#define RTE "RTE Error: injected fault, "
// clang-format off
const std::map<std::string, outcome> outcomes = {
    {"nothing", {0}}, {"ovk_sys_sem_lock_wait", {0x300A5}}, {"kor_sem_post", {0x100A5}}, {"ovk_lttng_fn_ptr_get", {ignored}},
    {"kor_nvm_calloc", {18, "FATAL. Memory allocation failed"}},
    {"ovk_sys_interface_id_alloc", {own, "Failed to allocate Stats NS ID for if_num 17"}},
    {"ovk_sys_interface_id_free", {own, "Failed to free Stats NS ID for interface 17"}},
    {"ovk_sys_mac_channel_id_get", {own, "ovk_sys_mac_channel_id_get failed for port \\d+$"}},
    {"ovk_sif_netDriver_demux_add", {own, "Failed to program demux tree: injected fault"}},
    {"ovk_sif_netDriver_demux_remove", {own, "Failed to program demux tree: injected fault"}},
    {"ovk_ptn_new", {own, "Could not build the input pattern"}}, {"ovk_ptn_free", {ignored}},
    {"ovk_ptn_clear", {own, "Could not build the input pattern"}},
    {"ovk_ptn_extend", {own, "Could not build the input pattern"}},
    {"kor_ptn_learn", {64}}, {"kor_ptn_unlearn", {65}},
    {"kor_ptn_otreeset_append", {77}}, {"kor_ptn_otreeset_build", {81}}, {"kor_ptn_otreeset_clear", {ignored}},
    {"kor_se_state_get", {43}}, {"kor_se_state_set", {44, RTE "Failed to (reset counters in|write to) SE memory"}},
    {"kor_vp_flow_data_write", {21, RTE "Failed to write flow data"}},
    {"kor_gatr_tag_config_get", {96, RTE "Failed to get the GATR tag MSB"}},
    {"kor_gatr_tag_config_set", {97, RTE "Failed to set the GATR tag MSB"}},
    {"kor_gatr_tag_enable_set", {98, RTE "Failed to enable the GATR tag"}},
    {"kor_gatr_switch_bridge_port_lport_set", {131, RTE "Logical Port set Failed for port 17"}},
    {"kor_gatr_port_vp_set", {94, RTE "Failed to configure Virtual Pipeline (ethernet_\\w+|ID for tagged packets)$"}},
    {"kor_gatr_qinq_set", {101, RTE "Failed to disable Q-in-Q for KOR_GMAC17"}},
    {"kor_gatr_crc_set", {102, RTE "Failed to configure CRC options"}},
    {"kor_gatr_unicast_filter_enable", {103, RTE "Failed to (disable U|enable/disable u)nicast filtering"}},
    {"kor_gatr_broadcast_filter_set", {104, RTE "Failed to disable Broadcast filtering"}},
    {"kor_gatr_unicast_filter_set", {105, RTE "Failed to set MAC addresses in Unicast filter"}},
    {"kor_gatr_mac_addr_set", {100, RTE "Failed to set the source MAC address"}},
    {"kor_mac_speed_duplex_get", {106}}, {"kor_mac_speed_duplex_set", {107}},
    {"kor_gatr_mac_statistics_get", {108}}, {"kor_gatr_mac_flow_ctrl_set", {110}},
    {"kor_gatr_port_enable_get", {own}}, {"kor_gatr_port_enable_set", {own}},
    {"kor_gatr_common_vps_bridging_vp_get", {own}}, {"kor_gatr_common_vps_bridging_vp_set", {own}},
    {"kor_gatr_switch_bridge_port_learn_attrs_get", {134}}, {"kor_gatr_switch_bridge_port_learn_attrs_set", {135}},
    {"kor_gatr_switch_bridge_port_attrs_get", {136}}, {"kor_gatr_switch_bridge_port_attrs_set", {137}},
    {"kor_gatr_port_default_vlan_set", {138}}, {"kor_gatr_port_ingress_vlan_set", {139}},
    {"kor_gatr_port_ingress_vlan_rem", {140}}, {"kor_gatr_switch_bridge_vlan_vps_get", {139}},
    {"kor_gatr_port_ingress_qinq_cvlan_map_set", {141}}, {"kor_gatr_switch_bridge_vlan_vps_set", {141}},
    {"kor_gatr_port_ingress_qinq_cvlan_map_rem", {142}}, {"kor_gatr_port_ingress_options_set", {144}},
    {"kor_gatr_port_ingress_parsing_options_get", {145}}, {"kor_gatr_port_ingress_parsing_options_set", {146}},
    {"kor_gatr_switch_bridge_unknown_multicast_set", {148}}, {"kor_gatr_switch_acl_port_cfg_get", {149}},
    {"kor_gatr_switch_acl_port_cfg_set", {150}}, {"kor_gatr_switch_acl_build", {151}},
    {"kor_gatr_switch_bridge_destination_vps_set", {152}}, {"kor_gatr_switch_bridge_source_port_vps_set", {149}},
};
// clang-format on

class InterfaceFault : public test::ModuleTest {
  protected:
    InterfaceFault() { sim::heap::quarantine_limit(1 << 20); }
    static void TearDownTestSuite()
    {
        std::cout << "[  FAULTS  ] " << faults_ << " injected\n";
        RecordProperty("faults", static_cast<int>(faults_));
    }

    // Runs `call` with its first, second, … platform call failing, until none is left to fail. `prepare`
    // comes before each run; `settle` behind it, with the operation that failed and whether the call did
    // its work.
    template <class Call, class Settle>
    u32 sweep(const std::string &name, Call call, const std::function<void()> &prepare, Settle settle)
    {
        for (u32 number = 1;; number++) {
            prepare();
            u32 status = 0;
            module()->log_mask = 3;
            sim::faults::fail_any(number);
            const test::Lines lines = test::messages_of([&] { status = call(); });
            const test::Lines fired = sim::faults::fired();
            sim::faults::clear();
            module()->log_mask = 0;
            const std::string failed = fired.empty() ? "nothing" : fired.front();
            SCOPED_TRACE(name + ": " + failed + " failed, call " + std::to_string(number));
            const auto at = outcomes.find(failed);
            const outcome expected = at != outcomes.end() ? at->second : outcome{~0u, "nobody says"};
            EXPECT_EQ(status, expected.status);
            const bool is_named = *expected.cause != 0;
            EXPECT_TRUE(!is_named || std::regex_search(lines.at(0), std::regex(expected.cause)))
                << lines.at(0);
            EXPECT_EQ(sim::misuse(), test::Lines{});
            // A lock that couldn't be given back stays with its holder.
            const bool is_held = failed == "kor_sem_post";
            EXPECT_EQ(sim::lock_depth(host().lock()), is_held ? 1u : 0u);
            EXPECT_EQ(is_held ? kor_sem_post(host().lock()) : 0, 0u);
            settle(failed, status == 0 || is_held);
            if (fired.empty())
                return number - 1;
            faults_++;
        }
    }
    size_t blocks(size_t size) const { return sim::heap::live_sizes()[size]; }

    handle port_ = nullptr;
    static u32 faults_;
};
u32 InterfaceFault::faults_ = 0;

TEST_F(InterfaceFault, CreateGivesAHandleOrNoneAndDeleteTakesItOrKeepsIt)
{
    const handle untouched = reinterpret_cast<handle>(4);
    handle &owner = ovk::object_of(module()).port_owner_table[0x11];
    const size_t tables = 4096 * sizeof(ovk_eth_vlan_entry);
    for (u32 mode = 1; mode <= 5; mode++) {
        const std::string name = "mode " + std::to_string(mode);
        const ovk_ethernet_intf_attrs attrs = test::port_attrs(0x11, mode);
        const auto create = [&] { return ovk_ethernet_interface_create(module(), &attrs, &port_); };
        const auto remove = [&] { return ovk_ethernet_interface_delete(module(), port_); };
        const u32 creates = sweep(
            name + " create", create,
            [&] {
                // As at power-on, so that each run has the same steps.
                port_ = untouched;
                EXPECT_EQ(kor_mac_speed_duplex_set(host().rte(), 0x11, 5, 1), 0u);
                EXPECT_EQ(kor_gatr_port_enable_set(host().rte(), 0x11, 0, 0), 0u);
            },
            [&](const std::string &failed, bool is_done) {
                EXPECT_EQ(owner, is_done ? port_ : nullptr);
                EXPECT_EQ(ovk_eth_valid_if_handle(owner), is_done);
                EXPECT_EQ(blocks(sizeof(ovk_eth_intf)), is_done ? 1u : 0u);
                if (!is_done) {
                    EXPECT_EQ(port_, failed == "ovk_sys_sem_lock_wait" ? untouched : nullptr);
                    EXPECT_EQ(create(), 0u); // over what is left
                }
                EXPECT_EQ(remove(), 0u);
            });
        const size_t lost_tables = blocks(tables);
        const u32 deletes = sweep(
            name + " delete", remove, [&] { EXPECT_EQ(create(), 0u); },
            [&](const std::string &failed, bool is_done) {
                const bool is_untouched = failed == "ovk_sys_sem_lock_wait";
                EXPECT_EQ(owner, is_done ? nullptr : port_);
                EXPECT_EQ(ovk_eth_valid_if_handle(port_), !is_done);
                EXPECT_EQ(blocks(tables), lost_tables + is_untouched);
                if (is_untouched) {
                    EXPECT_EQ(remove(), 0u);
                } else if (!is_done) { // its table is gone, so it can't be deleted again
                    kor_nvm_free(port_);
                    owner = nullptr;
                }
            });
        EXPECT_GE(creates, 150u); // with fewer, a sweep has lost its way
        EXPECT_GE(deletes, 100u);
    }
}

TEST_F(InterfaceFault, OtherCallsHandOnTheDocumentedStatus)
{
    const handle trunk = test::make_port(module(), 0x11, 2), routed = test::make_port(module(), 0x12, 4);
    test::HandMadeAggregate trunks(module(), 0, 2, {test::make_port(module(), 0x13, 2)});
    test::HandMadeAggregate routes(module(), 1, 4, {test::make_port(module(), 0x14, 4)});
    const handle trunk_aggr = trunks.handle(), routed_aggr = routes.handle();
    const u8 mac[6] = {0x02};
    const u8 map[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    u32 word = 0;
    handle out = nullptr;
    ovk_ethernet_port_status port_status = {};
    ovk_eth_port_stats port_stats = {};
    ovk_eth_if_stats if_stats = {};
    ovk_eth_l2_stats l2_stats = {};
    ovk_eth_global_stats global_stats = {};

    // Set-ups from which each run has the same steps.
    const auto mac_at = [&](u32 speed, u32 on) {
        EXPECT_EQ(kor_mac_speed_duplex_set(host().rte(), 0x11, speed, 1), 0u);
        EXPECT_EQ(kor_gatr_port_enable_set(host().rte(), 0x11, on, on), 0u);
    };
    const auto off = [&] { mac_at(1, 0); };
    const auto on = [&] { mac_at(1, 1); };
    const auto unbound = [&] { trunk->bg_ref_count[5] = trunk_aggr->bg_ref_count[5] = 0; };
    const auto bound = [&] {
        EXPECT_EQ(ovk_ethernet_vlan_id_add(module(), trunk, 0, 5), 0u);
        EXPECT_EQ(ovk_ethernet_vlan_id_add(module(), trunk_aggr, 0, 5), 0u);
    };
    using named_call = std::pair<const char *, std::function<u32()>>;
#define CALL(name, ...)                                                                                    \
    named_call(#name, [&] { return ovk_ethernet_##name(module() __VA_OPT__(, ) __VA_ARGS__); })
    const std::pair<std::function<void()>, std::vector<named_call>> groups[] = {
        // clang-format off
        {[] {}, {
            CALL(port_number_get, trunk, &word), CALL(interface_id_get, trunk, &word),
            CALL(interface_handle_get, 0x11, &out), CALL(port_attributes_override, 0),
            CALL(promiscuous_mode, routed, 0), CALL(promiscuous_mode, routed_aggr, 0),
            CALL(flow_filter, trunk, 0, 1), CALL(flow_filter, trunk_aggr, 0, 1),
            CALL(recv_mac_add, routed, mac), CALL(recv_mac_del, routed),
            CALL(port_egress_vlan_config, trunk, 5, 2, 7, 1), CALL(port_egress_vlan_config_del, trunk, 5),
            CALL(mac_aging_timer_config, trunk, 4), CALL(mac_aging_timer_config, trunk_aggr, 5),
            CALL(interface_autoneg, trunk, 1), CALL(interface_autoneg, trunk, 0), CALL(autoneg_force, trunk),
            CALL(mac_channel_get, trunk, &word), CALL(port_status_get, trunk, 1, 1, &port_status),
            CALL(flow_control, trunk, 1, 2, 3), CALL(port_loopback, trunk, 1), CALL(pcp_to_task_pri_map, map),
            CALL(port_statistics_get, trunk, &port_stats, 1), CALL(interface_statistics_get, trunk, &if_stats),
            CALL(l2_interface_statistics_get, trunk_aggr, &l2_stats), CALL(global_statistics_get, &global_stats),
            CALL(report_crcerror, trunk, 0, [](handle, void *, u64) {}, 1), CALL(port_stats_print, trunk),
            CALL(if_stats_print, trunk), CALL(l2_interface_statistics_print, trunk), CALL(global_stats_print)}},
        {off, {CALL(output_rate_set, trunk, 2), CALL(interface_duplex, trunk, 2),
               CALL(interface_tx, trunk, 1), CALL(interface_rx, trunk, 1)}},
        {on, {CALL(interface_tx, trunk, 0), CALL(interface_rx, trunk, 0)}},
        {unbound, {CALL(vlan_id_add, trunk, 0, 5), CALL(vlan_id_add, trunk_aggr, 0, 5)}},
        {bound, {CALL(vlan_id_del, trunk, 0, 5), CALL(vlan_id_del, trunk_aggr, 0, 5)}},
        // clang-format on
    };
    u32 faults = 0;
    for (const auto &[prepare, calls] : groups)
        for (const auto &[name, call] : calls)
            faults += sweep(name, call, prepare, [](const auto &, bool) {});
    EXPECT_GE(faults, 500u);
}

} // namespace
