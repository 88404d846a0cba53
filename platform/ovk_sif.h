/* SPDX-License-Identifier: Apache-2.0 */
/* ovk_sif: what the subnet and interface modules offer to their siblings. */
#ifndef OVK_SIF_H
#define OVK_SIF_H

#include "ovk_module.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Sizes in bytes of one entry of a subnet database for keys of `key_bits` bits, plain and optimized. `flag`
 * is 0 or 1. Returns 0 or a status, with the outputs untouched.
 */
u32 ovk_sif_max_subnet_entry_sz_get(u32 key_bits, u32 flag, u32 *size, u32 *optimized_size);

/* Which classifier function the packets of a port are handed to the CPU by. 8 bytes, not kept by reference.
 */
typedef struct ovk_sif_demux_entry {
    u32 entry_fn_id;
    u16 port_value;
} ovk_sif_demux_entry;

/* From the add to the remove, packets of the port reach the function. Return 0 or a status. */
u32 ovk_sif_netDriver_demux_add(ovk_system *parent, const ovk_sif_demux_entry *entry);
u32 ovk_sif_netDriver_demux_remove(ovk_system *parent, const ovk_sif_demux_entry *entry);

#ifdef __cplusplus
}
#endif

#endif
