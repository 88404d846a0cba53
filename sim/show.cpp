// SPDX-License-Identifier: Apache-2.0
/* Arguments as text. Whatever is shown may be wrong or null: nothing here throws for that. */
#include "call.h"

namespace sim {

namespace {

std::string action_text(const kor_ptn_action &action, const std::string &function)
{
    switch (action.type) {
    case KOR_PTN_ACTION_VALUE:
        return format("value 0x%x", action.w1) + (action.w2 ? format(" 0x%x", action.w2) : "");
    case KOR_PTN_ACTION_FUNCTION:
        return "function " + function;
    case KOR_PTN_ACTION_DATA:
        return format("data 0x%x 0x%x", action.w1, action.w2);
    default:
        return format("type %u 0x%x 0x%x", action.type, action.w1, action.w2);
    }
}

const Chip *known_chip(kor_rte rte)
{
    const auto at = world().chips.find(rte);
    return at == world().chips.end() ? nullptr : at->second.get();
}

} // namespace

std::string hex(const void *bytes, std::size_t count)
{
    std::string out;
    out.reserve(2 * count);
    for (std::size_t i = 0; i < count; ++i) {
        const u8 byte = static_cast<const u8 *>(bytes)[i];
        out += "0123456789abcdef"[byte >> 4];
        out += "0123456789abcdef"[byte & 15];
    }
    return out;
}

std::string text(const Chip &on, const kor_ptn_action &action)
{
    return action_text(action, on.function_name(action.w1));
}

std::string show(TreeArg tree)
{
    const Chip *on = known_chip(tree.rte);
    return on ? on->function_name(tree.id) : show(tree.id);
}

std::string show(ActionArg action)
{
    const Chip *on = known_chip(action.rte);
    return on && action.action ? text(*on, *action.action) : show(action.action);
}

std::string show(BytesArg bytes)
{
    return bytes.bytes ? hex(bytes.bytes, bytes.count) : "null";
}

std::string show(NamespaceArg ns)
{
    const auto at = world().namespaces.find(ns.handle);
    return at == world().namespaces.end() ? show(ns.handle) : at->second.name;
}

std::string show(BlockArg block)
{
    const Heap &heap = world().heap;
    const auto at = heap.live.find(block.block);
    if (at == heap.live.end())
        return block.block ? "no block" : "null";
    return format("block %llu of %zu", static_cast<unsigned long long>(at->second.number), at->second.size);
}

std::string show(LockArg lock)
{
    return lock.lock ? format("lock %u", lock.lock->words[1]) : "null";
}

std::string show(const kor_ptn *pattern)
{
    if (!pattern)
        return "null";
    const kor_ptn_data *data = pattern->data;
    std::string out = !data ? "no data" : data->state == kor_ptn_data::live ? data->bits.text() : "freed";
    if (!data || pattern->length != data->bits.length)
        out += format(" l%u", pattern->length);
    return out + format(" w%u", pattern->width);
}

std::string show(const kor_ptn_action *action)
{
    return action ? action_text(*action, format("0x%x", action->w1)) : "null";
}

std::string show(const ovk_module *module)
{
    return module && module->module_name ? module->module_name : "null";
}

std::string show(const char *text)
{
    return text ? '"' + std::string(text) + '"' : "null";
}

} // namespace sim
