// SPDX-License-Identifier: Apache-2.0
/* The classifier's trees and the prefix databases beside them. */
#include "call.h"
#include "chip.h"
#include "kor_subnet.h"

#include <stdexcept>

namespace sim {

namespace {

/* Key of a pattern for a tree: its words must be the tree's. It may be longer than the tree is wide. */
const Bits &tree_key(const Symbol &symbol, const kor_ptn *pattern)
{
    const Bits &bits = live_data(pattern).bits;
    if (pattern->width != symbol.tree->width() || pattern->length != bits.length)
        wrong("pattern %s for %s of width %u", show(pattern).c_str(), symbol.name.c_str(),
              symbol.tree->width());
    return bits;
}

/* Key of a pattern for a database: one of its two words must be raised by one. */
const Bits &database_key(const Database &db, const kor_ptn *pattern)
{
    const Bits &bits = live_data(pattern).bits;
    const u32 raised_width = pattern->width + 1 - db.width;
    const u32 raised_length = pattern->length - bits.length;
    if (raised_width > 1 || raised_length > 1 || raised_width == raised_length)
        wrong("pattern %s for a database of width %u", show(pattern).c_str(), db.width);
    return bits;
}

Bits key_of(const std::vector<Field> &fields)
{
    Bits key;
    for (const Field &field : fields) {
        if (!key.push(field.value, field.bits))
            throw std::invalid_argument("key is too long");
    }
    return key;
}

Symbol &tree_named(Chip &on, std::string_view name)
{
    for (const std::string &full : {programme_prefix + std::string(name), std::string(name)}) {
        if (const auto at = on.symbols.find(full); at != on.symbols.end() && on.programme[at->second].tree)
            return on.programme[at->second];
    }
    throw std::invalid_argument("no tree " + std::string(name));
}

const Database &asked_database(kor_subnet db)
{
    if (const auto at = world().databases.find(db); at != world().databases.end())
        return at->second;
    throw std::invalid_argument("no database of that handle");
}

} // namespace

Symbol &tree_symbol(Chip &on, u32 tree_id)
{
    const u32 index = tree_id - on.first_id;
    if (index >= on.programme.size() || !on.programme[index].tree)
        wrong("%s is no tree", on.function_name(tree_id).c_str());
    return on.programme[index];
}

Database &database_of(kor_subnet db)
{
    const auto at = world().databases.find(db);
    if (at == world().databases.end())
        wrong("no database 0x%x", db);
    return at->second;
}

std::vector<std::string> trees(kor_rte rte)
{
    const Guard guard;
    std::vector<std::string> out;
    for (const auto &[name, index] : asked_chip(rte).symbols) {
        if (asked_chip(rte).programme[index].tree)
            out.push_back(name);
    }
    return out;
}

std::vector<Rule> rules(kor_rte rte, std::string_view tree)
{
    const Guard guard;
    return tree_named(asked_chip(rte), tree).tree->rules().list();
}

std::optional<kor_ptn_action> rule(kor_rte rte, std::string_view tree, const std::vector<Field> &key)
{
    const Guard guard;
    const PrefixTable::Entry *found = tree_named(asked_chip(rte), tree).tree->rules().find(key_of(key));
    return found && !found->hole ? std::optional(found->action) : std::nullopt;
}

Answer lookup(kor_rte rte, std::string_view tree, const std::vector<Field> &key)
{
    const Guard guard;
    Chip &on = asked_chip(rte);
    Answer answer = tree_named(on, tree).tree->answer(key_of(key));
    if (answer.action.type == KOR_PTN_ACTION_FUNCTION)
        answer.function = on.function_name(answer.action.w1);
    return answer;
}

std::string action_text(kor_rte rte, const kor_ptn_action &action)
{
    const Guard guard;
    return text(asked_chip(rte), action);
}

void strict_unlearn(kor_rte rte, bool on)
{
    const Guard guard;
    asked_chip(rte).strict_unlearn = on;
}

std::vector<Rule> database(kor_subnet db)
{
    const Guard guard;
    return asked_database(db).entries.list();
}

std::optional<kor_ptn_action> database_root(kor_subnet db)
{
    const Guard guard;
    return asked_database(db).root;
}

} // namespace sim

using namespace sim;

u32 kor_ptn_symbol_get_id(kor_rte rte, const char *name, u32 *out)
{
    return platform<"kor_ptn_symbol_get_id">(With{rte, name}, [&]() -> u32 {
        Chip &on = chip(rte);
        const Symbol *symbol = on.find_symbol(given(name, "name"));
        if (!symbol)
            return status_unknown_name;
        *given(out, "output") = on.first_id + static_cast<u32>(symbol - on.programme.data());
        return 0;
    });
}

u32 kor_ptn_learn(kor_rte rte, u32 tree_id, const kor_ptn *pattern, const kor_ptn_action *action)
{
    return platform<"kor_ptn_learn">(
        With{rte, TreeArg{rte, tree_id}, pattern, ActionArg{rte, action}}, [&]() -> u32 {
            const Symbol &symbol = tree_symbol(chip(rte), tree_id);
            symbol.tree->learn(tree_key(symbol, pattern), *given(action, "action"));
            return 0;
        });
}

u32 kor_ptn_unlearn(kor_rte rte, u32 tree_id, const kor_ptn *pattern, u32 replacement_length,
                    const kor_ptn_action *replacement)
{
    const With arguments{rte, TreeArg{rte, tree_id}, pattern, replacement_length,
                         ActionArg{rte, replacement}};
    return platform<"kor_ptn_unlearn">(arguments, [&]() -> u32 {
        Chip &on = chip(rte);
        const Symbol &symbol = tree_symbol(on, tree_id);
        const Bits &key = tree_key(symbol, pattern);
        given(replacement, "replacement");
        const bool over_all = replacement_length == symbol.tree->width();
        if (replacement_length > key.length && !over_all)
            wrong("replacement of %u bits for %s", replacement_length, show(pattern).c_str());
        return symbol.tree->unlearn(key, *replacement, over_all && !on.strict_unlearn) ? 0 : status_no_rule;
    });
}

u32 kor_subnet_create(u32 width, u32 flags, u32 hint, kor_subnet *out)
{
    return platform<"kor_subnet_create">(With{width, flags, hint}, [&]() -> u32 {
        given(out, "output");
        if (width == 0 || width > Bits::max_length || flags || hint)
            wrong("width %u, flags 0x%x, 0x%x", width, flags, hint);
        *out = 0x5B000001 + world().databases_made++;
        world().databases[*out] = {spoken_to(), width, {}, {}};
        return 0;
    });
}

u32 kor_subnet_destroy(kor_subnet *db)
{
    return platform<"kor_subnet_destroy">(With{db ? *db : 0}, [&]() -> u32 {
        database_of(*given(db, "handle"));
        world().databases.erase(*db);
        return 0;
    });
}

u32 kor_subnet_add_subnet(kor_subnet db, const kor_ptn *pattern, const kor_ptn_action *action)
{
    return platform<"kor_subnet_add_subnet">(With{db, pattern, ActionArg{spoken_to(), action}},
                                             [&]() -> u32 {
                                                 Database &to = database_of(db);
                                                 const Bits &key = database_key(to, pattern);
                                                 given(action, "action");
                                                 if (key.length == 0 && !to.root)
                                                     to.root = *action;
                                                 else
                                                     to.entries.put(key, {*action, false});
                                                 return 0;
                                             });
}

u32 kor_subnet_del_subnet(kor_subnet db, const kor_ptn *pattern)
{
    return platform<"kor_subnet_del_subnet">(With{db, pattern}, [&]() -> u32 {
        Database &from = database_of(db);
        from.entries.erase(database_key(from, pattern));
        return 0;
    });
}

u32 kor_subnet_find_higher_subnet(kor_subnet db, const kor_ptn *pattern, u32 *length,
                                  kor_ptn_action *action)
{
    return platform<"kor_subnet_find_higher_subnet">(With{db, pattern}, [&]() -> u32 {
        const Database &in = database_of(db);
        const Bits &key = database_key(in, pattern);
        given(length, "length");
        given(action, "action");
        const auto higher = key.length ? in.entries.longest(key, key.length - 1) : std::nullopt;
        if (!higher && !in.root)
            return status_no_cover;
        *length = higher ? higher->key.length + 1 : 1;
        *action = higher ? higher->action : *in.root;
        return 0;
    });
}
