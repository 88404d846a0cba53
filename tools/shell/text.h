// SPDX-License-Identifier: Apache-2.0
// Small things about words and columns.
#ifndef OVK_SHELL_TEXT_H
#define OVK_SHELL_TEXT_H

#include "kor_types.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace shell {

using Words = std::vector<std::string>;

Words split(std::string_view line); // at blanks
std::string join(const Words &words, const char *separator = ", ");
std::string lower(std::string_view text);
bool same(std::string_view a, std::string_view b); // whatever the case

// In quotes, fit for a terminal: control bytes as escapes, a long text cut.
std::string quoted(std::string_view text);

// As printf would put it.
std::string format(const char *format, ...) __attribute__((format(printf, 1, 2)));

// Decimal, or hexadecimal behind 0x. Nothing else: no sign, no blanks, no overflow.
std::optional<u64> to_number(std::string_view text);

// The few of `names` that `word` may have been meant to be, best first.
Words near(std::string_view word, const Words &names);
std::string hint(const Words &names); // a message's end that offers them; empty without any

// Columns as wide as their widest cell; those with nothing but numbers under their heading stand to the
// right.
class Table {
  public:
    explicit Table(Words headings) { add(std::move(headings)); }
    void add(Words row) { rows_.push_back(std::move(row)); }
    // Says `without_rows` instead of headings alone.
    void print(const char *without_rows = "") const;

  private:
    std::vector<Words> rows_;
};

} // namespace shell

#endif
