// SPDX-License-Identifier: Apache-2.0
/*
 * World: all state of the simulated platform, in one record, so that starting over is one assignment.
 *
 * Reached only with world_mutex() held: by platform operations through platform<>, by everything else
 * through a Guard. What an operation is given wrong ends in wrong() (call.h), so the finders here return
 * references and don't come back without a result.
 */
#ifndef OVK_SIM_WORLD_H
#define OVK_SIM_WORLD_H

#include "core.h"
#include "kor_rsrc.h"
#include "kor_subnet.h"
#include "kor_time.h"
#include "kor_vp.h"
#include "ordered_set.h"
#include "port.h"
#include "prefix_table.h"

#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

/* The object behind a pattern. It stays when freed, so that late use is seen. */
struct kor_ptn_data {
    enum : u32 {
        live = 0x5054414C,
        freed = 0x50544644
    };
    u32 state = live;
    sim::Bits bits;
};

namespace sim {

/*
 * A name of the classifier's programme: a function, a tree, or an ordered tree set. Ids are indices into
 * the programme.
 */
struct Symbol {
    std::string name;
    std::unique_ptr<Tree> tree{};          /* null if it isn't one */
    std::unique_ptr<OrderedSet> ordered{}; /* likewise */
};

using Memory =
    std::unordered_map<u32, std::vector<u8>>; /* by namespace id; what was never written is zero */

/* By number of the pipeline, bank and index. */
using FlowData = std::map<std::array<u32, 3>, std::array<u8, KOR_VP_FLOW_DATA_SIZE>>;

struct Service {
    std::string module_name;
    ovk_service_record record;
};

/* Everything that belongs to one rte handle. */
struct Chip {
    explicit Chip(u32 number);
    Symbol *find_symbol(std::string_view name); /* prefix included; null if absent or hidden */
    std::string function_name(u32 id) const;    /* "0x12" when the id is none */
    bool is_function(u32 id) const;

    u32 ordinal; /* of all chips since the last reset */
    u32 first_id;
    std::vector<Symbol> programme;
    std::map<std::string, u32, std::less<>> symbols; /* name -> index */
    std::set<std::string, std::less<>> hidden;
    bool strict_unlearn = false;
    Memory state;
    Memory shared;
    FlowData flow_data;
    std::map<u32, Port> ports; /* by MAC channel; all that there are */
    std::map<u32, SwitchPort> switch_ports;
    std::map<u32, kor_gatr_bridging_vp> bridging_vps;
    std::map<u8, u64> destination_vps;
    std::map<u32, u64> vlan_vps;
    std::map<u16, u32> demux;                                   /* port value -> id of a function */
    std::map<std::array<u8, 12>, kor_gatr_bridge_entry> bridge; /* by kind, group, MAC in network order */
    std::map<std::string, u64> registers;
    std::map<const ovk_module *, Service> services;
};

struct Namespace {
    kor_rte rte = 0;
    u32 kind = 0;
    std::string name;
    bool created = false; /* by a module; the chip's own can't be destroyed */
    u32 first_id = 0;
    std::vector<bool> taken;
    u32 in_use = 0;
};

struct FreeBlock {
    void operator()(void *block) const { std::free(block); } // NOLINT(cppcoreguidelines-no-malloc)
};

struct Block {
    std::unique_ptr<void, FreeBlock> memory;
    std::size_t size = 0;
    u64 number = 0; /* of all blocks since the last reset */
    u64 sum = 0;    /* of its bytes, when it was freed */
};

struct Heap {
    std::unordered_map<const void *, Block> live;
    std::unordered_map<const void *, Block> freed; /* the quarantine */
    std::deque<const void *> freed_order;
    std::size_t live_bytes = 0;
    std::size_t freed_bytes = 0;
    std::size_t freed_limit = ~std::size_t{0};
    u64 blocks = 0;
};

struct Lock {
    u32 depth = 0;
    std::thread::id holder;
    std::condition_variable released;
};

struct JournalEntry {
    u32 op;
    std::string text;
};

struct ArmedFault {
    u32 op; /* number of operations: any */
    u32 countdown;
    u32 status;
    bool always = false;
    u32 per_operation = 0;
    std::vector<u32> seen{}; /* calls of each operation; of a fault on any operation only */
};

struct World {
    World();

    std::map<kor_rte, std::unique_ptr<Chip>> chips;
    u32 chips_made = 0;
    std::map<kor_rsrc, Namespace> namespaces;
    u32 namespaces_made = 0;
    std::map<kor_subnet, Database> databases;
    u32 databases_made = 0;
    Heap heap;
    std::map<u32, std::shared_ptr<Lock>> locks;
    std::deque<kor_ptn_data> patterns;
    std::size_t live_patterns = 0;
    kor_time now{};
    bool journal_on = false;
    std::vector<JournalEntry> journal;
    std::vector<std::string> misuse;
    std::vector<ArmedFault> faults;
    std::vector<u32> fired;
    std::vector<traces::Record> traces;
    u64 epoch = 0; /* resets before this world */
};

std::mutex &world_mutex();
World &world();

struct Guard : std::lock_guard<std::mutex> {
    Guard() : std::lock_guard<std::mutex>(world_mutex()) {}
};

/* Subjects' shares of the whole. */
extern const std::string programme_prefix; /* "ovk_ethernet."; programme.cpp */
void add_namespaces(kor_rte rte);          /* those that a chip brings; namespaces.cpp */
bool brings_namespace(std::string_view name);
bool has_pipeline(std::string_view name); /* pipelines.cpp */
std::string pipeline_name(u32 number);    /* as in FlowData; pipelines.cpp */
void lock_init(kor_sem &lock);            /* lock.cpp */
void check_freed_blocks();                /* that nobody has written to them; heap.cpp */
void traces_reset();                      /* log.cpp */

/* MAC channels; channels.cpp, and port_image.cpp for the last. */
Port power_on_port(u32 channel);
SwitchPort power_on_switch_port();
kor_gatr_bridging_vp power_on_bridging_vp();
Port &port_at(kor_rte rte, u32 channel);
SwitchPort &switch_port_at(kor_rte rte, u32 channel);
void check_on_off(u32 value, const char *what);
void check_vlan(u32 vlan);
void add_port_lines(std::vector<std::string> &lines, const Chip &on);

/*
 * The chip of a handle. The calling thread is then speaking to that chip: databases are made without a
 * handle and belong to the chip spoken to last.
 */
Chip &chip(kor_rte rte);
kor_rte spoken_to();

/* The chip of a system: the one that its system module runs on. */
Chip &chip_of(const ovk_system *parent);

/* The chip that a test or a tool asks about; throws std::invalid_argument. */
Chip &asked_chip(kor_rte rte);

Symbol &tree_symbol(Chip &on, u32 tree_id);
Database &database_of(kor_subnet db);
const kor_ptn_data &live_data(const kor_ptn *pattern);
std::string text(const Chip &on, const kor_ptn_action &action);
std::string hex(const void *bytes, std::size_t count);

} // namespace sim

#endif
