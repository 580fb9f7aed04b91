// Rows of the text tests' data files.  The first field of a row names the
// check it feeds; the rest are taken as written, except a field that begins
// and ends with a double quote: it stands for the text between the quotes,
// with \t \r \n \v \" \\ and \xHH read as in C.  Quotes show blanks at the
// ends, empty texts, control characters and bytes above 0x7E.
#pragma once

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "support.h"
#include "vlcore.h"

namespace vltest {

inline std::string unquote(const std::string& field) {
    if (field.size() < 2 || field.front() != '"' || field.back() != '"') return field;
    return unescape(std::string_view(field).substr(1, field.size() - 2));
}

// A number field; "missing" and "div0" name the reserved values, "inf",
// "-inf" and "nan" the others that are no numbers.
inline double value(const std::string& field) {
    if (field == "missing") return VL_MISSING_VALUE;
    if (field == "div0") return VL_DIV_ZERO_VALUE;
    if (field == "inf" || field == "-inf") return field[0] == '-' ? -HUGE_VAL : HUGE_VAL;
    if (field == "nan") return std::numeric_limits<double>::quiet_NaN();
    return number(field);
}

// An integer field, decimal or 0x hexadecimal.
inline long long integer(const std::string& field) { return std::stoll(field, nullptr, 0); }

// Runs `check` on the unquoted fields (the name left off) of every row of
// `file` named `name`, each under a trace naming the row.
template <class Check>
void each_row(const char* file, std::string_view name, std::size_t fields, Check check) {
    const DataTable table(file);
    std::size_t seen = 0;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto& row = table.row(i);
        if (row.empty() || row[0] != name) continue;
        ++seen;
        SCOPED_TRACE(row_label(file, i, row));
        std::vector<std::string> f;
        for (std::size_t j = 1; j < row.size(); ++j) f.push_back(unquote(row[j]));
        if (f.size() < fields) {
            ADD_FAILURE() << "fewer than " << fields << " fields";
            continue;
        }
        check(f);
    }
    EXPECT_GT(seen, 0u) << "no rows named " << name << " in " << file;
}

}  // namespace vltest
