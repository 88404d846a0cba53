// SPDX-License-Identifier: Apache-2.0
//
// Each platform call that a call on a started module makes fails once. One module runs on through a whole
// sweep, since starting one costs a hundred times what a call does; what a failure leaves is put right
// before the next.
#include "support.h"

#include <iostream>

#include "kor_gatr.h"
#include "kor_nvm.h"

namespace {

using namespace test;

// How many there were in all tests of a run.
class Report : public testing::Environment {
    void TearDown() override { std::cout << "[  FAULTS  ] " << faults_injected << " injected\n"; }
};
[[maybe_unused]] const testing::Environment *const report = testing::AddGlobalTestEnvironment(new Report);

class InterfaceFault : public ModuleTest {
  protected:
    InterfaceFault() { sim::heap::quarantine_limit(1 << 20); }
    size_t blocks(size_t size) const { return sim::heap::live_sizes()[size]; }

    handle port_ = nullptr;
};

TEST_F(InterfaceFault, CreateGivesAHandleOrNoneAndDeleteTakesItOrKeepsIt)
{
    const handle untouched = reinterpret_cast<handle>(4);
    handle &owner = ovk::object_of(module()).port_owner_table[0x11];
    const size_t tables = 4096 * sizeof(ovk_eth_vlan_entry);
    for (u32 mode = 1; mode <= 5; mode++) {
        const std::string name = "mode " + std::to_string(mode);
        const ovk_ethernet_intf_attrs attrs = port_attrs(0x11, mode);
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
    const handle trunk = make_port(module(), 0x11, 2), routed = make_port(module(), 0x12, 4);
    HandMadeAggregate trunks(module(), 0, 2, {make_port(module(), 0x13, 2)});
    HandMadeAggregate routes(module(), 1, 4, {make_port(module(), 0x14, 4)});
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
    const auto mac_at = [&](u32 speed, u32 is_on) {
        EXPECT_EQ(kor_mac_speed_duplex_set(host().rte(), 0x11, speed, 1), 0u);
        EXPECT_EQ(kor_gatr_port_enable_set(host().rte(), 0x11, is_on, is_on), 0u);
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
            CALL(if_stats_print, trunk), CALL(l2_interface_statistics_print, trunk), CALL(global_stats_print),
            CALL(service_function_update)}},
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
    EXPECT_GE(faults, 600u);
}

} // namespace
