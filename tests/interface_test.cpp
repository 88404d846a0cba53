// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include "ovk_eth_hw/port_rules.h"
#include "ovk_eth_hw/port_setup.h"

namespace {

using handle = ovk_ethernet_if_handle;
using test::hex;
using test::Lines;
using test::printed;

constexpr u32 number = 0x11; // index 6 in the switch
constexpr u32 access_mode = OVK_ETHERNET_FWD_MODE_SWITCH_ACCESS;
constexpr u32 trunk = OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK;
constexpr u32 tunnel = OVK_ETHERNET_FWD_MODE_SWITCH_TUNNEL;
constexpr u32 routed = OVK_ETHERNET_FWD_MODE_HIGHER_LAYER;
constexpr u32 static_mode = OVK_ETHERNET_FWD_MODE_STATIC;

std::string replaced(const std::string &text, const std::string &pattern, const std::string &by)
{
    return std::regex_replace(text, std::regex(pattern), by);
}

class Interface : public test::ModuleTest {
  protected:
    u32 create(const ovk_ethernet_intf_attrs &attrs)
    {
        return ovk_ethernet_interface_create(module(), &attrs, &port_);
    }
    u32 remove() { return ovk_ethernet_interface_delete(module(), port_); }
    template <class Call>
    void expect(Call call, u32 status, const std::string &messages)
    {
        test::expect_failure(module(), call, status, messages);
    }

    // With names for the id of the port's counters and for the size of its record.
    std::string named(const std::string &text)
    {
        const size_t size = sizeof(ovk_eth_intf);
        const std::string with_ns = replaced(text, printed("0x0?%x", port_->stats_ns_id), "NS");
        return replaced(with_ns, printed("0x%zx\\)|block \\d+ of %zu\\)", size, size), "record)");
    }
    // What a call does, but for patterns, locks and traces; long data is left out.
    template <class Call>
    std::string steps_of(Call call)
    {
        sim::journal_on(true);
        sim::journal::clear();
        EXPECT_EQ(call(), 0u);
        sim::journal_on(false);
        const std::string steps = test::steps("^(ovk_lttng|ovk_ptn|ovk_sys_sem|ovk_sys_mac|kor_sem)");
        return replaced(named(steps), "kor_(gatr_)?|ovk_ethernet\\.| w\\d+|block \\d+ of |[0-9a-f]{49,}", "");
    }
    std::string answer(const char *tree, const std::vector<sim::Field> &key)
    {
        return sim::action_text(host().rte(), sim::lookup(host().rte(), tree, key).action) + '\n';
    }
    // What the classifier finds for the port, for frames to it, to all, and to someone else.
    std::string answers()
    {
        const u64 own = 0x020000000011;
        const auto hit = sim::association_match(host().rte(), "Ethernet_Association", number,
                                                {{0x0800, 24}, {own, 48}, {1, 48}, {5, 12}, {1, 3}});
        const auto to_cpu = sim::demux(host().rte());
        return answer("Map_Input_Port_NameSpace_Id", {{6, 8}}) +
               answer("Map_Output_Port_NameSpace_Id", {{number, 8}}) +
               answer("Convert_DestMapIndex_To_Output_Port", {{7, 6}}) +
               answer("Map_Intf_NameSpace_Id", {{number, 20}}) +
               answer("Map_NameSpace_Intf_Id", {{port_ != nullptr ? port_->stats_ns_id : 0, 24}}) +
               answer("Validate_destMAC", {{number, 8}, {0xffffffffffff, 48}}) +
               answer("Validate_destMAC", {{number, 8}, {own, 48}}) +
               answer("Validate_destMAC", {{number, 8}, {own + 1, 48}}) +
               answer("Lookup_destMAC", {{own, 48}}) +
               (hit ? printed("association %u ", hit->index) + sim::action_text(host().rte(), hit->action) : "") +
               (to_cpu.contains(number) ? printed(" demux %d", to_cpu.at(number) == ovk::object_of(module()).cpu_entry_fn_id) : "");
    }
    // What the switch does with the port.
    std::string in_switch()
    {
        const sim::Port port = sim::port(host().rte(), 0x11);
        const sim::SwitchPort in = sim::switch_port(host().rte(), 0x11);
        return printed("rx %u tx %u mode %u bridging %u learn %u flood %u source %llx destination %llx router %zu",
                       port.rx, port.tx, port.ingress_options.hsw_mode, port.ingress_options.bridging, in.learn,
                       in.bridge_attrs.flooding, in.source_vps + 0ull,
                       sim::destination_vps(host().rte(), 7) + 0ull, port.vlans.count(4095));
    }

    handle port_ = nullptr;
};

// Each step on a line of its own.
std::string by_step(const std::string &text)
{
    return replaced(text, "\\)\\s+", ")\n");
}

constexpr char create_steps[] = R"(nvm_calloc(0x1, record) nvm_calloc(0x1000, 0x8)
ovk_sys_interface_id_alloc() se_state_set(NS, 0x0, ) mac_statistics_get(0x11, 0x1)
ptn_learn(Map_Input_Port_NameSpace_Id, 0x06/8, data NS 0x20#11)
ptn_learn(Map_Output_Port_NameSpace_Id, 0x11/8, data NS 0x30#11)
ptn_learn(Convert_DestMapIndex_To_Output_Port, 0x07/6, value 0x11)
ptn_learn(Map_Intf_NameSpace_Id, 0x00011/20, value NS) ptn_learn(Map_NameSpace_Intf_Id, NS/24, value 0x11)
tag_config_get(0x11) tag_config_set(0x11, 0x10, 0xc, 0x1106) tag_enable_set(0x11, 0x1)
switch_bridge_port_lport_set(0x11, 0x6)
port_vp_set(0x11, 0x0, "PIPELINE", 000000000000000004000000)
port_vp_set(0x11, 0x1, "PIPELINE", 040404040404040404000000)
qinq_set(0x11, 0x1) crc_set(0x11, 0x1, 0x0, 0x1)
unicast_filter_enable(0x11, 0x0) broadcast_filter_set(0x11, 0x0)
MODE
mac_speed_duplex_get(0x11) mac_speed_duplex_set(0x11, 0x2, 0x2)
mac_speed_duplex_get(0x11) mac_speed_duplex_set(0x11, 0x2, 0x1)
port_enable_get(0x11) port_enable_set(0x11, 0x1, 0x0) port_enable_get(0x11) port_enable_set(0x11, 0x1, 0x1)
mac_addr_set(0x11, 020000000011)
ptn_learn(Validate_destMAC, 0x11ffffffffffff/56, value 0x2)
ptn_learn(Validate_destMAC, 0x11020000000011/56, value 0x4)
unicast_filter_set(0x11, 0x0, 020000000011, 020000000011, 020000000011)
ptn_learn(Lookup_destMAC, 0x020000000011/48, value 0x111)
ptn_otreeset_append(Ethernet_Association, [0x11/8, no data l0, no data l0, no data l0, no data l0, no data l0],
function No_Ethernet_Association) ptn_otreeset_build(Ethernet_Association, [0x11/8])
vp_flow_data_write(0x56500000, 0x0, 0x11, 000000000000000000000002110008)
vp_flow_data_write(0x56500000, 0x1, 0x111, 000000000000000000000002110008)
se_state_set(0xd0fe2a, 0x0, 0200000000110001) ovk_sif_netDriver_demux_add(0x100f, 0x11)
)";

constexpr char enter_switch[] = R"(port_ingress_options_set(0x11, 01010000BRIDGE0000000000000000000000000000000001010000)
port_ingress_parsing_options_get(0x11) port_ingress_parsing_options_set(0x11, 808182010185868788898a8b018d8e8f)
switch_bridge_unknown_multicast_set(0x11, 0xc9)
switch_acl_port_cfg_get(0x11) switch_acl_port_cfg_set(0x11, ) switch_acl_build()
VPS
switch_bridge_port_learn_attrs_get(0x11) switch_bridge_port_learn_attrs_set(0x11, 0xON, 80818283840101010001)
switch_bridge_port_attrs_get(0x11)
switch_bridge_port_attrs_set(0x11, 808182838485868788898a018c8d8e8f009192933e000000)
switch_bridge_port_attrs_get(0x11)
switch_bridge_port_attrs_set(0x11, 808182838485868788898a018c8d8e8f0ON9192933e000000)
)";

}
