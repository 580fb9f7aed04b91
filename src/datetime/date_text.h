// Dates to text by the regional pictures: the style words of the date
// formats and the picture-driven core.
#pragma once

#include <cstdint>
#include <span>

#include "datetime/calendar.h"
#include "datetime/regional.h"

namespace vl::datetime {

// Bits of a date style word.
enum DateStyle : uint16_t {
    kLayoutMask = 7,     // with part 0: 1 long picture, 3 compact, 4 short picture
    kPartMask = 0xF0,    // what is printed; 0 the whole date
    kStyleSeconds = 8,   // the time tail shows seconds
    kStyleSingle = 256,  // the second number of a part is dropped
    kStyleDigits = 512,  // the time tail has no colons
    kStyleTime = 32768,  // a time tail follows
};
enum DateLayout : uint16_t { kLayoutLong = 1, kLayoutCompact = 3, kLayoutShort = 4 };

// The style words of date formats 0 to 18; row 19 holds style 0.
inline constexpr uint16_t kDateFormatTable[20] = {4,     1, 20,    32,    48,    68,    66,  129, 128, 32772,
                                                  32780, 3, 32771, 32779, 33283, 33291, 276, 274, 352, 0};

// Turns the fields of a picture into the steps the printer walks.
void compile_picture(std::span<const char[kFieldSize]> fields, CompiledPicture& out) noexcept;

// The style word exactly 32768 asks for the load of the regional tables.
inline constexpr uint16_t kLoadTables = 32768;

// Prints the date of `record` into `text` by the layout of `style` (long or
// short picture, or the compact YYMMDD); other layouts leave the text as it
// was.  Style kLoadTables loads the regional date tables instead.  Answers
// true when it wrote a date.
bool DateText_Core(char* text, uint16_t style, DateRecord& record) noexcept;

// The printing of DateText_Core alone: answers the end of the text written,
// or null (the text as it was) for a layout it doesn't print.
char* print_date(char* text, uint16_t style, const DateRecord& record) noexcept;

}  // namespace vl::datetime
