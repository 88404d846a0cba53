// SPDX-License-Identifier: Apache-2.0
// Counters: read through the library, fed through the simulator, where no frame ever passes.
#include "handlers.h"

#include <cstdio>
#include <cstring>

namespace shell {

namespace {

// The records' fields in order. A star marks one of 64 bits, where the others have 32.
constexpr const char *mac_counters =
    "tx_octets* tx_bad_octets* tx_frm* tx_bad_frm* tx_mcast* tx_bcast* tx_pause* tx_fcs* tx_defer* "
    "tx_xsdfr* "
    "tx_1col* tx_mcol* tx_lcol* tx_xscol* tx_frag* tx_usize* tx_64* tx_65* tx_128* tx_256* tx_512* "
    "tx_1024* "
    "tx_1519* tx_osize* tx_jab* tx_urun* tx_stat_ovfl* rx_octets* rx_bad_octets* rx_frm* rx_bad_frm* "
    "rx_mcast* rx_bcast* rx_ctl* rx_pause* rx_unk_op* rx_fcs* rx_align* rx_length* rx_code* rx_frag* "
    "rx_usize* rx_64* rx_65* rx_128* rx_256* rx_512* rx_1024* rx_1519* rx_osize* rx_jab* rx_drop* "
    "rx_carrier* rx_urun* rx_stat_ovfl*";
constexpr const char *interface_counters =
    "unnamed_0 unnamed_4 unnamed_8 unnamed_12 unnamed_16 unnamed_20 unnamed_24 rx_no_fwd_setup "
    "tx_encap_packets unnamed_36 tx_invalid_vlan rx_no_stag_mapping tx_no_configured_port "
    "tx_no_multicast_group rx_invalid_vlan rx_unsupported_802_3 rx_unknown_association "
    "rx_assocation_rule_drop rx_unknown_dmac raw_76 tx_mtu_failed tx_unresolved_arp "
    "tx_no_output_qos_policy "
    "raw_92 tx_no_binding_available rx_invalid_num_tags no_flow_id_defined unnamed_108 "
    "rx_tx_pdus_discarded "
    "raw_116 tx_policing_red_color source_mac_timer_expiries link_aggr_timer_expiries "
    "stp_state_port_disabled stp_filtered invalid_source_mac unknown_virtual_intf hsw_mac_learn_msgs "
    "hsw_mac_age_out_msgs hsw_mac_evicted_msgs no_bvi_encap_smac no_bvi_encap_proto loop_back_failure "
    "rx_unexpected_dest_mac rx_error_ucast* rx_error_mcast* rx_error_bcast* bad_length_pkts "
    "rx_802_3_pkts_not_supported ieee_802_3_dropped_bytes* rx_802_3_pkts_exception bvi_src_mac "
    "no_mirror_port hsw_error_pkts";
constexpr const char *module_counters =
    "packets_on_unknown_interface invalid_encap_type static_mac_entry_unknown cpu_path_params_unknown "
    "hash_operation_failures stopping_expired_timers number_of_hash_entries_added "
    "number_of_packets_sent_to_ph number_of_packets_sent_to_bdl packets_on_unknown_port "
    "number_of_packets_recd_from_bdl unknown_dmac_for_encap_flow no_link_found_in_aggregate "
    "unknown_interface_namespace_id cpu_flow_pkts_bound_to_ipv4 egress_time_index_allocation_failure "
    "tx_no_encap_flow_found tx_time_stamp_capture_not_configured port_mirroring_halted_due_to_bp "
    "time_stamp_allocation_requests time_stamp_free_requests time_stamp_successful_replies "
    "pakcet_capture_count";
constexpr const char *l2_counters =
    "rx_bytes* rx_ucast* rx_mcast_pkts* rx_bcast_pkts* rx_errors rx_unknown_proto rx_alignment "
    "rx_fcs_errors rx_too_long rx_mac_control rx_invalid_symbol rx_mac_errors rx_unknown_vlan rx_discards "
    "tx_bytes* tx_pkts* tx_mcast_pkts* tx_bcast_pkts*";

// How many bytes a record of such counters has.
constexpr std::size_t record_size(std::string_view list)
{
    std::size_t size = sizeof(u32);
    for (const char c : list)
        size += c == ' ' || c == '*' ? sizeof(u32) : 0;
    return size;
}
static_assert(record_size(mac_counters) == sizeof(ovk_eth_port_stats));
static_assert(record_size(interface_counters) == sizeof(ovk_eth_if_stats));
static_assert(record_size(module_counters) == sizeof(ovk_eth_global_stats));
static_assert(record_size(l2_counters) == sizeof(ovk_eth_l2_stats));

struct Field {
    std::string name;
    u32 offset;
    u32 size;
};

std::vector<Field> fields(const char *list)
{
    std::vector<Field> out;
    u32 offset = 0;
    for (std::string name : split(list)) {
        const bool wide = name.back() == '*';
        if (wide)
            name.pop_back();
        out.push_back({name, offset, wide ? 8U : 4U});
        offset += out.back().size;
    }
    return out;
}

std::optional<Field> find(const char *list, const std::string &name)
{
    for (const Field &field : fields(list)) {
        if (field.name == name)
            return field;
    }
    return std::nullopt;
}

// The counters of a record that aren't 0.
void print(const char *list, const void *record)
{
    Table table({"Counter", "Value"});
    for (const Field &field : fields(list)) {
        u64 value = 0;
        std::memcpy(&value, static_cast<const char *>(record) + field.offset, field.size);
        if (value)
            table.add({field.name, std::to_string(value)});
    }
    table.print("all counters are 0");
}

// A call that fills a record, with the numbers of some arguments behind it.
template <class Record, auto call, auto list, Label... numbers>
void counters_of(Session &s, const Arguments &a)
{
    Record stats{};
    if (s.call(call, interface_of(s, a), &stats, a.number(numbers.text)...) == 0)
        print(*list, &stats);
}

void counters_module(Session &s, const Arguments &)
{
    ovk_eth_global_stats stats{};
    if (s.call(&Calls::ovk_ethernet_global_statistics_get, &stats) == 0)
        print(module_counters, &stats);
}

// Where the classifier counts for a port, which it knows by its index in the switch.
std::optional<u32> counters_id(const Session &s, u32 channel)
{
    const auto index = sim::switch_port(s.host.rte(), channel).logical_port;
    const auto rule = sim::rule(s.host.rte(), "Map_Input_Port_NameSpace_Id", {{index.value_or(0), 8}});
    return index && rule ? std::optional<u32>(rule->w1) : std::nullopt;
}

ovk_eth_port_stats counted(const sim::Port &port)
{
    ovk_eth_port_stats out;
    std::memcpy(&out, port.tx_counters.data(), sizeof port.tx_counters);
    std::memcpy(&out.rx_octets, port.rx_counters.data(), sizeof port.rx_counters);
    return out;
}

// As MAC and classifier have them, the classifier's as far as they aren't 0.
void show_counters(Session &s, const Arguments &a)
{
    using Stats = ovk_eth_port_stats;
    constexpr struct {
        const char *name;
        u64 Stats::*received, Stats::*sent;
    } rows[] = {
        {"Octets", &Stats::rx_octets, &Stats::tx_octets},
        {"Frames", &Stats::rx_frm, &Stats::tx_frm},
        {"Multicast", &Stats::rx_mcast, &Stats::tx_mcast},
        {"Broadcast", &Stats::rx_bcast, &Stats::tx_bcast},
        {"PAUSE", &Stats::rx_pause, &Stats::tx_pause},
        {"Bad frames", &Stats::rx_bad_frm, &Stats::tx_bad_frm},
        {"FCS errors", &Stats::rx_fcs, &Stats::tx_fcs},
        {"Undersize", &Stats::rx_usize, &Stats::tx_usize},
        {"Oversize", &Stats::rx_osize, &Stats::tx_osize},
        {"Fragments", &Stats::rx_frag, &Stats::tx_frag},
        {"Jabber", &Stats::rx_jab, &Stats::tx_jab},
    };
    const u32 channel = s.channel(a.text("NAME"));
    const Stats stats = counted(sim::port(s.host.rte(), channel));
    Table mac({"MAC", "Received", "Sent"});
    for (const auto &[name, received, sent] : rows)
        mac.add({name, std::to_string(stats.*received), std::to_string(stats.*sent)});
    mac.print();

    const auto id = counters_id(s, channel);
    const std::vector<u8> state = id ? sim::state(s.host.rte(), *id, sizeof(ovk_eth_if_stats))
                                     : std::vector<u8>(sizeof(ovk_eth_if_stats));
    Table classifier({"Classifier", "Count"});
    for (const Field &field : fields(interface_counters)) {
        u64 value = 0; // in network order
        for (u32 at = field.offset; at < field.offset + field.size; ++at)
            value = value << 8 | state[at];
        if (value)
            classifier.add({field.name, std::to_string(value)});
    }
    classifier.print(id ? "the classifier has counted nothing"
                        : "the classifier doesn't count for the port");
}

Parameter counter_words()
{
    Parameter out = rest("COUNTER", "a counter of MAC or classifier and its value, as in rx_frm=100");
    out.names = [](const Session &) {
        Names names;
        for (const char *list : {mac_counters, interface_counters}) {
            for (const Field &field : fields(list))
                names.emplace_back(field.name + "=", 0);
        }
        return names;
    };
    return out;
}

// All words are read before anything is set.
void counters_set(Session &s, const Arguments &a)
{
    const kor_rte rte = s.host.rte();
    const std::string &name = a.text("NAME");
    const u32 channel = s.channel(name);
    if (s.interfaces.at(name).dead)
        throw Failure(quoted(name) + " is deleted");
    sim::Port port = sim::port(rte, channel);
    ovk_eth_port_stats stats = counted(port);
    std::map<u32, std::vector<u8>> words; // of the classifier, in network order
    for (const std::string &word : a.words("COUNTER")) {
        const std::size_t sign = std::min(word.find('='), word.size());
        const auto value = to_number(word.substr(std::min(sign + 1, word.size())));
        const auto mac = find(mac_counters, word.substr(0, sign));
        const auto own = find(interface_counters, word.substr(0, sign));
        if (!value || (!mac && !own) || (!mac && own->size < sizeof(u64) && *value >> 32))
            throw Wrong("COUNTER: " + quoted(word) + " isn't a counter and its value" +
                        hint(near(word.substr(0, sign) + "=", names_of(s, counter_words()))));
        if (mac) {
            std::memcpy(reinterpret_cast<char *>(&stats) + mac->offset, &*value, mac->size);
            continue;
        }
        std::vector<u8> &bytes = words[own->offset];
        bytes.clear();
        for (u32 left = own->size; left-- > 0;)
            bytes.push_back(static_cast<u8>(*value >> 8 * left));
    }
    const auto id = counters_id(s, channel);
    if (!words.empty() && !id)
        throw Failure("the classifier doesn't count for the port");
    for (const auto &[offset, bytes] : words)
        sim::state_put(rte, *id, offset, bytes);
    std::memcpy(port.tx_counters.data(), &stats, sizeof port.tx_counters);
    std::memcpy(port.rx_counters.data(), &stats.rx_octets, sizeof port.rx_counters);
    sim::mac_counters_set(rte, channel, port.tx_counters, port.rx_counters);
}

void report(ovk_ethernet_if_handle, void *, u64 sum)
{
    std::printf("CRC errors: %llu\n", static_cast<unsigned long long>(sum));
}

// Nothing counts on during the call, so with fewer errors than it waits for it would never end.
void crc_poll(Session &s, const Arguments &a)
{
    const auto at = s.interfaces.find(a.text("NAME"));
    const u64 threshold = a.wide("THRESHOLD");
    if (at != s.interfaces.end() && !at->second.dead && a.number("INTERVAL") != 0) {
        const ovk_eth_port_stats seen = counted(sim::port(s.host.rte(), s.channel(at->first)));
        if (seen.tx_fcs + seen.rx_fcs < threshold)
            throw Failure("the port has seen only " + std::to_string(seen.tx_fcs + seen.rx_fcs) +
                          " CRC errors, and no more will come; 'counters set' feeds tx_fcs and rx_fcs");
    }
    s.call(&Calls::ovk_ethernet_report_crcerror, interface_of(s, a), threshold, report,
           a.number("INTERVAL"));
}

} // namespace

void add_counter_commands(CommandTable &table)
{
    const Parameter name = interface("NAME");
    table.group("Counters");
    table.add(
        "counters port", {name, key(on_off("clear"))}, "Reads the MAC's counters; clear=on zeroes them.",
        "p1 clear=on",
        counters_of<ovk_eth_port_stats, &Calls::ovk_ethernet_port_statistics_get, &mac_counters, "clear">);
    table.add(
        "counters l2", {name},
        "Reads the layer 2 counters: what the MAC received less what the classifier dropped.", "p1",
        counters_of<ovk_eth_l2_stats, &Calls::ovk_ethernet_l2_interface_statistics_get, &l2_counters>);
    table.add(
        "counters interface", {name}, "Reads the classifier's counters.", "p1",
        counters_of<ovk_eth_if_stats, &Calls::ovk_ethernet_interface_statistics_get, &interface_counters>);
    table.add("counters module", {}, "Reads the module's counters.", "", counters_module);
    table.add("counters set", {name, counter_words()},
              "Makes MAC and classifier have counted what is given, through the simulator.",
              "p1 rx_frm=100 rx_octets=6400 rx_invalid_vlan=2", counters_set);
    table.add("print port", {name}, "Lets the library print the MAC's counters.", "p1",
              call_on<&Calls::ovk_ethernet_port_stats_print>);
    table.add("print l2", {name}, "Lets it print the layer 2 counters.", "p1",
              call_on<&Calls::ovk_ethernet_l2_interface_statistics_print>);
    table.add("print interface", {name}, "Lets it print the classifier's counters.", "p1",
              call_on<&Calls::ovk_ethernet_if_stats_print>);
    table.add("print module", {}, "Lets it print the module's counters.", "",
              call<&Calls::ovk_ethernet_global_stats_print>);
    table.add("crc poll",
              {name, number("THRESHOLD", "a number of CRC errors", ~u64{0}),
               number("INTERVAL", "a number of milliseconds, not 0")},
              "Polls the port's CRC errors of both directions until there are THRESHOLD, every INTERVAL.",
              "p1 3 1000", crc_poll);
    table.add("show counters", {name}, "Shows what MAC and classifier have counted for a port.", "p1",
              show_counters);
}

} // namespace shell
