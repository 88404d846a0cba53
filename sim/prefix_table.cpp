// SPDX-License-Identifier: Apache-2.0
#include "prefix_table.h"

#include <algorithm>

namespace sim {

bool Bits::push(u64 value, u32 count)
{
    if (count > 64 || length + count > max_length)
        return false;
    if (count == 0)
        return true;
    const u64 left = value << (64 - count);
    const u32 word = length / 64;
    const u32 offset = length % 64;
    words[word] |= left >> offset;
    if (offset + count > 64)
        words[word + 1] |= left << (64 - offset);
    length += count;
    return true;
}

Bits Bits::prefix(u32 count) const
{
    Bits out = *this;
    if (count >= length)
        return out;
    out.length = count;
    for (u32 word = 0; word < words.size(); ++word) {
        const u32 begin = word * 64;
        if (count <= begin)
            out.words[word] = 0;
        else if (count < begin + 64)
            out.words[word] &= ~u64{0} << (begin + 64 - count);
    }
    return out;
}

std::string Bits::text() const
{
    std::string out = "0x";
    u32 done = 0;
    for (u32 step = length % 4 ? length % 4 : 4; done < length; done += step, step = 4) {
        u32 digit = 0;
        for (u32 bit = done; bit < done + step; ++bit)
            digit = digit << 1 | (words[bit / 64] >> (63 - bit % 64) & 1);
        out += "0123456789abcdef"[digit];
    }
    return out + (length ? "/" : "0/") + std::to_string(length);
}

const PrefixTable::Entry *PrefixTable::find(const Bits &key) const
{
    const auto at = entries_.find(key);
    return at == entries_.end() ? nullptr : &at->second;
}

std::optional<Rule> PrefixTable::longest(const Bits &key, u32 limit) const
{
    limit = std::min(limit, key.length);
    for (const u32 length : lengths_) {
        if (length > limit)
            continue;
        const Bits prefix = key.prefix(length);
        if (const Entry *entry = find(prefix))
            return Rule{prefix, entry->action, entry->hole};
    }
    return std::nullopt;
}

void PrefixTable::put(const Bits &key, const Entry &entry)
{
    if (entries_.insert_or_assign(key, entry).second && count_[key.length]++ == 0)
        lengths_.insert(std::upper_bound(lengths_.begin(), lengths_.end(), key.length, std::greater<>()),
                        key.length);
}

void PrefixTable::erase(const Bits &key)
{
    if (entries_.erase(key) && --count_[key.length] == 0)
        std::erase(lengths_, key.length);
}

std::vector<Rule> PrefixTable::list() const
{
    std::vector<Rule> out;
    out.reserve(entries_.size());
    for (const auto &[key, entry] : entries_)
        out.push_back({key, entry.action, entry.hole});
    std::sort(out.begin(), out.end(), [](const Rule &a, const Rule &b) { return a.key < b.key; });
    return out;
}

Answer Tree::answer(const Bits &key, u32 limit) const
{
    if (const auto rule = rules_.longest(key, limit))
        return {rule->hole ? Answer::From::hole : Answer::From::rule, rule->key.length, rule->action, {}};
    return {Answer::From::miss, 0, miss_, {}};
}

template <class Drop>
void Tree::drop_holes(const Bits &key, Drop drop)
{
    for (auto hole = holes_.lower_bound(key); hole != holes_.end() && key.covers(*hole);) {
        if (drop(*hole)) {
            rules_.erase(*hole);
            hole = holes_.erase(hole);
        } else {
            ++hole;
        }
    }
}

void Tree::learn(const Bits &key, const kor_ptn_action &action)
{
    drop_holes(key, [](const Bits &) { return true; });
    rules_.put(key, {action, false});
}

bool Tree::unlearn(const Bits &key, const kor_ptn_action &replacement, bool absent_too)
{
    const PrefixTable::Entry *standing = rules_.find(key);
    if ((!standing || standing->hole) && !absent_too)
        return false;
    rules_.erase(key);
    holes_.erase(key);
    if (!same(answer(key).action, replacement)) {
        rules_.put(key, {replacement, true});
        holes_.insert(key);
    }
    // Holes below that now answer what surrounds them anyway. The order meets outer holes before inner
    // ones.
    drop_holes(key, [&](const Bits &hole) {
        return hole.length > key.length &&
               same(answer(hole, hole.length - 1).action, rules_.find(hole)->action);
    });
    return true;
}

} // namespace sim
