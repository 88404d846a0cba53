// SPDX-License-Identifier: Apache-2.0
#include "core.h"

#include "call.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace sim {

std::atomic<bool> watching{false};
std::array<std::atomic<u64>, std::size(operations)> counts{};

namespace {

constexpr u32 any_operation = std::size(operations);

void watch()
{
    watching = world().journal_on || !world().faults.empty();
}

template <class Wanted, class Shown>
std::vector<std::string> pick(Wanted wanted, Shown shown)
{
    const Guard guard;
    std::vector<std::string> out;
    for (const JournalEntry &entry : world().journal) {
        if (wanted(operations[entry.op]))
            out.emplace_back(shown(entry));
    }
    return out;
}

const auto entry_name = [](const JournalEntry &entry) { return operations[entry.op].name; };
const auto entry_text = [](const JournalEntry &entry) { return std::string_view(entry.text); };
const auto is_write = [](const Operation &op) { return op.group == Group::write; };
auto begins_with(std::string_view prefix)
{
    return [prefix](const Operation &op) { return op.name.starts_with(prefix); };
}

bool arm(std::string_view op, u32 nth, u32 status, bool always)
{
    if (!faults::known(op) || nth == 0 || status == 0)
        return false;
    const Guard guard;
    world().faults.push_back({operation_index(op), nth, status, always});
    watch();
    return true;
}

} // namespace

std::mutex &world_mutex()
{
    static std::mutex &mutex = *new std::mutex; // outlives the calls that static destructors make
    return mutex;
}

World &world()
{
    static World &the_world = *new World;
    return the_world;
}

void reset()
{
    const Guard guard;
    const u64 epoch = world().epoch + 1;
    world() = World();
    world().epoch = epoch;
    watch();
    for (auto &count : counts)
        count = 0;
    traces_reset();
}

std::string format(const char *format, ...)
{
    char buffer[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return buffer;
}

void wrong(const char *format, ...)
{
    char buffer[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    throw Misuse{buffer};
}

bool journalling()
{
    return world().journal_on;
}

void Call::record(const std::string &arguments)
{
    entry_ = world().journal.size();
    world().journal.push_back({op_, std::string(operations[op_].name) + "(" + arguments + ")"});
}

u32 Call::injected() const
{
    for (auto fault = world().faults.begin(); fault != world().faults.end(); ++fault) {
        if (fault->op == any_operation) {
            u32 &seen = fault->seen[op_];
            if (seen ==
                fault->per_operation) // also an operation left alone: it has seen all from the start
                continue;
            ++seen;
        } else if (fault->op != op_) {
            continue;
        }
        if (fault->countdown > 1) {
            --fault->countdown;
            continue;
        }
        const u32 status = fault->status;
        world().fired.push_back(op_);
        if (!fault->always)
            world().faults.erase(fault);
        watch();
        return status;
    }
    return 0;
}

u32 Call::done(u32 status) const
{
    if (status != 0 && entry_ < world().journal.size())
        world().journal[entry_].text += format(" -> 0x%x", status);
    return status;
}

void Call::misused(const Misuse &what)
{
    if (!guard_.owns_lock())
        guard_.lock();
    world().misuse.push_back(std::string(operations[op_].name) + ": " + what.text);
}

std::vector<std::string> misuse()
{
    const Guard guard;
    check_freed_blocks();
    return world().misuse;
}

void misuse_clear()
{
    const Guard guard;
    world().misuse.clear();
}

void journal_on(bool on)
{
    const Guard guard;
    world().journal_on = on;
    watch();
}

std::vector<std::string> journal::ops(std::string_view prefix)
{
    return pick(begins_with(prefix), entry_name);
}

std::vector<std::string> journal::entries(std::string_view prefix)
{
    return pick(begins_with(prefix), entry_text);
}

std::vector<std::string> journal::writes()
{
    return pick(is_write, entry_name);
}

std::vector<std::string> journal::write_entries()
{
    return pick(is_write, entry_text);
}

void journal::clear()
{
    const Guard guard;
    world().journal.clear();
}

u64 journal::count(std::string_view op)
{
    const u32 index = operation_index(op);
    return index == any_operation ? 0 : counts[index].load();
}

u64 journal::write_count()
{
    u64 sum = 0;
    for (u32 op = 0; op < any_operation; ++op)
        sum += is_write(operations[op]) ? counts[op].load() : 0;
    return sum;
}

void journal::counts_clear()
{
    for (auto &count : counts)
        count = 0;
}

const std::vector<std::string> &faults::operations()
{
    static const std::vector<std::string> &names = *[] {
        auto *list = new std::vector<std::string>;
        for (const Operation &op : sim::operations) {
            if (op.faultable)
                list->emplace_back(op.name);
        }
        return list;
    }();
    return names;
}

bool faults::known(std::string_view op)
{
    const u32 index = operation_index(op);
    return index < any_operation && sim::operations[index].faultable;
}

bool faults::fail(std::string_view op, u32 nth, u32 status)
{
    return arm(op, nth, status, false);
}

bool faults::fail_always(std::string_view op, u32 status)
{
    return arm(op, 1, status, true);
}

bool faults::fail_any(u32 nth, const Sweep &sweep)
{
    const u32 limit = sweep.per_operation ? sweep.per_operation : ~0U;
    ArmedFault fault{any_operation, nth, sweep.status, false, limit, std::vector<u32>(any_operation, 0)};
    for (const std::string &op : sweep.except) {
        if (!known(op))
            return false;
        fault.seen[operation_index(op)] = limit;
    }
    if (nth == 0 || sweep.status == 0)
        return false;
    const Guard guard;
    world().faults.push_back(std::move(fault));
    watch();
    return true;
}

std::vector<std::string> faults::fired()
{
    const Guard guard;
    std::vector<std::string> out;
    for (const u32 op : world().fired)
        out.emplace_back(sim::operations[op].name);
    return out;
}

void faults::clear()
{
    const Guard guard;
    world().faults.clear();
    world().fired.clear();
    watch();
}

} // namespace sim
