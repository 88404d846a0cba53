// SPDX-License-Identifier: Apache-2.0
/*
 * Reading a chip back, and setting it up: what a test or a tool may ask of one rte handle.
 *
 * Everything is copied out under the simulator's lock. An rte handle, tree, namespace or database that
 * isn't there is a mistake of the asker and throws std::invalid_argument.
 */
#ifndef OVK_SIM_CHIP_H
#define OVK_SIM_CHIP_H

#include "core.h"
#include "kor_rsrc.h"
#include "kor_subnet.h"
#include "ordered_set.h"
#include "ovk_qos.h"
#include "port.h"
#include "prefix_table.h"

namespace sim {

/* A new chip with its programme and namespaces; remove it with everything that belongs to it. */
kor_rte chip_add();
void chip_remove(kor_rte rte);

/*
 * Hides a symbol of the programme (prefix included), a virtual pipeline or a namespace that the chip
 * brings: looking it up fails. False for a name that the chip hasn't got.
 */
bool hide(kor_rte rte, std::string_view name, bool hidden = true);
std::vector<std::string> symbols(kor_rte rte); /* all names of the programme */

/* Trees, by name with or without "ovk_ethernet." */
struct Field {
    u64 value;
    u32 bits; /* 0 to 64 */
};
std::vector<std::string> trees(kor_rte rte);
std::vector<Rule> rules(kor_rte rte, std::string_view tree); /* in order of bits, holes among them */
std::optional<kor_ptn_action> rule(kor_rte rte, std::string_view tree, const std::vector<Field> &key);
Answer lookup(kor_rte rte, std::string_view tree, const std::vector<Field> &key); /* longest prefix */
std::string action_text(kor_rte rte, const kor_ptn_action &action);

/*
 * Ordered tree sets, by name with or without "ovk_ethernet." A list that was never touched is empty.
 * `frame` is all fields behind the selector, each in full width; nothing when no rule in force takes it.
 */
std::vector<std::string> ordered_sets(kor_rte rte);
OrderedSet ordered_set(kor_rte rte, std::string_view tree);
OrderedList ordered_list(kor_rte rte, std::string_view tree, u32 selector);
std::optional<Hit> association_match(kor_rte rte, std::string_view tree, u32 selector,
                                     const std::vector<Field> &frame);

/* Makes every unlearn of an absent rule fail. Otherwise one succeeds that replaces at the tree's full
 * width. */
void strict_unlearn(kor_rte rte, bool on);

std::vector<Rule> database(kor_subnet db); /* in order of bits, without the root */
std::optional<kor_ptn_action> database_root(kor_subnet db);

/* Memory by namespace id: what was written, zeros before. `put` writes as the chip itself would. */
std::vector<u8> state(kor_rte rte, u32 id, u32 size);
void state_put(kor_rte rte, u32 id, u32 offset, const std::vector<u8> &bytes);
std::vector<u8> shared(kor_rte rte, u32 id, u32 size);
void shared_put(kor_rte rte, u32 id, const std::vector<u8> &bytes);

/* A virtual pipeline's flow data, by the pipeline's name: 136 bytes, zeros if never written. */
std::vector<u8> flow_data(kor_rte rte, std::string_view pipeline, u32 bank, u32 index);

/* The demultiplexer: port value -> id of the classifier function. */
std::map<u16, u32> demux(kor_rte rte);

/* Ids that are out, in order. "lls_flows" is the host's pool, the same for all chips. */
std::vector<u32> ids_in_use(kor_rte rte, std::string_view name);
std::vector<std::string> namespaces(kor_rte rte);

/* What ports share; switch.cpp lists the registers. One never set isn't there. port.h has ports. */
std::vector<kor_gatr_bridge_entry> bridge_entries(kor_rte rte); /* by kind, group, MAC */
std::map<std::string, u64> registers(kor_rte rte);

/* The service record that a module registered. */
std::optional<ovk_service_record> service_record(const ovk_module *module);

/* Queues 0x51000001 + n with the ids 0x100 + n for n 0 to 15: all that the QoS module has handed out. */
inline constexpr ovk_queue_handle first_queue = 0x51000001;
inline constexpr u32 first_queue_id = 0x100;
inline constexpr u32 queue_count = 16;

/*
 * All of a chip's state as text, one fact a line, sorted. No addresses, so that images compare as strings.
 * Memory that reads zero is no fact. diff: the lines gone ("- ...") and new ("+ ...").
 */
std::string image(kor_rte rte);
std::vector<std::string> image_diff(const std::string &before, const std::string &after);

} // namespace sim

#endif
