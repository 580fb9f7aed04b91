// Time of day to text and back: the style words of the time formats.
#pragma once

#include <cstdint>

namespace vl::datetime {

enum TimeStyle : uint16_t {
    kTimeMinutes = 1,
    kTimeSeconds = 2,
    kTimeDecimals = 4,
    kTimeTwelve = 8,
    kTimeNoHours = 16,
    kTimePlain = 32,
    kTimeThreeDecimals = 64,
    kTimeOneDecimal = 256,
    kTimeFourDecimals = 512,
};

// Time formats the date printer asks for.
inline constexpr uint16_t kTimeHoursMinutes = 0;
inline constexpr uint16_t kTimeHoursMinutesSeconds = 2;
inline constexpr uint16_t kTimeDigitsMinutes = 8;
inline constexpr uint16_t kTimeDigitsSeconds = 9;
inline constexpr uint16_t kTimeThousandths = 10;

// The style word of a time format: a row of the table, or the low 8 bits of
// a word whose high byte is not 0.  Rows past the table print the hour
// alone.
uint16_t time_style(uint16_t format) noexcept;

// KELUTIL_time2str with a buffer, for the library's own callers: answers
// the end of the text written.
char* print_time(double value, uint16_t word, char* out) noexcept;

// print_time by kTimeHoursMinutesSeconds, the tail of the date formats that
// show seconds, with a short road for date values.
char* print_clock(double value, char* out) noexcept;

}  // namespace vl::datetime
