// SPDX-License-Identifier: Apache-2.0
#include "text.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <numeric>

namespace shell {

namespace {

constexpr std::size_t longest_shown = 40;

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// How many letters have to be put in, taken out or changed to get from one to the other.
std::size_t distance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t change = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({change, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

} // namespace

Words split(std::string_view line)
{
    constexpr const char *blanks = " \t";
    Words words;
    for (std::size_t begin = 0; (begin = line.find_first_not_of(blanks, begin)) != line.npos;) {
        const std::size_t end = std::min(line.find_first_of(blanks, begin), line.size());
        words.emplace_back(line.substr(begin, end - begin));
        begin = end;
    }
    return words;
}

std::string join(const Words &words, const char *separator)
{
    std::string out;
    for (const std::string &word : words)
        out += (out.empty() ? "" : separator) + word;
    return out;
}

std::string lower(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), [](char c) { return lower(c); });
    return out;
}

bool same(std::string_view a, std::string_view b)
{
    return lower(a) == lower(b);
}

std::string quoted(std::string_view text)
{
    std::string out = "'";
    for (const char c : text.substr(0, longest_shown)) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(c));
        out += c < ' ' || c > '~' ? std::string(escape) : std::string(1, c);
    }
    return out + (text.size() > longest_shown ? "'..." : "'");
}

std::string format(const char *format, ...)
{
    char out[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(out, sizeof out, format, arguments);
    va_end(arguments);
    return out;
}

std::optional<u64> to_number(std::string_view text)
{
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = text.substr(hexadecimal ? 2 : 0);
    u64 number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

Words near(std::string_view word, const Words &names)
{
    constexpr std::size_t most = 3;
    const std::string wanted = lower(word.substr(0, longest_shown));
    std::vector<std::pair<std::size_t, std::string>> found;
    for (const std::string &name : names) {
        const std::string candidate = lower(name);
        const bool part = wanted.size() > 2 && candidate.find(wanted) != candidate.npos;
        const std::size_t apart = part ? 0 : distance(wanted, candidate);
        if (apart <= 1 + candidate.size() / 4)
            found.emplace_back(apart, name);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    Words out;
    for (std::size_t i = 0; i < std::min(found.size(), most); ++i)
        out.push_back(found[i].second);
    return out;
}

std::string hint(const Words &names)
{
    return names.empty() ? "" : "; near: " + join(names);
}

void Table::print(const char *without_rows) const
{
    if (rows_.size() == 1) {
        std::puts(without_rows);
        return;
    }
    std::vector<int> widths; // below 0: to the left
    for (std::size_t i = 0; i < rows_[0].size(); ++i) {
        bool digits = true;
        std::size_t width = 0;
        for (const Words &row : rows_) {
            if (i >= row.size())
                continue;
            width = std::max(width, row[i].size());
            digits =
                digits && (&row == rows_.data() || row[i].find_first_not_of("0123456789") == row[i].npos);
        }
        widths.push_back(static_cast<int>(width) * (digits ? 1 : -1));
    }
    for (const Words &row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const bool last = i + 1 == row.size();
            std::printf("%*s%s", last ? std::max(widths[i], 0) : widths[i], row[i].c_str(),
                        last ? "\n" : "  ");
        }
    }
}

} // namespace shell
