// Reading dates: the lookups the readers share.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vl::datetime {

inline constexpr int kNameRow = 15;

// KELUTIL_str2date's reading of a date by a format (0 to 20; higher reads
// as 0) for the flag words that ask for one; `flags` matters only for its
// short-picture override.  Every text goes the whole way, the quick road
// of Date_ReadNumeric is not tried.
double Date_ReadGeneral(const char* text, uint16_t flags, uint16_t format) noexcept;

// A number or a name of `table` (rows of kNameRow bytes).  With base >= 0 a
// text that reads as a number decides alone: found when base <= number <
// base + count.  Otherwise the first row that the text begins (case
// ignored; an empty text begins none) answers its index + base.  A negative
// base b stands for -1 - b with the number test skipped.
bool Name_Lookup(const char* text, int32_t& number, const char (*table)[kNameRow], int32_t count,
                 int32_t base) noexcept;

// Three-letter month and weekday abbreviations the readers compare with;
// they do not follow the string table.
inline constexpr char kMonthAbbreviations[12][4] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                    "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
inline constexpr char kWeekdayAbbreviations[7][4] = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};

// The index of the abbreviation the first three characters of `token`
// spell (already upper-case), or -1.
template <std::size_t N>
int abbreviation_index(const char* token, const char (&table)[N][4]) noexcept {
    if (!token[0] || !token[1] || !token[2]) return -1;
    for (std::size_t i = 0; i < N; ++i)
        if (token[0] == table[i][0] && token[1] == table[i][1] && token[2] == table[i][2]) return static_cast<int>(i);
    return -1;
}

}  // namespace vl::datetime
