// SPDX-License-Identifier: Apache-2.0
// The shared library, loaded as a host loads it: by path, with its symbols kept to itself, its public calls
// found by name, and the platform's operations found in this program.
#ifndef OVK_SHELL_LIBRARY_H
#define OVK_SHELL_LIBRARY_H

#include "ovk_ethernet.h"

#include <memory>
#include <string>

// Every public call, once. Loading fails when the library lacks one.
#define OVK_SHELL_CALLS(CALL)                                                                              \
    CALL(ovk_ethernet_init)                                                                                \
    CALL(ovk_ethernet_shutdown)                                                                            \
    CALL(ovk_ethernet_service_function_update)                                                             \
    CALL(ovk_ethernet_log_level_set)                                                                       \
    CALL(ovk_ethernet_log_enable)                                                                          \
    CALL(ovk_ethernet_log_disable)                                                                         \
    CALL(ovk_ethernet_sys_log)                                                                             \
    CALL(ovk_ethernet_exception_configure)                                                                 \
    CALL(ovk_ethernet_interface_create)                                                                    \
    CALL(ovk_ethernet_interface_delete)                                                                    \
    CALL(ovk_ethernet_port_attributes_override)                                                            \
    CALL(ovk_ethernet_port_number_get)                                                                     \
    CALL(ovk_ethernet_interface_handle_get)                                                                \
    CALL(ovk_ethernet_interface_id_get)                                                                    \
    CALL(ovk_ethernet_promiscuous_mode)                                                                    \
    CALL(ovk_ethernet_flow_filter)                                                                         \
    CALL(ovk_ethernet_recv_mac_add)                                                                        \
    CALL(ovk_ethernet_recv_mac_del)                                                                        \
    CALL(ovk_ethernet_output_rate_set)                                                                     \
    CALL(ovk_ethernet_interface_tx)                                                                        \
    CALL(ovk_ethernet_interface_rx)                                                                        \
    CALL(ovk_ethernet_interface_duplex)                                                                    \
    CALL(ovk_ethernet_interface_autoneg)                                                                   \
    CALL(ovk_ethernet_autoneg_force)                                                                       \
    CALL(ovk_ethernet_mac_channel_get)                                                                     \
    CALL(ovk_ethernet_port_status_get)                                                                     \
    CALL(ovk_ethernet_flow_control)                                                                        \
    CALL(ovk_ethernet_port_loopback)                                                                       \
    CALL(ovk_ethernet_pcp_to_task_pri_map)                                                                 \
    CALL(ovk_ethernet_vlan_id_add)                                                                         \
    CALL(ovk_ethernet_vlan_id_del)                                                                         \
    CALL(ovk_ethernet_port_egress_vlan_config)                                                             \
    CALL(ovk_ethernet_port_egress_vlan_config_del)                                                         \
    CALL(ovk_ethernet_mac_aging_timer_config)                                                              \
    CALL(ovk_ethernet_port_statistics_get)                                                                 \
    CALL(ovk_ethernet_l2_interface_statistics_get)                                                         \
    CALL(ovk_ethernet_interface_statistics_get)                                                            \
    CALL(ovk_ethernet_global_statistics_get)                                                               \
    CALL(ovk_ethernet_report_crcerror)                                                                     \
    CALL(ovk_ethernet_port_stats_print)                                                                    \
    CALL(ovk_ethernet_if_stats_print)                                                                      \
    CALL(ovk_ethernet_global_stats_print)                                                                  \
    CALL(ovk_ethernet_l2_interface_statistics_print)

namespace shell {

struct Calls {
#define OVK_SHELL_CALL(name) decltype(&::name) name = nullptr;
    OVK_SHELL_CALLS(OVK_SHELL_CALL)
#undef OVK_SHELL_CALL
};

// One loaded copy, unloaded with the object. The constructor throws Failure.
class Library {
  public:
    explicit Library(const std::string &file);

    const Calls &calls() const { return calls_; }
    const std::string &path() const { return path_; } // where the loader found it
    const void *base() const { return base_; }

  private:
    struct Unload {
        void operator()(void *handle) const;
    };
    std::unique_ptr<void, Unload> handle_;
    Calls calls_;
    std::string path_;
    const void *base_ = nullptr;
};

// The base of the loaded object that the address lies in; null when nothing is mapped there.
const void *base_of(const void *address);

// The library that is used when none is named: the one that was built with this program, the one beside
// it, or whatever the loader finds.
std::string default_library();

} // namespace shell

#endif
