/* SPDX-License-Identifier: Apache-2.0 */
/*
 * kor_rsrc: namespaces, the id pools of the run-time environment.
 *
 * A namespace has a name and a kind. The classifier programme and the host bring some with them, which are
 * found by name; a module may create more. Ids are opaque u32 values; those of the namespaces that address
 * state memory are disjoint. All operations return 0 or a platform status.
 */
#ifndef KOR_RSRC_H
#define KOR_RSRC_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Handle of a namespace. 0 is the host's own pool of LLS flow ids, which nobody creates or finds. */
typedef u32 kor_rsrc;

enum kor_rsrc_kind {
    KOR_RSRC_STATE = 0,  /* ids that address state memory */
    KOR_RSRC_SWITCH = 3, /* the switch front end's ids */
    KOR_RSRC_POOL = 5    /* plain ids that a module creates for itself */
};

typedef struct kor_rsrc_info {
    u32 first_id; /* the first id that fixed allocations may take */
    u32 max_ids;
    u32 ids_in_use;
} kor_rsrc_info;

/* Creates the namespace `name` of `kind` for `max_ids` ids. A name that is there already is refused. */
u32 kor_rsrc_create(kor_rte rte, u32 kind, const char *name, u32 max_ids, u32 flags, kor_rsrc *out);

/* Finds the namespace `name` of `kind`. */
u32 kor_rsrc_find(kor_rte rte, u32 kind, const char *name, kor_rsrc *out);

/* Fills `out` with the namespace's figures. */
u32 kor_rsrc_query(kor_rsrc ns, kor_rsrc_info *out);

/* Takes exactly the `count` ids from `*first_id` on. Refused as a whole if one of them is taken. */
u32 kor_rsrc_allocate_fixed(kor_rsrc ns, u32 count, u32 *first_id);

/* Gives back `count` ids from `id` on. */
u32 kor_rsrc_free(kor_rsrc ns, u32 id, u32 count);

/* Removes a created namespace with whatever ids are still out. */
u32 kor_rsrc_destroy(kor_rte rte, kor_rsrc ns);

#ifdef __cplusplus
}
#endif

#endif
