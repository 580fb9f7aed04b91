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

struct ColourRow {
    std::string name;
    uint32_t rgb;
};

inline uint32_t rgb_of(unsigned long red, unsigned long green, unsigned long blue) {
    return static_cast<uint32_t>(red | green << 8 | blue << 16);
}

inline std::vector<ColourRow> builtin_colours() {
    std::vector<ColourRow> out;
    for_each_row("colour/builtin_colours.tsv", [&](const DataRow& r) {
        out.push_back({r[1], rgb_of(r.n(2), r.n(3), r.n(4))});
    });
    return out;
}

inline int32_t colour(uint32_t operation, uint32_t number = 0, intptr_t value = 0, void* handle = nullptr) {
    return KELUTIL_Color(handle, number, value, operation);
}

inline intptr_t text_arg(const char* text) { return reinterpret_cast<intptr_t>(text); }

// The table as the entry shows it, row by row.
inline std::vector<ColourRow> current_colours() {
    std::vector<ColourRow> out;
    for (uint32_t i = 0; i < static_cast<uint32_t>(colour(colour_op::kCount)); ++i) {
        char name[28] = {};
        uint32_t rgb = 0xCCCCCCCC;
        colour(colour_op::kName, i, reinterpret_cast<intptr_t>(name));
        colour(colour_op::kRgb, i, reinterpret_cast<intptr_t>(&rgb));
        out.push_back({name, rgb});
    }
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
