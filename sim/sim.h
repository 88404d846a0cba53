// SPDX-License-Identifier: Apache-2.0
/*
 * The simulated platform: a network processor, its run-time environment and the host's sibling modules, in
 * one process.
 *
 * It implements every operation that platform/ declares. It keeps real state, checks what it is given, and
 * tells what happened:
 *
 *   core.h        start over; the journal of calls; faults; misuse; virtual time; traces; heap; locks
 *   chip.h        read a chip back: rules, look-ups, databases, memory, ids, registers, whole images
 *   port.h        the registers of a MAC channel, in port adapter and switch; its counters
 *   host.h        a chip and a filled-in module handle
 *   fault_loop.h  a scenario, once for each call that can fail
 *
 * A chip is what one rte handle stands for, and several live side by side. Heap, locks, journal, faults,
 * time, traces, queues and the LLS pool are the process's.
 *
 * Link it statically beside the library's objects, or into a program that loads the shared object, which
 * finds the operations in the program (export them, and link the archive whole).
 *
 * All state is one World behind one mutex; waiting for a lock gives the mutex up. An operation is
 * platform<"its name">(its arguments for the journal, what it does): a new one needs a row in call.h, and
 * its state a member of Chip or World and a line in image.cpp. Wrong use throws inside the operation,
 * becomes a line of misuse() and returns status_misuse; nothing is thrown across an operation.
 */
#ifndef OVK_SIM_SIM_H
#define OVK_SIM_SIM_H

#include "chip.h"
#include "core.h"
#include "fault_loop.h"
#include "host.h"

#endif
