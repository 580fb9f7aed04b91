// Helpers shared by the test programs.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#ifdef _WIN32
// The import slot of the C runtime's pow; the compiler kit's own pow, under
// the plain name, gives other bits.
extern "C" double(__cdecl* __MINGW_IMP_SYMBOL(pow))(double, double);
#endif

namespace vltest {

// pow of the platform's C runtime, as the library calls it; the volatile
// keeps the compiler from folding a call with constant arguments into a
// correctly rounded constant of its own.
inline double runtime_pow(double x, double y) {
    volatile double base = x;
#ifdef _WIN32
    return (*__MINGW_IMP_SYMBOL(pow))(base, y);
#else
    return std::pow(base, y);
#endif
}

constexpr unsigned char kPoison = 0xCC;

// A buffer filled with 0xCC, so a test sees exactly which bytes an entry
// wrote.
class Poisoned {
  public:
    explicit Poisoned(std::size_t size) : bytes_(size, static_cast<char>(kPoison)) {}
    char* data() { return bytes_.data(); }
    std::size_t size() const { return bytes_.size(); }
    // The text the entry wrote, up to its terminator.
    std::string text() const { return std::string(bytes_.data(), strnlen(bytes_.data(), bytes_.size())); }
    // Index of the first byte from `from` on that still holds the poison.
    std::size_t untouched_from(std::size_t from = 0) const {
        std::size_t i = from;
        while (i < bytes_.size() && static_cast<unsigned char>(bytes_[i]) != kPoison) ++i;
        return i;
    }
    // True when every byte from `from` on still holds the poison.
    bool clean_from(std::size_t from) const {
        for (std::size_t i = from; i < bytes_.size(); ++i)
            if (static_cast<unsigned char>(bytes_[i]) != kPoison) return false;
        return true;
    }

  private:
    std::vector<char> bytes_;
};

// A writable copy of a text with poison behind its terminator.
inline std::vector<char> writable(const std::string& s, std::size_t slack = 8) {
    std::vector<char> v(s.size() + 1 + slack, static_cast<char>(kPoison));
    std::copy(s.begin(), s.end(), v.begin());
    v[s.size()] = '\0';
    return v;
}

// Sets or (with null) removes an environment variable, on every target.
inline void set_env(const char* name, const char* value) {
#ifdef _WIN32
    _putenv_s(name, value ? value : "");
#else
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
#endif
}

inline uint64_t bits(double d) { return std::bit_cast<uint64_t>(d); }

// Reference values kept as data: a text file under tests/, one row a
// line, fields apart by tabs, blank lines and lines starting with '#'
// left out.  The test programs find the directory in VLCORE_TEST_DATA.
class DataTable {
  public:
    explicit DataTable(std::string_view relative) : name_(relative) {
        const char* root = std::getenv("VLCORE_TEST_DATA");
        std::ifstream in(std::string(root ? root : "tests") + "/" + std::string(relative));
        if (!in) ADD_FAILURE() << "no data file " << name_ << " under " << (root ? root : "tests");
        for (std::string line; std::getline(in, line);) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            if (line.empty() || line[0] == '#') continue;
            std::vector<std::string> fields;
            std::istringstream cut(line);
            for (std::string field; std::getline(cut, field, '\t');) fields.push_back(field);
            rows_.push_back(std::move(fields));
        }
    }
    std::size_t size() const { return rows_.size(); }
    const std::vector<std::string>& row(std::size_t i) const { return rows_[i]; }
    auto begin() const { return rows_.begin(); }
    auto end() const { return rows_.end(); }

  private:
    std::string name_;
    std::vector<std::vector<std::string>> rows_;
};

// A data field's C escapes read: \n \r \t \v \0 and \xHH; any other
// character behind a backslash stands for itself.
inline std::string unescape(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '\\' || i + 1 == s.size()) {
            out += s[i];
        } else if (s[++i] == 'x') {
            out += static_cast<char>(std::stoi(std::string(s.substr(i + 1, 2)), nullptr, 16));
            i += 2;
        } else {
            const auto at = std::string_view("nrtv0").find(s[i]);
            out += at == std::string_view::npos ? s[i] : std::string_view("\n\r\t\v\0", 5)[at];
        }
    }
    return out;
}

// The name a data row goes by in failure messages: its file, its number
// and its fields.
inline std::string row_label(std::string_view file, std::size_t index, const std::vector<std::string>& row) {
    std::string label = std::string(file) + " row " + std::to_string(index + 1) + ":";
    for (const std::string& field : row) label += " <" + field + ">";
    return label;
}

// A row of a data file: its fields as text, or as whole numbers (decimal
// or 0x hexadecimal; "-" reads as 0).
struct DataRow {
    const std::vector<std::string>& fields;
    const std::string& operator[](std::size_t i) const { return fields.at(i); }
    long long n(std::size_t i) const { return fields.at(i) == "-" ? 0 : std::stoll(fields.at(i), nullptr, 0); }
    std::vector<int32_t> ints(std::size_t from, std::size_t count) const {
        std::vector<int32_t> out;
        for (std::size_t i = from; i < from + count; ++i) out.push_back(static_cast<int32_t>(n(i)));
        return out;
    }
};

// Runs `check` on every row of a data file, naming the row in failures.
template <class Check>
void for_each_row(std::string_view file, Check check) {
    const DataTable table(file);
    EXPECT_GT(table.size(), 0u) << file;
    for (std::size_t i = 0; i < table.size(); ++i) {
        SCOPED_TRACE(row_label(file, i, table.row(i)));
        check(DataRow{table.row(i)});
    }
}

// A field of a data row as a double, correctly rounded on every target
// (the Windows runtime's strtod is not).
inline double number(const std::string& field) {
    double value = 0.0;
    const char* first = field.data();
    if (!field.empty() && field[0] == '+') ++first;
    const auto [end, error] = std::from_chars(first, field.data() + field.size(), value);
    if (error != std::errc() || end != field.data() + field.size()) ADD_FAILURE() << "not a number: " << field;
    return value;
}

}  // namespace vltest
