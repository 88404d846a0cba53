// SPDX-License-Identifier: Apache-2.0
#include "support.h"

#include "ovk_eth_helper/handle_list.h"
#include "ovk_eth_helper/identifiers.h"
#include "ovk_eth_helper/interface.h"
#include "ovk_eth_hw/port_rules.h"

namespace {

using namespace test;

using Identifiers = ModuleTest;
using InterfaceChecks = ModuleTest;

TEST_F(Identifiers, PortsAndSwitchIndicesAreEachOthersReverse)
{
    u32 ports = 0;
    for (u32 number = 0; number < 0x200; number++)
        if (const u32 index = ovk_eth_create_hsw_if_id(number)) { // not port 0, and not what is no port
            EXPECT_EQ(ovk_eth_create_port_id(index), number);
            EXPECT_EQ(index, ++ports);
        }
    EXPECT_EQ(ports, 21u);
    EXPECT_EQ(ovk_eth_create_hsw_if_id(0x11), 6u);
    for (const u32 index : {0u, 22u, 0xffu})
        EXPECT_EQ(ovk_eth_create_port_id(index), 0u);
}

TEST_F(Identifiers, TellTheKindInTheirLowByte)
{
    EXPECT_EQ(ovk_eth_create_if_id(0x171), 0x71u);
    EXPECT_EQ(ovk_eth_create_subif_id(0x21, 100), 0x6421u);
    EXPECT_EQ(ovk_eth_create_subif_id(0xabc80, 0xffff), 0xfff80u);
    EXPECT_EQ(ovk_eth_create_virtual_if_id(3), 0x30eu);
    EXPECT_EQ(ovk_eth_create_virtual_if_id(0x1fff), 0xfff0eu);
    EXPECT_EQ(ovk_eth_get_virtual_if_ns_id(0x30e), 3u);
    EXPECT_EQ(ovk_eth_get_virtual_if_ns_id(0x7fff0e), 0xfffu);
    EXPECT_EQ(ovk_eth_create_aggr_if_id(1), 0x81u);
    EXPECT_EQ(ovk_eth_create_aggr_if_id(0xffff), 0x7fu);
}

TEST_F(Identifiers, MapsTieIdsTogetherUntilTheyAreRemoved)
{
    using map = u32 (*)(ovk_module *, u32, u32, u32);
    const auto check = [&](map write, const char *of, u32 key, u32 value, sim::Field field) {
        SCOPED_TRACE(of);
        const auto add = [&] { return write(module(), 1, key, value); };
        const std::string none = answer(of, {field});
        EXPECT_EQ(add(), 0u);
        EXPECT_EQ(answer(of, {field}), printed("value 0x%x", value));
        EXPECT_EQ(write(module(), 2, key, value), 0u);
        EXPECT_EQ(answer(of, {field}), none);
        sim::faults::fail("ovk_ptn_extend");
        expect(add, sim::status_injected, "Could not build the input pattern");
        sim::faults::fail("kor_ptn_learn");
        expect(add, 64,
               "RTE Error: injected fault, Failed to learn the input pattern|Failed to update LPM Tree");
    };
    check(ovk_eth_map_subif_ns_id, "Map_Intf_NameSpace_Id", 0x46421, 0x5abcd, {0x46421, 20});
    check(ovk_eth_map_ns_intf_id, "Map_NameSpace_Intf_Id", 0x15abcd, 0x6421, {0x15abcd, 24});
    check(ovk_eth_map_tvu_lagid_to_hsw_lagid, "Tvu_Lag_Id_to_Hsw_Lag_Id", 0x81, 6, {0x81, 8});
    check(ovk_eth_map_dest_map_index_to_mac_or_lag_id, "Convert_DestMapIndex_To_Output_Port", 21, 0x71,
          {22, 6});
}

TEST_F(InterfaceChecks, KindAndModeDecide)
{
    const u32 bad_handle = 0x2000003, bad_type = 0x200001e, bad_mode = 0x2000022;
    struct row {
        ovk_eth_intf intf;
        u32 get, mode; // status, and the mode that it gives
        u32 routed, switched;
    };
    std::vector<row> rows = {{{}, bad_handle, 99, bad_handle, bad_handle},
                             {live_record(INTERFACE_TYPE_VLAN), 0, 4, 0, bad_type},
                             {live_record(INTERFACE_TYPE_SWITCH_VIRTUAL), 0, 4, 0, bad_type},
                             {live_record(77), bad_type, 99, 0, bad_type}};
    for (const u32 type : {INTERFACE_TYPE_PHY, INTERFACE_TYPE_AGGR})
        for (u32 mode = 0; mode <= 6; mode++)
            rows.push_back({live_record(type, mode), 0, mode, mode == 4 ? 0 : bad_mode,
                            mode >= 1 && mode <= 3 ? 0 : bad_mode});
    for (row &given : rows) {
        SCOPED_TRACE(printed("kind %u mode %u", given.intf.if_type, given.mode));
        u32 type = 99, mode = 99;
        EXPECT_EQ(ovk_eth_get_if_type_mode(module(), &given.intf, &type, &mode), given.get);
        EXPECT_EQ(type, given.get == bad_handle ? 99 : given.intf.if_type); // also of a kind refused
        EXPECT_EQ(mode, given.mode);
        EXPECT_EQ(ovk_eth_is_routed_intf(module(), &given.intf), given.routed);
        EXPECT_EQ(ovk_eth_assert_switch_port(module(), &given.intf), given.switched);
    }
    expect([&] { return ovk_eth_is_routed_intf(module(), nullptr); }, bad_handle,
           "Invalid Interface handle 0x00000000");
    expect([&] { return ovk_eth_assert_switch_port(module(), &rows[1].intf); }, bad_type,
           "Incompatible Interface type INTERFACE_TYPE_VLAN");
    expect([&] { return ovk_eth_is_routed_intf(module(), &rows[6].intf); }, bad_mode,
           "Incompatible Intf forwarding mode OVK_ETHERNET_FWD_MODE_SWITCH_TRUNK");
}

// Attributes with everything wrong are put right one by one: what is refused next shows the order.
template <class Attrs>
struct repair {
    u32 status;
    std::string message;
    void (*put_right)(Attrs &);
};

TEST_F(InterfaceChecks, PortAttributesAreCheckedInOrder)
{
    using attrs = ovk_ethernet_intf_attrs;
    const std::string xgmac = "Incompatible duplex/autoneg setting for port configured as XGMAC port";
    const std::string encap = "Invalid encapsulation type OVK_ETHERNET_ENCAP_";
    const std::string mac = "Source MAC address 03-1b-19-a0-b1-c2 must not be multicast";
    const repair<attrs> rows[] = {
        {0x2000006, "Invalid port number 130", [](attrs &a) { a.if_num = 0x71; }},
        {0x2000019, "Unsupported Forwarding Mode 6", [](attrs &a) { a.fwd_mode = 0; }},
        {0x2000019, "Unsupported Forwarding Mode 0", [](attrs &a) { a.fwd_mode = 1; }},
        {0x2000013, "Invalid output rate UNKNOWN_RATE", [](attrs &a) { a.output_rate = 0; }},
        {0x2000013, "Invalid output rate UNKNOWN_RATE", [](attrs &a) { a.output_rate = 5; }},
        {0x2000017, encap + "MAX", [](attrs &a) { a.encap_type = 0; }},
        {0x2000017, encap + "INVALID", [](attrs &a) { a.encap_type = 2; }},
        {0x200000d, mac, [](attrs &a) { a.src_mac[0] = 2; }},
        {0x200001d, xgmac, [](attrs &a) { a.full_duplex = 1; }},
        {0x200001d, xgmac, [](attrs &a) { a.autoneg = 2; }},
    };
    attrs given = {0x82, 6, 6, 1, 1, 2, 1, {0x03, 0x1b, 0x19, 0xa0, 0xb1, 0xc2}, 3};
    handle port = nullptr;
    const auto create = [&] { return ovk_ethernet_interface_create(module(), &given, &port); };
    const std::string before = host().image();
    for (const auto &[status, message, put_right] : rows) {
        port = reinterpret_cast<handle>(4);
        expect(create, status, message + "|Failed to create interface");
        EXPECT_EQ(port, nullptr);
        put_right(given);
    }
    for (const u32 number : {5u, 8u, 0xfu, 0x15u, 0x22u, 0x72u, 0x80u, 0x100u, 0x111u}) {
        given.if_num = number;
        EXPECT_EQ(create(), 0x2000006u) << number;
    }
    EXPECT_EQ(host().image(), before);
    given.if_num = 0x71;
    EXPECT_EQ(create(), 0u);

    // A host that owns the MACs leaves their attributes open.
    EXPECT_EQ(ovk_ethernet_port_attributes_override(module(), 1), 0u);
    for (const u32 rate : {0u, 5u, 9u}) {
        given = {0x21, 1, rate, 1, 1, 0, 1, {2}, 1};
        EXPECT_EQ(ovk_eth_valid_intf_attrs(module(), &given), 0u) << rate;
    }
    given.src_mac[0] = 1;
    EXPECT_EQ(create(), 0x200000du);
}

TEST_F(InterfaceChecks, AggregateAttributesAreCheckedInOrder)
{
    using attrs = ovk_ethernet_aggr_intf_attrs;
    const std::string mac = "Source MAC address ff-ff-ff-ff-ff-ff must not be multicast";
    const std::string encap = "Invalid encapsulation type OVK_ETHERNET_ENCAP_UNKNOWN";
    const std::string mode = "Invalid Forwarding Mode OVK_ETHERNET_FWD_MODE_";
    const std::string qos = "Invalid qos mode for aggregated link ";
    const repair<attrs> rows[] = {
        {0x2000019, mode + "MAX", [](attrs &a) { a.fwd_mode = 0; }},
        {0x2000019, mode + "INVALID", [](attrs &a) { a.fwd_mode = 5; }},
        {0x2000017, encap, [](attrs &a) { a.encap_type = 1; }},
        {0x200000d, mac, [](attrs &a) { a.src_mac[0] = 0xfe; }},
        {0x2000018, qos, [](attrs &a) { a.qos_mode = 3; }},
        {0x2000018, qos, [](attrs &a) { a.qos_mode = 1; }},
    };
    attrs given = {{0xff, 0xff, 0xff, 0xff, 0xff, 0xff}, 9, 6, 0};
    const auto check = [&] { return ovk_eth_valid_aggr_intf_attrs(module(), &given); };
    for (const auto &[status, message, put_right] : rows) {
        expect(check, status, message);
        put_right(given);
    }
    EXPECT_EQ(check(), 0u);
    given = {{2}, 2, 1, 2};
    EXPECT_EQ(check(), 0u);
}

TEST_F(InterfaceChecks, HandleListIsPackedAndHolds1024)
{
    const ovk_eth_module_object &object = ovk::object_of(module());
    std::vector<ovk_eth_intf> intfs(1025);
    const auto add = [&](u32 index) { return ovk_eth_if_handle_list_add(module(), &intfs[index]); };
    const auto find = [&](u32 index) { return ovk_eth_if_handle_list_find(module(), &intfs[index]); };
    const auto remove = [&](u32 index) { return ovk_eth_if_handle_list_rem(module(), &intfs[index]); };

    EXPECT_EQ(find(0), 0u);
    expect([&] { return remove(0); }, 1, "Cannot find the interface handle to be removed");
    for (u32 index = 0; index < 1024; index++)
        EXPECT_EQ(add(index), 0u);
    expect([&] { return add(1024); }, 7,
           "Cannot add any more interfaces.Reached the maximum number of 1024 interfaces");
    EXPECT_EQ(find(1024), 0u);
    EXPECT_EQ(remove(5), 0u);
    EXPECT_EQ(object.if_handles[5], &intfs[1023]); // the last one moved into the hole
    EXPECT_EQ(object.if_handles[1023], nullptr);
    EXPECT_EQ(find(1023), 1u);
    expect([&] { return remove(5); }, 1, "Cannot find the interface handle to be removed");
    EXPECT_EQ(add(7), 0u); // a second time
    EXPECT_EQ(remove(7), 0u);
    EXPECT_EQ(find(7), 1u);
}

TEST_F(Identifiers, GettersAnswer)
{
    const handle port = make_port(module(), 0x21, 1);
    HandMadeAggregate aggr(module(), 1, 2, {});
    u32 number = 0, id = 0;
    handle owner = nullptr;
    const std::string lines = told(15, [&] {
        return ovk_ethernet_port_number_get(module(), port, &number) +
               ovk_ethernet_interface_id_get(module(), aggr.handle(), &id) +
               ovk_ethernet_interface_handle_get(module(), 0x81, &owner);
    });
    EXPECT_EQ(number, 0x21u);
    EXPECT_EQ(id, 0x81u);
    EXPECT_EQ(owner, aggr.handle());
    const std::string of_aggr = hex(aggr.handle());
    EXPECT_EQ(lines, "info] Retrieved the port number 33 for Interface handle " + hex(port) +
                         "\ninfo] Retrieved Interface ID 0x81 for interface handle " + of_aggr +
                         "\ninfo] Retrieved the Interface handle " + of_aggr + " for port 129\n");
}

TEST_F(Identifiers, GettersRefuseAndZeroWhatTheyWouldHaveGiven)
{
    ovk_eth_intf vlan = live_record(INTERFACE_TYPE_VLAN), dead = {};
    u32 word = 0;
    const auto port = ovk_ethernet_port_number_get, id = ovk_ethernet_interface_id_get;
    const auto refuse = [&](auto get, handle of, u32 *out, u32 status, const std::string &cause) {
        const std::string operation =
            get == port ? "|Failed to get the port number for interface handle " + hex(of)
                        : "|Failed to retrieve Interface ID for interface handle " + hex(of) + '&';
        word = 99;
        expect([&] { return get(module(), of, out); }, status, cause + operation);
        return word;
    };
    for (const auto get : {port, id}) {
        EXPECT_EQ(refuse(get, &dead, &word, 0x2000003, "Invalid Interface handle " + hex(&dead)), 0u);
        EXPECT_EQ(refuse(get, nullptr, nullptr, 0x2000003, "Invalid Interface handle 0x00000000"), 99u);
    }
    EXPECT_EQ(refuse(port, &vlan, nullptr, 8, "Null parameter pointer"), 99u);
    EXPECT_EQ(refuse(id, &vlan, nullptr, 8, "Null Interface ID pointer"), 99u);
    EXPECT_EQ(refuse(port, &vlan, &word, 0x200001e,
                     "Incompatible Interface type INTERFACE_TYPE_VLAN. Must be INTERFACE_TYPE_PHY"),
              0u);
    const auto no_owner = [&](u32 number, u32 status, const char *cause) {
        handle owner = &vlan;
        expect([&] { return ovk_ethernet_interface_handle_get(module(), number, &owner); }, status,
               printed(cause, number) + printed("|Failed to get the interface handle for port %u", number));
        EXPECT_EQ(owner, nullptr);
    };
    no_owner(0x15, 0x2000006, "Invalid port number %u");
    no_owner(0x82, 0x2000006, "Invalid port number %u");
    no_owner(0x80, 0x2000028, "Interface handle for port %u does not exist");
    no_owner(0x20, 0x2000028, "Interface handle for port %u does not exist");
    expect([&] { return ovk_ethernet_interface_handle_get(module(), 0x99, nullptr); }, 8,
           "Null Interface Handle Pointer|Failed to get the interface handle for port 153");
}

} // namespace
