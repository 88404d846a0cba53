// SPDX-License-Identifier: Apache-2.0
/*
 * Host: one chip and the host's records around it, ready for a module to start on.
 *
 * The module handle has guard, name, trace context, an initialised lock, a parent with a system module of
 * its own, and the rte handle of a new chip; its log level is a system level. Several hosts live side by
 * side. The records keep their addresses for the host's life; the chip goes with the host.
 */
#ifndef OVK_SIM_HOST_H
#define OVK_SIM_HOST_H

#include "chip.h"

namespace sim {

class Host {
  public:
    static constexpr u32 module_trace_ctx = 0x11;
    static constexpr u32 sys_trace_ctx = 0x22;

    explicit Host(u32 log_level = 0, const char *module_name = "ovk_ethernet");
    ~Host();
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    ovk_module *module() { return &module_; }
    ovk_module *sys() { return &sys_; }
    ovk_system *parent() { return &parent_; }
    kor_sem *lock() { return &lock_; }
    kor_rte rte() const { return module_.rte_handle; }
    std::optional<ovk_service_record> service_record() const { return sim::service_record(&module_); }
    std::string image() const { return sim::image(rte()); }

  private:
    kor_sem lock_{};
    ovk_module sys_{};
    ovk_system parent_{};
    ovk_module module_{};
    u64 epoch_;
};

} // namespace sim

#endif
