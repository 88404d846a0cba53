// SPDX-License-Identifier: Apache-2.0
#include "ovk_eth_hw/association.h"

#include "common/frame.h"
#include "common/intf.h"
#include "common/rule_key.h"
#include "kor_otreeset.h"

OVK_LOG_FILE(ovk_eth_hw, 14);

namespace {

OVK_TARGET_SIZE(kor_vptn_field, 16);

enum field : u8 {
    selector_field,
    protocol_field,
    dest_mac_field,
    source_mac_field,
    vlan_field,
    priority_field,
    field_count
};

constexpr u32 field_bits[field_count] = {8, 24, 48, 48, 12, 3};

consteval u32 key_bits()
{
    u32 sum = 0;
    for (const u32 bits : field_bits)
        sum += bits;
    return sum;
}
static_assert(key_bits() == 143, "the fields make up the tree's key");

// Which fields of the caller's record a rule uses.
enum match : u32 {
    match_ether_type = 0x01,
    match_dest_mac = 0x02,
    match_source_mac = 0x04,
    match_vlan = 0x08,
    match_priority = 0x10,
    match_llc = 0x20
};

// What the classifier is to do, in the second action word.
constexpr u32 forward_flag = 0x80000;
constexpr u32 to_port = 0x100000;
constexpr u32 to_bind = 0x200000;
constexpr u32 to_cpu = 0x300000;
constexpr u32 to_bdl = 0x400000;
constexpr u32 to_drop = 0x500000;

// A rule's vector pattern. Fields that were never built stay as they began, and are freed all the same.
struct vector_pattern {
    kor_vptn_field fields[field_count] = {};

    kor_ptn &operator[](field index) { return fields[index].pattern; }

    // Makes the field's pattern; `fill` appends to it and returns its status.
    template <class Fill>
    u32 build(field index, Fill fill)
    {
        kor_ptn &pattern = fields[index].pattern;
        const u32 status = ovk_ptn_new(field_bits[index], &pattern);
        return status == KOR_OK ? fill(pattern) : status;
    }

    // A number, or an empty field.
    u32 build_number(field index, u32 value, bool used = true)
    {
        return build(index, [&](kor_ptn &pattern) -> u32 {
            return used ? ovk_ptn_extend(&pattern, value, field_bits[index]) : u32{KOR_OK};
        });
    }

    void free()
    {
        for (const kor_vptn_field &entry : fields)
            (void)ovk_ptn_free(entry.pattern.data, entry.pattern.length, entry.pattern.width);
    }
};

// One list of the tree set.
struct rule_list {
    ovk_module *module;
    const eth_tree_info &tree;
    vector_pattern vptn;
    u32 index; // for log lines
};

u32 bad_key(ovk_module *module, u32 status)
{
    return OVK_FAIL(module, status, "Could not build the input pattern\n");
}

u32 build_selector(rule_list &rules, u32 selector)
{
    const u32 status = rules.vptn.build_number(selector_field, selector);
    return status == KOR_OK ? status : bad_key(rules.module, status);
}

template <class... Action>
auto printer(const rule_list &rules, u32 count, const Action *...action)
{
    return [&rules, count, action...] {
        ovk_vptn_print(count, rules.vptn.fields);
        (ovk_ptn_action_print(action->type, action->w1, action->w2), ...);
    };
}

void log_learn(const rule_list &rules, const kor_ptn_action &action)
{
    OVK_LOG_RECORD(rules.module, vptn_learn, printer(rules, field_count, &action), "%s: (%d) ",
                   rules.tree.tree_name, rules.index);
}

u32 build_list(const rule_list &rules)
{
    OVK_LOG_RECORD(rules.module, vptn_build, printer(rules, 1), "%s: (%d) ", rules.tree.tree_name,
                   rules.index);
    return kor_ptn_otreeset_build(rules.module->rte_handle, rules.tree.tree_id, rules.vptn.fields);
}

u32 set_default(rule_list &rules, u32 op)
{
    ovk_module *module = rules.module;

    if (op == OVK_ETH_ADD) {
        kor_ptn_action action = rules.tree.default_action;
        action.w2 = 0;
        log_learn(rules, action);
        OVK_TRY_RTE(module,
                    kor_ptn_otreeset_append(module->rte_handle, rules.tree.tree_id, field_count,
                                            rules.vptn.fields, &action),
                    KOR_E_OTREESET_DEFAULT,
                    "RTE Error: %s, Failed to add the default entry in the OtreeSet\n");
    } else {
        OVK_LOG_RECORD(module, vptn_clear, printer(rules, 1), "%s: (%d) ", rules.tree.tree_name,
                       rules.index);
        // The interface goes away whether or not its list could be emptied.
        if (const u32 rc =
                kor_ptn_otreeset_clear(module->rte_handle, rules.tree.tree_id, rules.vptn.fields))
            OVK_WARN(module, "RTE Error: %s, Failed to clear all the rules from the OtreeSet\n",
                     kor_status_get(rc));
    }
    OVK_TRY_RTE(module, build_list(rules), KOR_E_OTREESET_BUILD,
                "RTE Error: %s, Failed to build the OtreeSet\n");
    return KOR_OK;
}

u32 rebuild_list(const rule_list &rules)
{
    OVK_TRY_RTE(rules.module, build_list(rules), KOR_E_OTREESET_BUILD,
                "RTE Error: %s, Failed to re-build the OtreeSet\n");
    return KOR_OK;
}

u32 build_mac(vector_pattern &vptn, field index, bool used, const u8 *mac, u32 bits)
{
    return vptn.build(index, [&](kor_ptn &pattern) {
        u32 status = KOR_OK;
        if (used)
            ovk::append_mac_prefix(
                mac, bits, [&](u32 value, u32 width) { status += ovk_ptn_extend(&pattern, value, width); });
        return status;
    });
}

// The five fields behind the selector, in order; a field that isn't used is an empty pattern.
u32 build_fields(rule_list &rules, const ovk_ethernet_ingress_extended_flow_data &rule)
{
    const auto uses = [&](u32 bit) { return (rule.flags & bit) != 0; };
    const u32 llc = u32{rule.llc[0]} << 16 | u32{rule.llc[1]} << 8 | u32{rule.llc[2]};
    const u32 protocol = uses(match_ether_type) ? rule.ether_type : llc;
    vector_pattern &vptn = rules.vptn;

    u32 status = vptn.build_number(protocol_field, protocol, uses(match_ether_type | match_llc));
    if (status == KOR_OK)
        status = build_mac(vptn, dest_mac_field, uses(match_dest_mac), rule.dmac, rule.dmac_len);
    if (status == KOR_OK)
        status = build_mac(vptn, source_mac_field, uses(match_source_mac), rule.smac, rule.smac_len);
    if (status == KOR_OK)
        status = vptn.build_number(vlan_field, rule.vlan_id, uses(match_vlan));
    if (status == KOR_OK)
        status = vptn.build_number(priority_field, rule.pcp, uses(match_priority));
    return status == KOR_OK ? status : bad_key(rules.module, status);
}

u32 make_action(ovk_module *module, const ovk_ethernet_flow_action &action, u8 flag, u32 flow_id,
                kor_ptn_action &out)
{
    const u32 priority = (action.priority & 7u) * 0x10000;

    switch (action.type) {
    case OVK_ETHERNET_ASSOCIATION_RULE_TYPE_FORWARD:
        out = ovk::data_action(flow_id, flag != 0 ? forward_flag : 0);
        return KOR_OK;
    case OVK_ETHERNET_ASSOCIATION_RULE_TYPE_SEND_TO_PORT:
        out = ovk::data_action(flow_id, to_port + action.out_if_handle->if_id);
        return KOR_OK;
    case OVK_ETHERNET_ASSOCIATION_RULE_TYPE_BIND:
        out = ovk::data_action(flow_id, to_bind);
        return KOR_OK;
    case OVK_ETHERNET_ASSOCIATION_RULE_TYPE_SEND_TO_CPU:
        out = ovk::data_action(flow_id,
                               to_cpu + priority + (action.cpu_word_hi * 0x100u) + action.cpu_word_lo);
        return KOR_OK;
    case OVK_ETHERNET_ASSOCIATION_RULE_TYPE_SEND_TO_BDL:
        out = ovk::data_action(flow_id, to_bdl + priority + action.bdl_value);
        return KOR_OK;
    case OVK_ETHERNET_ASSOCIATION_RULE_TYPE_DROP:
        out = ovk::data_action(0, to_drop);
        return KOR_OK;
    default:
        return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Invalid Action type requested!\n");
    }
}

u32 remove_rule(const rule_list &rules, u32 count)
{
    ovk_module *module = rules.module;

    // An empty list has no default either, and nothing to remove.
    if (count == 0 || rules.index >= count - 1)
        return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT,
                        "Cannot remove the default interface rule in Otreeset\n");
    OVK_LOG_RECORD(module, vptn_unlearn, printer(rules, 1), "%s: (%d) ", rules.tree.tree_name, rules.index);
    OVK_TRY_RTE(
        module,
        kor_ptn_otreeset_delete(module->rte_handle, rules.tree.tree_id, rules.index, rules.vptn.fields),
        KOR_E_OTREESET_DELETE, "RTE Error: %s, Failed to delete the OtreeSet rule\n");
    return rebuild_list(rules);
}

u32 insert_rule(rule_list &rules, u32 count, const ovk_ethernet_ingress_extended_flow_data &rule,
                const ovk_ethernet_flow_action &action, u8 flag, u32 flow_id)
{
    ovk_module *module = rules.module;
    kor_ptn_action rule_action = {};

    if (rules.index >= count)
        return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT,
                        "Cannot add beyond the default interface rule in Otreeset\n");
    OVK_TRY(build_fields(rules, rule));
    OVK_TRY(make_action(module, action, flag, flow_id, rule_action));
    log_learn(rules, rule_action);
    OVK_TRY_RTE(module,
                kor_ptn_otreeset_insert(module->rte_handle, rules.tree.tree_id, rules.index, field_count,
                                        rules.vptn.fields, &rule_action),
                KOR_E_OTREESET_INSERT, "RTE Error: %s, Failed to insert rule in the OtreeSet\n");
    return rebuild_list(rules);
}

rule_list list_of(ovk_module *module, u32 index)
{
    return {module, ovk::tree_of(module, OVK_ETH_TREE_ETHERNET_ASSOCIATION), {}, index};
}

} // namespace

u32 ovk_eth_default_association(ovk_module *module, u32 op, u32 selector)
{
    return ovk::internal_call(OVK_CALLER, module, [&]() -> u32 {
        rule_list rules = list_of(module, 0);
        // Full-width wildcards, but for the selector.
        for (u32 index = 0; index < field_count; index++)
            rules.vptn.fields[index].pattern.width = field_bits[index];

        u32 status = build_selector(rules, selector);
        if (status == KOR_OK)
            status = set_default(rules, op);
        const kor_ptn &pattern = rules.vptn[selector_field];
        (void)ovk_ptn_free(pattern.data, pattern.length, pattern.width);
        return status;
    });
}

u32 ovk_eth_association(ovk_module *module, u32 op, u32 selector, u32 index,
                        const ovk_ethernet_ingress_extended_flow_data *rule,
                        const ovk_ethernet_flow_action *action, u8 flag, u32 flow_id)
{
    const auto change = [&](rule_list &rules) -> u32 {
        u32 count = 0;
        OVK_TRY(build_selector(rules, selector));
        OVK_TRY_RTE(
            module,
            kor_ptn_otreeset_novrules(module->rte_handle, rules.tree.tree_id, rules.vptn.fields, &count),
            KOR_E_OTREESET_COUNT, "RTE Error: %s, Failed to get the number of rules in OtreeSet\n");
        switch (op) {
        case OVK_ETH_ADD:
            return insert_rule(rules, count, *rule, *action, flag, flow_id);
        case OVK_ETH_REMOVE:
            return remove_rule(rules, count);
        default:
            return OVK_FAIL(module, KOR_E_INVALID_ARGUMENT, "Invalid operation requested\n");
        }
    };

    return ovk::internal_call(OVK_CALLER, module, [&] {
        rule_list rules = list_of(module, index);
        const u32 status = change(rules);
        rules.vptn.free();
        return status;
    });
}
