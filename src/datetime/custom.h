// The two custom date formats (19 and 20): user pictures in the letters of
// the system's date and time pictures, with "#" for fractions of a second.
#pragma once

#include <cstddef>
#include <cstdint>

#include "datetime/calendar.h"

namespace vl::datetime {

inline constexpr std::size_t kPictureRoom = 61;  // 60 characters and the terminator
inline constexpr int32_t kMostFractionDigits = 4;
inline constexpr uint16_t kFirstCustomFormat = 19;

struct CustomSlot {
    char picture[kPictureRoom];
    char date_part[kPictureRoom];  // for the date picture operation
    char time_part[kPictureRoom];  // for the time picture operation, without the fraction
    int32_t digits;                // "#" of the fraction marker, 0 for none
    int32_t order;                 // 0 date part first, 1 time part first
};
// Slot 0 is format 19, slot 1 format 20; empty until the host sets them.
extern CustomSlot custom_slots[2];

// Divides a picture at its first date or time letter (quoted text does not
// count): what stands between the two parts goes with the first.  False
// for a picture with neither.  The parts hold kPictureRoom bytes.
bool Custom_Split(const char* picture, char* date_part, char* time_part, int32_t& digits, int32_t& order) noexcept;
// Removes the first fraction marker ("'.'" and a run of "#") from a time
// part, in place; answers the count of "#".
int32_t Custom_StripFraction(char* time_part) noexcept;

enum CustomParse : int {
    kCustomRead = 0,
    kCustomBadRun = 1,      // a run outside the picture language
    kCustomBadLiteral = 2,  // a fault in the picture's literals
    kCustomNoFit = 3,       // a token does not fit its field
    kCustomEnded = 4,       // the text ended early, or fixed widths are missing
};
enum CustomMode : int { kCustomReading = 0, kCustomFindSeconds = 1 };
// Reads `text` by the picture of format 19 or 20 into `record`, setting
// only the fields the picture names.  Reading: the text (a buffer of `room`
// bytes) is rewritten as the time that was read, for KELUTIL_str2time.
// Finding the seconds: the text is cut behind the seconds field.
int Custom_Parse(char* text, std::size_t room, uint16_t format, DateRecord& record, int mode) noexcept;
// Puts "." and `digits` behind the seconds of a text printed by format 19
// or 20 (a buffer of kPictureRoom bytes).  False when it finds no seconds.
bool Custom_InsertFraction(char* text, const char* digits, uint16_t format) noexcept;

}  // namespace vl::datetime
