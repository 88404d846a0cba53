// SPDX-License-Identifier: Apache-2.0
// The module's life, its log, its exceptions.
#include "handlers.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace shell {

namespace {

// What the module asks of the classifier when it starts tells how it uses each tree: entry by entry the id
// of its name, the default function's id if there is one, a pattern of the key's width, a database.
std::map<std::string, TreeUse> tree_uses(const Words &calls, const Words &trees)
{
    constexpr std::string_view ask_id = "kor_ptn_symbol_get_id(";
    constexpr std::string_view make_pattern = "ovk_ptn_new(";
    constexpr std::string_view make_database = "kor_subnet_create(";
    std::map<std::string, TreeUse> out;
    TreeUse *current = nullptr;
    u32 index = 0;
    for (const std::string &call : calls) {
        if (call.starts_with(ask_id)) {
            if (current && current->key_bits == 0) // of the default function
                continue;
            const std::size_t begin = call.find('"') + 1;
            const std::string name = call.substr(begin, call.find('"', begin) - begin);
            const bool is_tree = std::find(trees.begin(), trees.end(), name) != trees.end();
            ++index;
            current = is_tree ? &(out[short_name(name)] = {index, 0, false}) : nullptr;
        } else if (current && call.starts_with(make_pattern) && current->key_bits == 0) {
            current->key_bits =
                static_cast<u32>(std::strtoul(call.c_str() + make_pattern.size(), nullptr, 0));
        } else if (current && call.starts_with(make_database)) {
            current->database = true;
        }
    }
    return out;
}

void init(Session &s, const Arguments &a)
{
    ovk_module *module = s.host.module();
    if (a.given("LEVEL")) {
        if (module->module_object)
            throw Failure("the module is up; 'log sys' changes its level");
        module->log_mask = a.number("LEVEL");
    }
    const bool was_up = module->module_object;
    if (s.call(&Calls::ovk_ethernet_init) != 0 || was_up)
        return;
    Words trees = sim::trees(s.host.rte());
    const Words sets = sim::ordered_sets(s.host.rte()); // which stand among them
    trees.insert(trees.end(), sets.begin(), sets.end());
    s.trees = tree_uses(s.last_calls(), trees);
    s.chip_at_start = s.host.image();
}

// As a host does it: through the service record, which leads to the code that was loaded last.
void shutdown(Session &s, const Arguments &)
{
    const auto record = s.host.service_record();
    const auto call =
        record && record->shutdown ? record->shutdown : s.library.calls().ovk_ethernet_shutdown;
    s.call(call);
    if (s.host.module()->module_object)
        return;
    s.trees.clear();
    // What lives on of them belongs to no module: a later one would trip over their records.
    for (const auto &[name, interface] : s.interfaces) {
        if (!interface.dead)
            std::printf("%s was still there; its name is forgotten\n", name.c_str());
    }
    s.interfaces.clear();
}

struct RemoveFile {
    void operator()(const std::string *name) const
    {
        std::error_code none;
        std::filesystem::remove(*name, none);
    }
};

void reload(Session &s, const Arguments &)
{
    std::string name = std::filesystem::temp_directory_path() / "ovk-shell-XXXXXX";
    const int file = mkstemp(name.data());
    if (file < 0)
        throw Failure("no temporary file can be made in " + name);
    close(file);
    const std::unique_ptr<const std::string, RemoveFile> removed(&name);
    std::filesystem::copy_file(s.origin, name, std::filesystem::copy_options::overwrite_existing);
    Library fresh(name);
    const void *old_base = s.library.base();
    if (fresh.base() == old_base)
        throw Failure("the copy wasn't loaded anew: it has the address of the first");
    if (s.call(fresh.calls().ovk_ethernet_service_function_update) != 0) {
        s.retired.push_back(std::move(fresh)); // addresses of it may have got through before the failure
        return;
    }
    const auto record = s.host.service_record();
    if (!record || base_of(reinterpret_cast<const void *>(record->shutdown)) != fresh.base()) {
        s.retired.push_back(std::move(fresh));
        throw Failure("the service record doesn't lead to the new code");
    }
    const auto distance =
        reinterpret_cast<std::intptr_t>(fresh.base()) - reinterpret_cast<std::intptr_t>(old_base);
    s.library = std::move(fresh); // the old code goes
    if (base_of(old_base))
        throw Failure("the old code is still there");
    std::printf("loaded anew at another address: %+lld bytes away; the old code is gone\n",
                static_cast<long long>(distance));
}

void exception_configure(Session &s, const Arguments &a)
{
    const auto priority = static_cast<u8>(a.number("priority"));
    const u32 cpu_queue = a.number("cpu_queue");
    ovk_ethernet_exception_action action{};
    action.type = a.number("ACTION");
    switch (action.type) {
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU:
        action.send_to_cpu = {priority,
                              a.number("param"),
                              {static_cast<u8>(cpu_queue >> 8), static_cast<u8>(cpu_queue)},
                              a.number("queue")};
        break;
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_BDL:
        action.send_to_bdl = {priority, static_cast<u16>(a.number("bdl_queue")), a.number("queue")};
        break;
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_PORT:
        action.send_to_port = {s.interface(a.text("interface")), priority, a.number("queue")};
        break;
    case OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_TVU_FUNC:
        action.send_to_tvu_func = {a.given("function") ? a.text("function").c_str() : nullptr};
        break;
    default:
        break;
    }
    s.call(&Calls::ovk_ethernet_exception_configure, a.number("DOMAIN"), a.number("TYPE"), &action);
}

constexpr u32 to_cpu = 1U << OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_CPU;
constexpr u32 to_bdl = 1U << OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_BDL;
constexpr u32 to_port = 1U << OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_PORT;
constexpr u32 to_function = 1U << OVK_ETHERNET_EXCEPTION_ACTION_TYPE_SEND_TO_TVU_FUNC;

} // namespace

void add_module_commands(CommandTable &table)
{
    const Parameter mask = number("MASK");
    const Parameter level = number("LEVEL", "a log level: 0, 1, 3, 7 or 15");
    table.group("Module");
    table.add("init", {optional(level)}, "Starts the module, at a log level if one is given.", "7", init);
    table.add("shutdown", {}, "Stops the module, through the service record that it registered.", "",
              shutdown);
    table.add("reload", {},
              "Loads a copy of the library at another address, lets it take the module over, and unloads "
              "the old code.",
              "", reload);
    table.add("log level", {mask}, "Sets the log mask: a level in the low nibble, flags above.", "0xf",
              call<&Calls::ovk_ethernet_log_level_set, "MASK">);
    table.add("log enable", {mask}, "Adds bits to the log mask.", "0x8",
              call<&Calls::ovk_ethernet_log_enable, "MASK">);
    table.add("log disable", {mask}, "Takes bits from the log mask.", "0x8",
              call<&Calls::ovk_ethernet_log_disable, "MASK">);
    table.add("log sys", {level}, "Sets the system's log level.", "3",
              call<&Calls::ovk_ethernet_sys_log, "LEVEL">);
    table.add("exception configure",
              {number("DOMAIN", "a domain: 0, 2 or 3"), one_of("TYPE", exception_types),
               one_of("ACTION", exception_actions),
               key(number("priority", "", 0xFF), to_cpu | to_bdl | to_port), key(number("param"), to_cpu),
               key(byte_pair("cpu_queue"), to_cpu), key(number("bdl_queue", "", 0xFFFF), to_bdl),
               key(queue("queue"), to_cpu | to_bdl | to_port), key(interface("interface"), to_port),
               key(function("function"), to_function)},
              "Says what happens to frames that the classifier can't serve.",
              "0 unknown_dest_mac send_to_cpu priority=5 cpu_queue=1.2 queue=q3", exception_configure);
}

} // namespace shell
