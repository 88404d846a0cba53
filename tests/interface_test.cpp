// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include <algorithm>

#include "ovk_eth_hw/port_rules.h"
#include "ovk_eth_hw/port_setup.h"

namespace {

using namespace test;

constexpr u32 number = 0x11; // index 6 in the switch
constexpr u32 access_mode = 1, trunk = 2, tunnel = 3, routed = 4, static_mode = 5;

std::string replaced(const std::string &text, const std::string &pattern, const std::string &by)
{
    return std::regex_replace(text, std::regex(pattern), by);
}

// Steps, and facts of an image, each on a line of its own.
std::string apart(const std::string &text)
{
    return replaced(text, "\\s+(?=\\w+\\(|\\+|$)", "\n");
}

class Interface : public ModuleTest {
  protected:
    u32 create(const ovk_ethernet_intf_attrs &attrs)
    {
        return ovk_ethernet_interface_create(module(), &attrs, &port_);
    }
    u32 remove() { return ovk_ethernet_interface_delete(module(), port_); }

    // With names for handle, id of counters and size of the port's record.
    std::string named(std::string text)
    {
        text = replaced(text, hex(port_), "HANDLE");
        text = replaced(text, printed("0x0*%x", port_->stats_ns_id), "NS");
        return replaced(text, printed("(0x%zx|block \\d+ of %zu)\\)", sizeof *port_, sizeof *port_),
                        "record)");
    }
    // What a call does, but for patterns, locks, traces and plain reads. Zeros that end a record are left
    // out, and long records.
    template <class Call>
    std::string steps_of(Call call)
    {
        const std::regex other("^(ovk_lttng|ovk_ptn|ovk_sys_(sem|mac)|kor_sem|.*_get\\()");
        const char *const noise = "0x7e000001(, )?|(kor_|switch_bridge_)(gatr_)?|ovk_ethernet\\.| w\\d+|"
                                  "block \\d+ of |[0-9a-f]{49,}";
        std::string steps;
        sim::journal_on(true);
        sim::journal::clear();
        EXPECT_EQ(call(), 0u);
        for (const std::string &entry : sim::journal::entries())
            steps += std::regex_search(entry, other) ? "" : entry + '\n';
        steps = replaced(named(steps), "0{64,}(?=\\))", "");
        return replaced(replaced(steps, noise, ""), "no data l0", "-");
    }
    // What the classifier finds: for the port, for a frame to all, to it, and to someone else.
    std::string answers()
    {
        const u64 own = 0x020000000011;
        const u32 ns_id = port_ != nullptr ? port_->stats_ns_id : 0;
        std::string out;
        for (const auto &[tree, key] : std::vector<std::pair<const char *, std::vector<sim::Field>>>{
                 {"Map_Input_Port_NameSpace_Id", {{6, 8}}},
                 {"Map_Output_Port_NameSpace_Id", {{number, 8}}},
                 {"Convert_DestMapIndex_To_Output_Port", {{7, 6}}},
                 {"Map_Intf_NameSpace_Id", {{number, 20}}},
                 {"Map_NameSpace_Intf_Id", {{ns_id, 24}}},
                 {"Validate_destMAC", {{number, 8}, {0xffffffffffff, 48}}},
                 {"Validate_destMAC", {{number, 8}, {own, 48}}},
                 {"Validate_destMAC", {{number, 8}, {own + 1, 48}}},
                 {"Lookup_destMAC", {{own, 48}}},
                 {"Lookup_Static_Port_Map_Tree", {{number, 8}}}})
            out += answer(tree, key) + '|';
        const auto hit = sim::association_match(host().rte(), "Ethernet_Association", number,
                                                {{0x0800, 24}, {own, 48}, {1, 48}, {5, 12}, {1, 3}});
        const auto to_cpu = sim::demux(host().rte());
        return out + (hit ? sim::action_text(host().rte(), hit->action) : "no list") +
               printed("|demux %zu", to_cpu.count(number));
    }
    handle port_ = nullptr;
};

constexpr char create_steps[] =
    R"(nvm_calloc(0x1, record) nvm_calloc(0x1000, 0x8) ovk_sys_interface_id_alloc()
se_state_set(NS, 0x0, )
ptn_learn(Map_Input_Port_NameSpace_Id, 0x06/8, data NS 0x20#11)
ptn_learn(Map_Output_Port_NameSpace_Id, 0x11/8, data NS 0x30#11)
ptn_learn(Convert_DestMapIndex_To_Output_Port, 0x07/6, value 0x11)
ptn_learn(Map_Intf_NameSpace_Id, 0x00011/20, value NS) ptn_learn(Map_NameSpace_Intf_Id, NS/24, value 0x11)
tag_config_set(0x11, 0x10, 0xc, 0x1106) tag_enable_set(0x11, 0x1) port_lport_set(0x11, 0x6)
port_vp_set(0x11, 0x0, "PIPELINE", 000000000000000004000000)
port_vp_set(0x11, 0x1, "PIPELINE", 040404040404040404000000) qinq_set(0x11, 0x1)
crc_set(0x11, 0x1, 0x0, 0x1) unicast_filter_enable(0x11, 0x0) broadcast_filter_set(0x11, 0x0) MODE
mac_speed_duplex_set(0x11, 0x2, 0x2) mac_speed_duplex_set(0x11, 0x2, 0x1)
port_enable_set(0x11, 0x1, 0x0) port_enable_set(0x11, 0x1, 0x1) mac_addr_set(0x11, 020000000011)
ptn_learn(Validate_destMAC, 0x11ffffffffffff/56, value 0x2)
ptn_learn(Validate_destMAC, 0x11020000000011/56, value 0x4)
unicast_filter_set(0x11, 0x0, 020000000011, 020000000011, 020000000011)
ptn_learn(Lookup_destMAC, 0x020000000011/48, value 0x111)
ptn_otreeset_append(Ethernet_Association, [0x11/8, -, -, -, -, -], function No_Ethernet_Association)
ptn_otreeset_build(Ethernet_Association, [0x11/8])
vp_flow_data_write(0x56500000, 0x0, 0x11, 000000000000000000000002110008)
vp_flow_data_write(0x56500000, 0x1, 0x111, 000000000000000000000002110008)
se_state_set(0xd0fe2a, 0x0, 0200000000110001) ovk_sif_netDriver_demux_add(0x100f, 0x11)
)";
constexpr char trunk_enters[] = R"(
port_ingress_options_set(0x11, 010100000100000000000000000000000000000001010000)
port_ingress_parsing_options_set(0x11, 808182010185868788898a8b018d8e8f) unknown_multicast_set(0x11, 0xc9)
switch_acl_port_cfg_set(0x11, ) switch_acl_build()
destination_vps_set(0x7, 0x400040, 0x0) source_port_vps_set(0x11, 0x40, 0x0)
port_learn_attrs_set(0x11, 0x1, 80818283840101010001)
port_attrs_set(0x11, 808182838485868788898a018c8d8e8f009192933e000000)
port_attrs_set(0x11, 808182838485868788898a018c8d8e8f019192933e000000) port_ingress_vlan_set(0x11, 0xfff, 0x1))";
constexpr char routed_enters[] = R"(
port_ingress_options_set(0x11, 010100000000000000000000000000000000000001010000)
port_ingress_parsing_options_set(0x11, 808182010185868788898a8b018d8e8f) unknown_multicast_set(0x11, 0xc9)
switch_acl_port_cfg_set(0x11, ) switch_acl_build()
port_learn_attrs_set(0x11, 0x0, 80818283840101010001)
port_attrs_set(0x11, 808182838485868788898a018c8d8e8f009192933e000000)
port_attrs_set(0x11, 808182838485868788898a018c8d8e8f009192933e000000) port_ingress_vlan_set(0x11, 0xfff, 0x1))";

constexpr char delete_steps[] = R"(nvm_free(32768) ovk_sys_interface_id_free(NS)
ptn_unlearn(Map_Input_Port_NameSpace_Id, 0x06/8, 0x8, function No_NS_Id_for_port)
ptn_unlearn(Map_Output_Port_NameSpace_Id, 0x11/8, 0x8, function No_NS_Id_for_port) MODE
ptn_unlearn(Convert_DestMapIndex_To_Output_Port, 0x07/6, 0x6, value 0x0)
ptn_unlearn(Map_Intf_NameSpace_Id, 0x00011/20, 0x14, function No_NS_Id_for_sub_interface)
ptn_unlearn(Map_NameSpace_Intf_Id, NS/24, 0x18, function Unknown_NS_Id)
vp_flow_data_write(0x56500000, 0x0, 0x11, ) vp_flow_data_write(0x56500000, 0x1, 0x111, )
se_state_set(0x11, 0x0, 0000000000000000) port_enable_set(0x11, 0x0, 0x1) port_enable_set(0x11, 0x0, 0x0)
ptn_unlearn(Validate_destMAC, 0x11ffffffffffff/56, 0x38, value 0x0)
ptn_unlearn(Validate_destMAC, 0x11020000000011/56, 0x38, value 0x0)
ptn_unlearn(Lookup_destMAC, 0x020000000011/48, 0x30, value 0x0)
ptn_otreeset_clear(Ethernet_Association, [0x11/8]) ptn_otreeset_build(Ethernet_Association, [0x11/8]) LAST
ovk_sif_netDriver_demux_remove(0x100f, 0x11) nvm_free(record)
)";
constexpr char trunk_leaves[] = R"(destination_vps_set(0x7, 0x0, 0x0) source_port_vps_set(0x11, 0x0, 0x0)
port_learn_attrs_set(0x11, 0x0, 80818283840101010001)
port_attrs_set(0x11, 808182838485868788898a018c8d8e8f019192933e000000)
port_attrs_set(0x11, 808182838485868788898a018c8d8e8f009192933e000000)
port_ingress_options_set(0x11, 000100000000000000000000000000000000000001010000)
port_ingress_vlan_rem(0x11, 0xfff))";
constexpr char routed_leaves[] = R"(
port_ingress_options_set(0x11, 000100000000000000000000000000000000000001010000)
port_ingress_vlan_rem(0x11, 0xfff))";
constexpr char static_leaves[] =
    "ptn_unlearn(Lookup_Static_Port_Map_Tree, 0x11/8, 0x8, function Ethernet_No_Static_Fwd)";

constexpr char in_service[] =
    "data NS 0x20#11|data NS 0x30#11|value 0x11|value NS|value 0x11|value 0x2|value 0x4|"
    "value 0x0|value 0x111|STATIC|function ovk_ethernet.No_Ethernet_Association|demux 1";

// What a deleted port leaves of itself; in braces what only one does that was in the switch.
constexpr char left_over[] =
    R"(port CHANNEL broadcast_filter = 0x0|port CHANNEL crc = append 0x1 check 0x0 strip 0x1{
port CHANNEL ingress_options = 000100000000000000000000000000000000000001010000}|port CHANNEL mac = 0200000000NN{
port CHANNEL parsing_options = 808182010185868788898a8b018d8e8f}|port CHANNEL qinq = 0x1|port CHANNEL tag_enable = 0x1
port CHANNEL tag_msb = TAG|port CHANNEL tagged_pipeline = "PIPELINE" 040404040404040404000000
port CHANNEL unicast_filter = 0x0|port CHANNEL unicast_mac[0] = 0200000000NN|port CHANNEL unicast_mac[1] = 0200000000NN
port CHANNEL unicast_mac[2] = 0200000000NN|port CHANNEL untagged_pipeline = "PIPELINE" 000000000000000004000000
state STATE = 0200000000NN0001{|switch_port CHANNEL acl = ACL|switch_port CHANNEL acl_in_force = ACL
switch_port CHANNEL bridge_attrs = 808182838485868788898a018c8d8e8f009192933e000000
switch_port CHANNEL learn_attrs = 80818283840101010001}|switch_port CHANNEL logical_port = INDEX{
switch_port CHANNEL unknown_multicast = 0xc9})";

TEST_F(Interface, EachModeHasItsSteps)
{
    const std::string none = "function ovk_ethernet.Ethernet_No_Static_Fwd";
    const struct {
        u32 mode;
        std::string partner, enters, leaves, leaves_last;
    } rows[] = {{access_mode, none, "", "", ""},
                {trunk, none, trunk_enters, trunk_leaves, ""},
                {tunnel, none, "", "", ""},
                {routed, none, routed_enters, routed_leaves, ""},
                {static_mode, "value 0x21", "", "", static_leaves}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.mode);
        start_over();
        ASSERT_EQ(ovk_ethernet_init(module()), 0u);
        port_ = nullptr;
        const char *const pipeline =
            row.mode == routed ? "ethernet_hsw_higher_layer_forward" : "ethernet_static_forwarding";
        const auto filled = [&](const std::string &text) {
            return replaced(replaced(text, "#", std::to_string(row.mode)), "PIPELINE", pipeline);
        };
        const std::string unknown = answers();
        ovk_ethernet_intf_attrs attrs = port_attrs(number, row.mode);
        attrs.output_rate = OVK_ETHERNET_SPEED_100M;
        attrs.full_duplex = 0;
        attrs.encap_type = OVK_ETHERNET_ENCAP_LLC_SNAP;
        ovk_eth_module_object &object = ovk::object_of(module());
        const auto set_keys = [&](u8 key) {
            for (ovk_eth_aggr_slot &slot : object.aggr_slots)
                slot.port_key_slot[6] = key;
        };
        const auto keys = [&] {
            return object.aggr_slots[0].port_key_slot[6] * 256u + object.aggr_slots[1].port_key_slot[6];
        };
        set_keys(0);
        EXPECT_EQ(steps_of([&] { return create(attrs); }),
                  apart(replaced(filled(create_steps), "MODE", row.enters)));
        handle owner = nullptr;
        EXPECT_EQ(ovk_ethernet_interface_handle_get(module(), number, &owner), 0u);
        EXPECT_EQ(owner, port_);
        const ovk_eth_phy_tail &phy = port_->phy;
        EXPECT_EQ(printed("%x %d, %u %u %u %u %u, %x %x, %u to %u", port_->if_guard,
                          port_->eth_handle == module(), phy.in_flow_filter, phy.out_flow_filter,
                          phy.spare_flag, phy.phy_spare_byte, phy.phy_spare_word, phy.vlan_eth_type[0],
                          phy.vlan_eth_type[1], phy.tag_start, phy.tag_stop),
                  "43217856 1, 1 1 0 1 1, 8100 8100, 12 to 16");
        EXPECT_EQ(keys(), 0xffffu);
        set_keys(3);
        EXPECT_EQ(ovk_eth_setup_static_port(module(), row.mode == static_mode ? 1 : 2, number, 0x21), 0u);
        EXPECT_EQ(named(answers()), filled(replaced(in_service, "STATIC", row.partner)));

        const std::string steps = replaced(delete_steps, "MODE", row.leaves);
        EXPECT_EQ(steps_of([&] { return remove(); }), apart(replaced(steps, "LAST", row.leaves_last)));
        EXPECT_EQ(answers(), unknown);
        EXPECT_EQ(keys(), 0x303u); // home keys stay, and so does the table's pointer
        EXPECT_NE(object.hsw_port_vlan_table[6], nullptr);
        EXPECT_EQ(ovk_ethernet_interface_handle_get(module(), number, &owner), 0x2000028u);
    }
}

TEST_F(Interface, SomePortsAndSomeHostsKeepTheirMac)
{
    const struct {
        u32 number, override;
        size_t speed, enable, statistics; // calls at create
        size_t disable;                   // and at delete
        std::string on;                   // receiver and transmitter
    } rows[] = {{0, 0, 0, 4, 1, 4, "1 1"},
                {1, 0, 2, 3, 1, 3, "0 1"},
                {0x13, 0x100, 2, 3, 1, 3, "1 0"},
                {0x70, 0x101, 0, 0, 0, 0, "0 0"}};
    std::vector<u8> cleared(300, 0xee);
    std::fill_n(cleared.begin(), 256, 0);
    sim::journal_on(true);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.number);
        const u32 channel = *sim::channel_of(row.number);
        u32 id = 0; // of counters, the one that comes next
        EXPECT_EQ(ovk_sys_interface_id_alloc(host().parent(), &id), 0u);
        EXPECT_EQ(ovk_sys_interface_id_free(host().parent(), id), 0u);
        sim::state_put(host().rte(), id, 0, std::vector<u8>(300, 0xee));
        sim::mac_counters_set(host().rte(), channel, {7}, {8});
        EXPECT_EQ(ovk_ethernet_port_attributes_override(module(), row.override), 0u);
        ovk_ethernet_intf_attrs attrs = port_attrs(row.number, access_mode);
        attrs.output_rate *= row.statistics; // 0: none
        for (u8 octet = 1; octet < 5; octet++)
            attrs.src_mac[octet] = 0xa0 + octet;
        attrs.autoneg = row.number != 0 ? 1 : 0;
        attrs.rx_enable = row.number != 1;
        attrs.tx_enable = row.number != 0x13;

        const auto calls = [](const char *prefix) { return sim::journal::ops(prefix).size(); };
        sim::journal::clear();
        const std::string text = told(0x20, [&] { return create(attrs); });
        EXPECT_EQ(text.find("Enabling Auto-neg") != std::string::npos, row.speed != 0) << text;
        const u8 low = static_cast<u8>(row.number);
        const std::vector<u8> data =
            sim::flow_data(host().rte(), "tvu_ethernet_egress_encap_ipv4", 0, row.number);
        EXPECT_EQ(std::vector<u8>(data.begin() + 8, data.begin() + 16),
                  (std::vector<u8>{0xa3, 0xa2, 0xa1, 0x02, low, 0xa4, 8, 0}));
        EXPECT_EQ(sim::state(host().rte(), 0xd0fe19 + row.number, 8),
                  (std::vector<u8>{0x02, 0xa1, 0xa2, 0xa3, 0xa4, low, 0, 0}));
        EXPECT_EQ(calls("kor_mac_speed"), row.speed);
        EXPECT_EQ(calls("kor_gatr_port_enable"), row.enable);
        EXPECT_EQ(calls("kor_gatr_mac_addr_set"), 1u);
        EXPECT_EQ(
            printed("%u %u", sim::port(host().rte(), channel).rx, sim::port(host().rte(), channel).tx),
            row.on);
        EXPECT_EQ(sim::port(host().rte(), channel).rx_counters[0], row.statistics != 0 ? 0u : 8u);
        EXPECT_EQ(sim::state(host().rte(), id, 300), cleared);
        EXPECT_EQ(remove(), 0u);
        EXPECT_EQ(calls("kor_gatr_port_enable"), row.enable + row.disable);
    }
}

TEST_F(Interface, DeletedPortsLeaveTheirSettingsInAdapterAndSwitch)
{
    const std::string acl = numbered(
        100, {{56, 1}, {57, 0}, {58, 0}, {59, 0}, {60, 1}, {61, 0}, {62, 0}, {63, 0}, {98, 3}, {99, 0}});
    Lines expected = {"+ port XGMAC16 speed = 0x3"}; // the one 10G channel that another port is on
    u32 index = 0;
    for (const u32 port : {0x00u, 0x01u, 0x02u, 0x03u, 0x04u, 0x10u, 0x11u, 0x12u, 0x13u, 0x14u, 0x20u,
                           0x21u, 0x30u, 0x31u, 0x40u, 0x41u, 0x50u, 0x51u, 0x60u, 0x61u, 0x70u, 0x71u}) {
        const u32 mode = 1 + port % 5;
        std::string left =
            replaced(left_over, mode == trunk || mode == routed ? "[{}]" : "\\{[^}]*\\}", "");
        for (const auto &[name, value] : std::initializer_list<std::pair<const char *, std::string>>{
                 {"CHANNEL", sim::channel_name(*sim::channel_of(port))},
                 {"NN", printed("%02x", port)},
                 {"TAG", printed("0x%x", port << 8 | index)},
                 {"INDEX", printed("0x%x", index)},
                 {"STATE", printed("0x%x", 0xd0fe19 + port)},
                 {"ACL", acl},
                 {"PIPELINE",
                  mode == routed ? "ethernet_hsw_higher_layer_forward" : "ethernet_static_forwarding"}})
            left = replaced(left, name, value);
        std::istringstream facts(replaced(left, "\\|", "\n"));
        for (std::string fact; std::getline(facts, fact);)
            if (fact != "port XGMAC0 tag_msb = 0x0") // as before
                expected.push_back("+ " + fact);
        index++;
    }
    std::ranges::sort(expected);
    const auto text_of = [](const Lines &lines) {
        std::string text;
        for (const std::string &line : lines)
            text += line + '\n';
        return text;
    };

    const std::string before = host().image();
    const size_t memory = sim::heap::live_bytes();
    for (u32 round = 0; round < 2; round++) {
        std::vector<handle> ports;
        for (u32 port = 0; port < 0x80; port++) {
            ovk_ethernet_intf_attrs attrs = port_attrs(port, 1 + port % 5);
            attrs.encap_type = OVK_ETHERNET_ENCAP_LLC_SNAP;
            if (create(attrs) == 0)
                ports.push_back(port_);
        }
        EXPECT_EQ(sim::ids_in_use(host().rte(), "interface_ids").size(), 22u);
        for (handle port : ports)
            EXPECT_EQ(ovk_ethernet_interface_delete(module(), port), 0u);
        EXPECT_EQ(sim::heap::live_bytes(), memory);
        EXPECT_EQ(sim::image_diff(text_of(expected), text_of(changes_since(before))), Lines{});
    }
}

TEST_F(Interface, TellsOfIdsAndOfTheAdapter)
{
    EXPECT_EQ(ovk_ethernet_port_attributes_override(module(), 1), 0u);
    const std::string text = told(0x2f, [&] { return create(port_attrs(number, access_mode)) + remove(); });
    EXPECT_EQ(named(replaced(text, " MAC Channel KOR_GMAC17\n", "\n")),
              R"(info] Assigned internal interface ID 0x0011
info] Allocated Stats NS ID NS for if_num 0x0011
hw] Configuring TAG MSB with 4358 for
hw] Configuring tag_msb(0x1106), start(12)/stop(16) offset for
hw] Configuring the default virtual pipeline ethernet_static_forwarding
hw] Configuring MAC Channel KOR_GMAC17 with VLAN ethType 0x8100 & 0x8100
hw] Enabling Q-in-Q for
hw] Enabling Append-good-CRC and strip-CRC for
hw] Disabling Unicast filtering for
hw] Disabling broadcast filtering for
hw] Setting srcMAC 02-00-00-00-00-11 of
hw] Adding MAC addresses 02-00-00-00-00-11, 02-00-00-00-00-11, 02-00-00-00-00-11 in the Unicast Filter operating )"
              R"(in Promiscuous mode for
info] Created Interface HANDLE
info] Freed Stats NS ID NS for the interface 17
info] Deleted interface HANDLE
)");
}

TEST_F(Interface, RefusalsChangeNothing)
{
    const ovk_ethernet_intf_attrs attrs = port_attrs(number, trunk);
    const handle untouched = reinterpret_cast<handle>(4);
    port_ = untouched;
    expect([&] { return ovk_ethernet_interface_create(module(), nullptr, nullptr); }, 8,
           "Null Interface Attribute Pointer");
    EXPECT_EQ(port_, untouched);
    expect([&] { return ovk_ethernet_interface_create(module(), &attrs, nullptr); }, 8,
           "Null Interface Handle Pointer");

    const handle first = make_port(module(), number, trunk);
    HandMadeAggregate aggr(module(), 0, trunk, {first});
    ovk_eth_intf vlan = live_record(INTERFACE_TYPE_VLAN), impostor = *first;
    const std::string before = host().image();
    const auto refuse = [&](handle of, u32 status, const std::string &cause) {
        expect([&] { return ovk_ethernet_interface_delete(module(), of); }, status,
               cause + "|Failed to delete interface " + hex(of));
    };
    expect([&] { return create(attrs); }, 0x2000027,
           "Interface handle for specified port already exsits: " + hex(first) +
               "|Failed to create interface");
    EXPECT_EQ(port_, nullptr);
    ovk_ethernet_intf_attrs bad = attrs;
    bad.encap_type = 0;
    EXPECT_EQ(create(bad), 0x2000017u); // before it is seen that the port is in service
    refuse(nullptr, 0x2000003, "Invalid Interface handle 0x00000000");
    refuse(&vlan, 0x200001e, "Incompatible Interface type INTERFACE_TYPE_VLAN");
    refuse(aggr.handle(), 0x200001e, "Incompatible Interface type INTERFACE_TYPE_AGGR");
    refuse(&impostor, 0x2000025, "Invalid state for Interface " + hex(&impostor));
    EXPECT_EQ(host().image(), before);

    EXPECT_EQ(ovk_ethernet_interface_delete(module(), first), 0u); // a member goes like any other
    refuse(first, 0x2000003, "Invalid Interface handle " + hex(first));
    EXPECT_EQ(first->if_guard, 0u);
    EXPECT_EQ(first->eth_handle, nullptr);
    EXPECT_EQ(create(attrs), 0u);
}

TEST_F(Interface, FailedCreateTakesBackTheRecordAlone)
{
    sim::faults::fail("ovk_sif_netDriver_demux_add");
    EXPECT_EQ(create(port_attrs(number, trunk)), sim::status_injected);
    EXPECT_EQ(sim::heap::live_sizes()[sizeof(ovk_eth_intf)], 0u);
    EXPECT_EQ(sim::heap::live_sizes()[4096 * sizeof(ovk_eth_vlan_entry)], 1u);
    EXPECT_EQ(sim::ids_in_use(host().rte(), "interface_ids").size(), 1u);
    EXPECT_EQ(answer("Lookup_destMAC", {{0x020000000011, 48}}), "value 0x111");
    EXPECT_EQ(sim::port(host().rte(), number).tx, 1u);
    sim::faults::fail("ovk_sif_netDriver_demux_add");
    sim::faults::fail("kor_sem_post"); // whose status hides the first
    EXPECT_EQ(create(port_attrs(number, trunk)), 0x100A5u);
    EXPECT_EQ(port_, nullptr);
    EXPECT_EQ(kor_sem_post(host().lock()), 0u);
}

TEST_F(Interface, FailedDeleteStopsAndKeepsTheRecord)
{
    u32 port = number;
    for (const auto &[fault, tx] : {std::pair{"ovk_sys_interface_id_free", 1u},
                                    {"ovk_sif_netDriver_demux_remove", 0u},
                                    {"kor_gatr_port_enable_set", 0u}}) { // the receiver's
        EXPECT_EQ(create(port_attrs(port, trunk)), 0u);
        sim::faults::fail(fault);
        EXPECT_EQ(remove(), sim::status_injected);
        EXPECT_EQ(ovk::object_of(module()).port_owner_table[port], port_);
        EXPECT_EQ(sim::port(host().rte(), port++).tx, tx) << fault;
    }
    EXPECT_EQ(create(port_attrs(0x14, trunk)), 0u);
    sim::faults::fail_always("kor_gatr_port_enable_set");
    EXPECT_EQ(remove(), 2 * sim::status_injected);
    sim::faults::clear();
    EXPECT_EQ(sim::misuse(), Lines{});
    EXPECT_EQ(ovk_ethernet_vlan_id_add(module(), port_, 7, 5), 0u); // into the table that is freed
    EXPECT_TRUE(sim::misuse().at(0).ends_with("was written after it was freed"));
    sim::misuse_clear();
}

TEST_F(Interface, WritersTakePrefixesAggregatesAndTwoPipelines)
{
    const auto received = [&](u64 mac) { return answer("Validate_destMAC", {{0x21, 8}, {mac, 48}}); };
    EXPECT_EQ(ovk_eth_recv_mac(module(), 1, 0x21, {{0x01, 0x5f, 0xff}, 12}, 2), 0u); // 01-5
    EXPECT_EQ(ovk_eth_recv_mac(module(), 1, 0x21, {{0x01, 0x5f, 0xff}, 0}, 4), 0u);
    EXPECT_EQ(received(0x015000000000) + received(0x015fffffffff), "value 0x2value 0x2");
    EXPECT_EQ(received(0x014fffffffff) + received(0x016000000000), "value 0x4value 0x4");
    const u8 mac[6] = {0x02};
    EXPECT_EQ(ovk_eth_mac_addr(module(), 1, mac, 0), 0u);
    EXPECT_EQ(answer("Lookup_destMAC", {{0x020000000000, 48}}), "value 0x100"); // port 0 isn't none

    for (const u32 index : {21u, 22u, 0xffu}) {
        EXPECT_EQ(ovk_eth_link_tag_msb(module(), 0x70, index, nullptr, nullptr), 0u);
        EXPECT_EQ(sim::port(host().rte(), 0x70).tag.msb, 0x7000 | index);
        EXPECT_EQ(sim::switch_port(host().rte(), 0x70).logical_port, 21u);
    }
    const char *const one = "ethernet_static_forwarding", *const other =
                                                              "ethernet_hsw_higher_layer_forward";
    const auto pipelines = [&](auto set, const char *untagged, const char *tagged) {
        EXPECT_EQ(set(module(), 0x70, untagged, tagged), 0u);
        const auto &[first, second] = sim::port(host().rte(), 0x70).pipelines;
        return first.name + ' ' + second.name;
    };
    for (const auto set : {ovk_eth_if_owner, ovk_eth_set_gatr_port_vp}) {
        EXPECT_EQ(pipelines(set, one, other), printed("%s %s", one, other));
        EXPECT_EQ(pipelines(set, other, nullptr), printed("%s %s", other, other));
    }
}

} // namespace
