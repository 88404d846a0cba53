/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_module: the host's records of its modules, and the registry of their services.
 *
 * The host owns every record here and keeps it at its address for the life of the module. A module writes
 * only `log_mask` and `module_object` of its own handle.
 */
#ifndef OVK_MODULE_H
#define OVK_MODULE_H

#include "kor_sem.h"
#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The value of a live module handle's guard word, filled in by the host. */
#define OVK_MODULE_GUARD 0x53248791u

struct ovk_rw_lock;
struct ovk_system;
struct ovk_bind_info;

typedef struct ovk_module {
    u32 guard;               /* OVK_MODULE_GUARD */
    u32 log_mask;            /* level in the low nibble, class flags above; a system level before init */
    const char *module_name; /* the word printed in the head of each log line */
    u32 trace_ctx;           /* handed to ovk_lttng_fn_ptr_get() */
    kor_sem *module_lock;    /* serialises the module's calls; may be null */
    struct ovk_rw_lock *rw_lock; /* taken by the table dump alone; may be null */
    struct ovk_system *parent;   /* may be null only when module_lock is null */
    kor_rte rte_handle;          /* passed first to the kor_ operations */
    void *module_object;         /* null until initialisation has finished */
} ovk_module;

/* The enclosing system. */
typedef struct ovk_system {
    u32 global_log_mask;    /* added to every module's own mask */
    ovk_module *sys_module; /* lock failures are reported in this module's name */
} ovk_system;

/*
 * What a module hands to the host: entry points that the host may call by slot, null where the module has
 * none, and two classifier function ids that other modules bind to. 76 bytes on the target.
 */
typedef struct ovk_service_record {
    u32 (*shutdown)(ovk_module *module);
    void (*reserved_4[4])(void);
    u32 (*custom_bind)(ovk_module *module, struct ovk_bind_info *bind_info);
    u32 (*custom_unbind)(ovk_module *module, struct ovk_bind_info *bind_info);
    void (*reserved_28[3])(void);
    u32 (*get_imc)(ovk_module *module, struct ovk_bind_info *bind_info, u32 *fn_id);
    u32 (*get_entry_func)(ovk_module *module, struct ovk_bind_info *bind_info, u32 *fn_id);
    u16 reserved_48;
    u16 indirect_fn_id;
    u16 reserved_52;
    u16 direct_fn_id;
    void (*reserved_56[2])(void);
    u32 (*sys_log)(ovk_module *module, u32 level);
    const char *(*error_name)(u32 status);
    void (*reserved_72)(void);
} ovk_service_record;

/* Registers the module's services. The record is copied. Returns 0 or a platform status. */
u32 ovk_module_service_function_register(ovk_system *parent, ovk_module *module,
                                         const ovk_service_record *record);

/* Renews the code addresses of a registered module after a reload. The record's ids are not looked at. */
u32 ovk_module_service_function_update(ovk_system *parent, ovk_module *module,
                                       const ovk_service_record *record);

#ifdef __cplusplus
}
#endif

#endif
