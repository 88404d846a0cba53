// SPDX-License-Identifier: Apache-2.0
//
// What is printed and traced, and the calls that steer it.
#include "common/log.h"

#include "support.h"

namespace {

using namespace test;
using ovk::log_class;

using LogWithoutModule = HostTest;
using Log = ModuleTest;

constexpr ovk::site place{"some_module", 7};

struct class_row {
    log_class cls;
    const char *word;
    u32 event;
    u32 prints; // a level, or above those a bit
};

// clang-format off
constexpr class_row class_rows[] = {
    {log_class::info, "info", 0, 15}, {log_class::error, "ERROR", 2, 3}, {log_class::fatal, "FATAL", 4, 1},
    {log_class::warning, "Warning", 6, 7}, {log_class::entry, "function", 8, 0x10},
    {log_class::exit, "function", 9, 0x10}, {log_class::hw, "hw", 14, 0x20},
    {log_class::ptn_learn, "ptn_learn", 15, 0x40}, {log_class::ptn_unlearn, "ptn_unlearn", 16, 0x40},
    {log_class::subnet_add, "subnet_add", 17, 0x100}, {log_class::subnet_delete, "subnet_delete", 18, 0x100},
    {log_class::subnet_get, "subnet_get", 19, 0x100}, {log_class::vptn_learn, "vptn_learn", 20, 0x40},
    {log_class::vptn_unlearn, "vptn_unlearn", 21, 0x40}, {log_class::vptn_clear, "vptn_clear", 22, 0x40},
    {log_class::vptn_build, "vptn_build", 23, 0x40}, {log_class::se_write, "se_write", 27, 0x80},
    {log_class::se_read, "se_read", 28, 0x80}, {log_class::qsh_read, "qsh_read", 29, 0x80},
};
// clang-format on

TEST_F(LogWithoutModule, ClassPrintsByEitherMaskAndIsTracedByAny)
{
    sim::time::set(12, 345);
    sim::traces::on(true);
    u32 &own = module()->log_mask;
    u32 &global = host().parent()->global_log_mask;

    for (const class_row &row : class_rows) {
        SCOPED_TRACE(row.word);
        const bool passage = row.event == 8 || row.event == 9;
        const std::string stamped =
            row.event == 8 ? "[00000012:00000345] Entering" : "[00000012:00000345] Exiting";
        const std::string text = passage ? stamped + " x\n" : "to port 5\n";
        const std::string line = std::string("[ovk_ethernet_log: ") + row.word + "] some_module:7 " + text;
        const auto output = [&](u32 own_mask, u32 global_mask) {
            own = own_mask;
            global = global_mask;
            sim::traces::clear();
            const u64 times = sim::journal::count("kor_gettime");
            const std::string out = output_of([&] {
                if (passage)
                    ovk::log_passage(module(), row.cls, place, "x");
                else
                    ovk::log_message(module(), row.cls, place, "to port %d\n", 5);
            });
            EXPECT_EQ(traced(), Lines{std::to_string(row.event) + (passage ? " x" : " to port 5\n")});
            const sim::traces::Record record = sim::traces::records().at(0);
            EXPECT_TRUE(record.file == place.file && record.line == place.line);
            // The time is read for a line that shows it, and for no other.
            EXPECT_EQ(sim::journal::count("kor_gettime") - times, passage && !out.empty());
            return out;
        };
        EXPECT_EQ(output(row.prints, 0), line);
        EXPECT_EQ(output(0, row.prints), line);
        // The highest mask that keeps it in has each bit set that isn't the class's.
        const u32 silent = row.prints < 16 ? 0xFFFFFFF0 + row.prints - 1 : ~row.prints;
        EXPECT_EQ(output(silent, silent), "");
        EXPECT_EQ(output(0, 0), "");
    }

    own = 3;
    module()->parent = nullptr;
    EXPECT_NE(output_of([&] { ovk::log_message(module(), log_class::error, place, "x"); }), "");
    own = 0;
    EXPECT_EQ(output_of([&] { ovk::log_message(module(), log_class::error, place, "x"); }), "");
}

TEST_F(LogWithoutModule, TextWithoutArgumentsIsALineAndAFormatStandsAsItIs)
{
    module()->log_mask = 15;
    sim::traces::on(true);
    const std::string head = "[ovk_ethernet_log: info] some_module:7 ";
    const auto output = [&](auto... args) {
        return output_of([&] { ovk::log_message(module(), log_class::info, place, args...); });
    };
    EXPECT_EQ(output("bare"), head + "bare\n");
    EXPECT_EQ(output("ended\n"), head + "ended\n");
    EXPECT_EQ(output("two lines\n\n"), head + "two lines\n\n");
    EXPECT_EQ(output(""), head + "\n");
    EXPECT_EQ(output("%s%%", "bare"), head + "bare%");
    EXPECT_EQ(output("%s\n", "ended"), head + "ended\n");
    // Traces carry the text as it was given.
    EXPECT_EQ(traced(), (Lines{"0 bare", "0 ended\n", "0 two lines\n\n", "0 ", "0 bare%", "0 ended\n"}));
}

TEST_F(Log, FailureIsPairsOfLinesThatShareAPosition)
{
    module()->log_mask = 7;
    sim::traces::on(true);
    Lines positions = lines_of([&] { ovk_ethernet_exception_configure(module(), 1, 13, nullptr); });
    ASSERT_EQ(positions.size(), 4u);
    for (std::string &line : positions)
        line = line.substr(line.find("] ") + 2, line.find(' ', line.find("] ") + 2) - line.find("] ") - 2);
    EXPECT_EQ(positions[0], positions[1]);
    EXPECT_EQ(positions[2], positions[3]);
    EXPECT_NE(positions[0], positions[2]);

    // Traced from the same places.
    Lines traced_from;
    for (const sim::traces::Record &record : sim::traces::records())
        if (record.event == 2)
            traced_from.push_back(record.file + ':' + std::to_string(record.line));
    EXPECT_EQ(traced_from, positions);
}

struct mask_row {
    u32 (*call)(ovk_module *module, u32 argument);
    u32 before, argument, after;
    const char *line; // without the handle; null: the new mask lets none out
};

constexpr mask_row mask_rows[] = {
    {ovk_ethernet_log_level_set, 0, 0x8000004F, 0x8000004F, "Ethernet module log-level set to 0x8000004f"},
    {ovk_ethernet_log_level_set, 0xF, 5, 5, nullptr},
    {ovk_ethernet_log_enable, 0x40, 0x30F, 0x34F, "Enabled log-level 0x30f for Ethernet module"},
    {ovk_ethernet_log_enable, 0x84, 1, 0x85, nullptr},
    {ovk_ethernet_log_disable, 0x34F, 0x240, 0x10F, "Disabled log-level 0x240 for Ethernet module"},
    {ovk_ethernet_sys_log, 0, 15, 15, "Ethernet module log-level set to 0xf"},
    {ovk_ethernet_sys_log, 0xFFFFFFEF, 3, 3, nullptr},
};

TEST_F(Log, CallsChangeTheMaskAndReportUnderTheNewOne)
{
    for (const mask_row &row : mask_rows) {
        SCOPED_TRACE(row.argument);
        module()->log_mask = row.before;
        const Lines lines = messages_of([&] { EXPECT_EQ(row.call(module(), row.argument), 0u); });
        EXPECT_EQ(module()->log_mask, row.after);
        const std::string handle = "module " + hex(module());
        EXPECT_EQ(lines, row.line == nullptr
                             ? Lines{}
                             : Lines{"[ovk_ethernet_log: info] " +
                                     std::regex_replace(row.line, std::regex("module"), handle)});
    }

    // Of the passage lines, too, only those after the change.
    sim::time::set(5, 67);
    module()->log_mask = 0;
    EXPECT_EQ(
        messages_of([&] { EXPECT_EQ(ovk_ethernet_log_level_set(module(), 0x1F), 0u); }),
        (Lines{"[ovk_ethernet_log: info] Ethernet module " + hex(module()) + " log-level set to 0x1f",
               "[ovk_ethernet_log: function] [00000005:00000067] Exiting ovk_ethernet_log_level_set"}));
}

TEST_F(Log, SystemLevelsAreFive)
{
    for (u32 level = 0; level < 40; level++) {
        const bool known = level == 0 || level == 1 || level == 3 || level == 7 || level == 15;
        module()->log_mask = 0x147;
        const Lines lines =
            messages_of([&] { EXPECT_EQ(ovk_ethernet_sys_log(module(), level), known ? 0u : 15u); });
        EXPECT_EQ(module()->log_mask, known ? level : 0x147u);
        if (!known) {
            EXPECT_EQ(lines, Lines{"[ovk_ethernet_log: Warning] Unsupported log-level in Ethernet!"} +
                                 failure("Failed to set log-level " + std::to_string(level), 15));
        }
    }
}

TEST_F(LogWithoutModule, ShutdownTurnsTheMaskBackIntoASystemLevel)
{
    constexpr u32 masks[][2] = {{0, 0}, {1, 1}, {0x10, 1},  {0x80000000, 1}, {2, 3},   {0x13, 3},
                                {4, 7}, {7, 7}, {0x146, 7}, {8, 15},         {15, 15}, {0x1FC, 15}};
    for (const auto &[mask, level] : masks) {
        start_over();
        EXPECT_EQ(ovk_ethernet_init(module()), 0u);
        module()->log_mask = mask;
        lines_of([&] { EXPECT_EQ(ovk_ethernet_shutdown(module()), 0u); });
        EXPECT_EQ(module()->log_mask, level) << mask;
    }
}

} // namespace
