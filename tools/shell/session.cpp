// SPDX-License-Identifier: Apache-2.0
#include "session.h"

#include "command.h"
#include "ovk_eth_helper/names.h"
#include "ovk_sys.h"

#include <cstdio>

namespace shell {

u32 Session::made(const std::function<u32()> &call)
{
    sim::journal_on(true);
    last_status = call();
    sim::journal_on(false);
    last_calls_ = sim::journal::entries();
    sim::journal::clear();
    if (journal_on)
        journal.insert(journal.end(), last_calls_.begin(), last_calls_.end());
    ++calls_made;
    std::printf("-> %s\n", status_text(last_status).c_str());
    return last_status;
}

std::string Session::status_text(u32 status)
{
    if (status == 0)
        return "0 ok";
    char number[16];
    std::snprintf(number, sizeof number, status < 1000 ? "%u " : "0x%x ", status);
    const auto record = host.service_record();
    const auto name = record && record->error_name ? record->error_name : ovk_eth_error_name;
    const std::string_view unknown = name(0);
    const char *text = name(status) == unknown ? ovk_sys_status_get(host.parent(), status) : name(status);
    return std::string(number) + text;
}

ovk_ethernet_if_handle Session::interface(const std::string &name) const
{
    const auto at = interfaces.find(name);
    return at == interfaces.end() ? nullptr : at->second.handle;
}

u32 Session::channel(const std::string &name) const
{
    const auto at = interfaces.find(name);
    if (at == interfaces.end())
        throw Failure("the null handle is no port");
    return sim::channel_of(at->second.number).value();
}

std::string Session::name_of(ovk_ethernet_if_handle handle) const
{
    for (const auto &[name, interface] : interfaces) {
        if (interface.handle == handle && !interface.dead)
            return name;
    }
    return {};
}

std::string short_name(std::string_view name)
{
    const std::string_view prefix = programme_prefix;
    return std::string(name.substr(name.starts_with(prefix) ? prefix.size() : 0));
}

} // namespace shell
