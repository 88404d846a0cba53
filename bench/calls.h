// SPDX-License-Identifier: Apache-2.0
//
// The public calls that are measured, each beside its platform calls made directly: the same operations in
// the same order with the same arguments, and nothing between them. Both sides reach the platform through
// the same linkage: it is compiled apart from both, and nothing is optimized across.
#ifndef OVK_BENCH_CALLS_H
#define OVK_BENCH_CALLS_H

#include "ovk_module.h"

#include <iterator>
#include <map>
#include <string>

namespace bench {

struct Pair {
    const char *name;
    u32 (*call)(ovk_module *module);
    u32 (*direct)(ovk_module *module);
    std::map<std::string, u32> platform_calls; // exactly what either side makes, by operation
};

// Everything is configured on this domain and type.
inline constexpr u32 domain = 2;
inline constexpr u32 type = 10; // OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN_DEST_MAC
inline constexpr u32 type_code = 72;
inline constexpr u32 exception_id = 0x80020A;
inline constexpr u32 queue_handle = 0x51000001;
inline constexpr u32 cpu_param = 0x1234;
inline constexpr u32 priority = 5;
inline constexpr u32 cpu_queue = 0x0102;

u32 call_frame(ovk_module *module);
u32 call_send_to_cpu(ovk_module *module);
u32 call_drop(ovk_module *module);

u32 direct_frame(ovk_module *module);
u32 direct_send_to_cpu(ovk_module *module);
u32 direct_drop(ovk_module *module);

inline const Pair pairs[] = {
    {"frame",
     call_frame,
     direct_frame,
     {{"ovk_lttng_fn_ptr_get", 3}, {"trace", 3}, {"ovk_sys_sem_lock_wait", 1}, {"kor_sem_post", 1}}},
    {"send_to_cpu",
     call_send_to_cpu,
     direct_send_to_cpu,
     {{"ovk_lttng_fn_ptr_get", 20},
      {"trace", 20},
      {"ovk_sys_sem_lock_wait", 1},
      {"kor_sem_post", 1},
      {"ovk_qos_queue_id_get", 1},
      {"ovk_ptn_clear", 3},
      {"ovk_ptn_extend", 4},
      {"kor_ptn_learn", 3}}},
    {"drop",
     call_drop,
     direct_drop,
     {{"ovk_lttng_fn_ptr_get", 20},
      {"trace", 20},
      {"ovk_sys_sem_lock_wait", 1},
      {"kor_sem_post", 1},
      {"ovk_ptn_clear", 3},
      {"ovk_ptn_extend", 4},
      {"kor_ptn_unlearn", 3}}},
};

} // namespace bench

#endif
