// Helpers of the colour tests: the built-in table as data, the table as
// the entry shows it, and a fixture that puts the process-wide table back
// to the built-in one around every test.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"

namespace vltest {

namespace colour_op {
constexpr uint32_t kLoad = 0, kEnd = 1, kEdit = 2, kCount = 3, kPen = 4, kReleasePen = 5, kRgb = 6, kCombo = 7,
                   kStockPen = 8, kBrush = 9, kLighter = 10, kReleaseBrush = 11, kDarker = 12, kDarkerPen = 13,
                   kByName = 14, kName = 15, kByRgb = 16, kNearest = 17, kRgbCyclic = 18, kSetCount = 19, kSetRgb = 20,
                   kSetName = 21, kSave = 22, kCapacity = 23, kDefaults = 24;
}

// A row of a data file under tests/colour; numbers are whole, decimal or
// 0x hexadecimal.
struct DataRow {
    const std::vector<std::string>& fields;
    const std::string& operator[](std::size_t i) const { return fields.at(i); }
    long long n(std::size_t i) const { return std::stoll(fields.at(i), nullptr, 0); }
    std::vector<int32_t> ints(std::size_t from, std::size_t count) const {
        std::vector<int32_t> out;
        for (std::size_t i = from; i < from + count; ++i) out.push_back(static_cast<int32_t>(n(i)));
        return out;
    }
};

// Runs `check` on every row of a data file, naming the row in failures.
template <class Check>
void for_each_row(const std::string& file, Check check) {
    const DataTable table("colour/" + file);
    EXPECT_GT(table.size(), 0u) << file;
    for (std::size_t i = 0; i < table.size(); ++i) {
        SCOPED_TRACE(row_label(file, i, table.row(i)));
        check(DataRow{table.row(i)});
    }
}

struct ColourRow {
    std::string name;
    uint32_t rgb;
};

inline uint32_t rgb_of(unsigned long red, unsigned long green, unsigned long blue) {
    return static_cast<uint32_t>(red | green << 8 | blue << 16);
}

inline std::vector<ColourRow> builtin_colours() {
    std::vector<ColourRow> out;
    for_each_row("builtin_colours.tsv", [&](const DataRow& r) {
        out.push_back({r[1], rgb_of(r.n(2), r.n(3), r.n(4))});
    });
    return out;
}

inline int32_t colour(uint32_t operation, uint32_t number = 0, intptr_t value = 0, void* handle = nullptr) {
    return KELUTIL_Color(handle, number, value, operation);
}

inline intptr_t text_arg(const char* text) { return reinterpret_cast<intptr_t>(text); }

inline std::string name_of(uint32_t number) {
    char name[28] = {};
    colour(colour_op::kName, number, reinterpret_cast<intptr_t>(name));
    return name;
}

inline uint32_t rgb_of_row(uint32_t number) {
    uint32_t rgb = 0xCCCCCCCC;
    colour(colour_op::kRgb, number, reinterpret_cast<intptr_t>(&rgb));
    return rgb;
}

inline std::vector<ColourRow> current_colours() {
    std::vector<ColourRow> out;
    for (uint32_t i = 0; i < static_cast<uint32_t>(colour(colour_op::kCount)); ++i)
        out.push_back({name_of(i), rgb_of_row(i)});
    return out;
}

// Rows as the settings file keeps them, "name=R G B", apart by '|', so
// that a failure shows the whole table.
inline std::string listing(const std::vector<ColourRow>& rows) {
    std::string out;
    for (const auto& r : rows)
        out += (out.empty() ? "" : "|") + r.name + "=" + std::to_string(r.rgb & 0xFF) + " " +
               std::to_string(r.rgb >> 8 & 0xFF) + " " + std::to_string(r.rgb >> 16 & 0xFF);
    return out;
}

// Writes the built-in table through the editing operations and makes it
// the snapshot with a load that reads no file.
inline void reset_colour_table() {
    const auto rows = builtin_colours();
    colour(colour_op::kSetCount, 0, static_cast<intptr_t>(rows.size()));
    for (uint32_t i = 0; i < rows.size(); ++i) {
        colour(colour_op::kSetName, i, text_arg(rows[i].name.c_str()));
        colour(colour_op::kSetRgb, i, static_cast<intptr_t>(rows[i].rgb));
    }
    colour(colour_op::kLoad, 0, 0);
    colour(colour_op::kDefaults);  // rows past the count come back empty
}

class ColourTable : public ::testing::Test {
  protected:
    void SetUp() override { reset_colour_table(); }
    void TearDown() override {
        reset_colour_table();
        KELUTIL_Palette(nullptr, 1, 0, 0);
    }
};

}  // namespace vltest
