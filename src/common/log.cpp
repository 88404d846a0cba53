// SPDX-License-Identifier: Apache-2.0
#include "common/log.h"

#include <cstring>

#include "kor_time.h"

namespace ovk {

void print_head(const char *name, log_class cls, site where)
{
    std::printf("[%s_log: %s]", name, row_of(cls).word);
    std::printf(" %s:%d ", where.file, static_cast<int>(where.line));
}

void print_line(const char *text)
{
    const size_t length = std::strlen(text);
    if (length != 0 && text[length - 1] == '\n')
        std::fputs(text, stdout);
    else
        std::puts(text);
}

void trace_nothing(ovk_module * /*module*/, u32 /*line*/, const char * /*file*/, const char * /*format*/,
                   ...)
{
}

void log_status(ovk_module *module, log_class cls, site where, u32 status)
{
    const char *text = ovk_sys_status_get(module->parent, status);
    if (prints(module, cls)) {
        print_head(module->module_name, cls, where);
        print_line(text);
    }
    trace_message(module, cls, where, "%s\n", text);
}

void print_time_stamped(ovk_module *module, log_class cls, site where, const char *function)
{
    kor_time now = {};
    (void)kor_gettime(&now);
    const auto seconds = static_cast<unsigned long>(now.seconds);
    const auto fraction = static_cast<unsigned long>(now.nanoseconds);
    print_head(module->module_name, cls, where);
    if (cls == log_class::entry)
        std::printf("[%08lu:%08lu] Entering %s\n", seconds, fraction, function);
    else
        std::printf("[%08lu:%08lu] Exiting %s\n", seconds, fraction, function);
}

} // namespace ovk
