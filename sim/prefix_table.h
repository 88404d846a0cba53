// SPDX-License-Identifier: Apache-2.0
/*
 * PrefixTable: prefixes and their actions, the store under lookup trees and subnet databases.
 *
 * One hash table over (bits, length) and a count of entries per length, so that a look-up probes only the
 * lengths in use: its cost depends on how many different lengths there are, not on how many entries.
 *
 * Tree: a lookup tree on top of it. A tree keeps only what it answers, and whoever unlearns a rule says
 * what is to stand in its place. When that differs from what would answer anyway, the tree keeps a *hole*:
 * an entry that isn't a rule and answers with the replacement until a later learn covers it. Invariants: a
 * hole and a rule never share a prefix; no hole answers as the table would answer without it.
 */
#ifndef OVK_SIM_PREFIX_TABLE_H
#define OVK_SIM_PREFIX_TABLE_H

#include "bits.h"
#include "kor_ptn.h"

#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

namespace sim {

inline bool same(const kor_ptn_action &a, const kor_ptn_action &b)
{
    return a.type == b.type && a.w1 == b.w1 && a.w2 == b.w2;
}

/* An entry of a tree or a database, as it is handed out. */
struct Rule {
    Bits key;
    kor_ptn_action action{};
    bool hole = false;
};

class PrefixTable {
  public:
    struct Entry {
        kor_ptn_action action{};
        bool hole = false;
    };

    /* Entry at exactly `key`, or null. */
    const Entry *find(const Bits &key) const;

    /* The longest entry of at most `limit` bits that covers `key`. */
    std::optional<Rule> longest(const Bits &key, u32 limit = Bits::max_length) const;

    void put(const Bits &key, const Entry &entry);
    void erase(const Bits &key);
    std::vector<Rule> list() const; /* in order of bits */

  private:
    std::unordered_map<Bits, Entry, BitsHash> entries_;
    std::array<u32, Bits::max_length + 1> count_{};
    std::vector<u32> lengths_; /* those in use, longest first */
};

struct Answer {
    enum class From {
        miss,
        rule,
        hole
    };
    From from = From::miss;
    u32 length = 0; /* bits matched */
    kor_ptn_action action{};
    std::string function; /* its name when the action is to go to one */
};

class Tree {
  public:
    Tree(u32 width, const kor_ptn_action &miss) : width_(width), miss_(miss) {}

    u32 width() const { return width_; }
    Answer answer(const Bits &key, u32 limit = Bits::max_length) const;
    const PrefixTable &rules() const { return rules_; }

    void learn(const Bits &key, const kor_ptn_action &action);

    /* False, with nothing changed, when there is no such rule and `absent_too` isn't set. */
    bool unlearn(const Bits &key, const kor_ptn_action &replacement, bool absent_too);

  private:
    /* Drops the holes that `key` covers and of which `drop` says so. */
    template <class Drop>
    void drop_holes(const Bits &key, Drop drop);

    u32 width_;
    kor_ptn_action miss_;
    PrefixTable rules_;    /* holes included */
    std::set<Bits> holes_; /* ordered, to find those below a prefix */
};

/* A prefix database beside a tree: it has a root under everything, which nobody replaces or removes. */
struct Database {
    kor_rte rte = 0;
    u32 width = 0; /* as created: one more than the tree's */
    std::optional<kor_ptn_action> root;
    PrefixTable entries;
};

} // namespace sim

#endif
