/* SPDX-License-Identifier: Apache-2.0 */
/*
 * ovk_lttng: trace events.
 *
 * Every log line goes to the trace function of its event, whatever the log masks say. A build without
 * tracing supplies a function that ignores its arguments.
 */
#ifndef OVK_LTTNG_H
#define OVK_LTTNG_H

#include "ovk_module.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * `format` and the arguments behind it are those of a printf. Entry and exit events have a null format and
 * the function's name behind it.
 */
typedef void (*ovk_lttng_fn)(ovk_module *module, u32 line, const char *file, const char *format, ...);

/* The trace function for the event `event_index` in `*fn`. Returns 0, or a status with `*fn` untouched. */
u32 ovk_lttng_fn_ptr_get(u32 trace_ctx, u32 event_index, ovk_lttng_fn *fn);

/* An error that has no valid module behind it. `module` is null. */
void ovk_lttng_trace_sif_force_error(ovk_module *module, u32 line, const char *file, const char *format,
                                     ...);

#ifdef __cplusplus
}
#endif

#endif
