// KELUTIL_date2str: a date value by a format number or style word, and the
// questions and reload the same entry answers without a buffer.

#include <cmath>
#include <string_view>

#include "datetime/date_text.h"
#include "datetime/state.h"
#include "datetime/step_units.h"
#include "datetime/text_out.h"
#include "datetime/time_text.h"
#include "internal/values.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

constexpr const uint16_t (&kFormatTable)[20] = kDateFormatTable;
constexpr uint16_t kCustomFirst = VL_DATE_CUSTOM_FIRST, kCustomLast = VL_DATE_CUSTOM_SECOND;

// Bits of the format word tested before the table.
enum FormatFlag : uint16_t {
    kFourDigits = 1,   // also: the full name in month and weekday words
    kFirstLetter = 2,  // also: no day in part 16
    kAbbreviated = 4,
    kOverride = 128,
    kWeekdayName = VL_DATE_WEEKDAY_NUMBER,
    kMonthName = VL_DATE_MONTH_NUMBER,
    kStepText = VL_DATE_LENGTH,
    kStepFormat = VL_DATE_STEP_STYLE,
};

// Parts of a style word.
enum Part : uint16_t {
    kPartMonthDay = 16,
    kPartNumbers = 32,
    kPartDay = 48,
    kPartWeekday = 64,
    kPartWeekdayNumber = 80,
    kPartQuarter = 96,
    kPartYear = 128,
};

// The fullest date and time: short picture and thousandths.
constexpr uint16_t kFullestFormat = VL_DATE_FULLEST;
// Questions asked with no buffer, by the top four bits.
enum Question : uint16_t {
    kAskFullest = 1,
    kAskLanguage = 6,
    kAskPartOnly = 7,
    kReload = 8,
};

constexpr std::size_t kShortName = 3;

// Truncation of a month or weekday number, kept inside 32 bits.
int32_t whole(double v) noexcept {
    if (!(std::fabs(v) < 2147483647.0)) return v > 0 ? INT32_MAX : INT32_MIN;
    return static_cast<int32_t>(v);
}

void put_missing(char* out) noexcept { TextSink(out).text("--"); }

// 28672 + n: 0 for the custom slots and the rows that print a whole date
// by the short picture or compactly, 1 for the rest.
uint16_t prints_part(uint16_t n) noexcept {
    if (n == kCustomFirst || n == kCustomLast) return 0;
    if (n >= kCustomFirst) return 1;
    const uint16_t style = kFormatTable[n];
    const uint16_t layout = style & kLayoutMask;
    return (style & kPartMask) == 0 && (layout == kLayoutCompact || layout == kLayoutShort) ? 0 : 1;
}

uint16_t answer(uint16_t word) noexcept {
    switch (word >> 12) {
        case kAskFullest: return kFullestFormat;
        case kAskLanguage: return static_cast<uint16_t>(regional_date_tables.language_flag);
        case kAskPartOnly: return prints_part(word & 0x0FFF);
        case kReload:
            DateTime_CvtDouble(nullptr, nullptr, VL_CVT_TIME_ZONE);
            DateText_Core(nullptr, kLoadTables, working_record);
            return 0;
        default: return 0;
    }
}

// Steps 10 and 11: the two texts of a part in the regional order.
void join(char* out, std::string_view first, std::string_view separator, std::string_view second,
          uint16_t style) noexcept {
    if (style & kFirstLetter) first = first.substr(0, 1);
    if (style & kStyleSingle) second = {};
    if (first.empty() || second.empty()) separator = {};
    TextSink text(out);
    const bool day_first = regional_date_tables.date_order == 1;
    text.text(day_first ? second : first);
    text.text(separator);
    text.text(day_first ? first : second);
}

// A month or weekday by its number: 13 is January again, 7 Sunday.
void print_name(char* out, double value, uint16_t word, const char (*names)[15], int32_t lowest, int32_t rows) {
    const int32_t n = whole(value);
    std::string_view first;
    if (n >= lowest) {
        first = names[(n - lowest) % rows];
        if (!(word & kFourDigits)) first = first.substr(0, kShortName);
    }
    join(out, first, {}, {}, word);
}

// Step 12: the time of day behind the date, from `tail` on.
void print_time_tail(double value, uint16_t style, TextSink tail) noexcept {
    uint16_t time_format = style & kStyleSeconds ? kTimeHoursMinutesSeconds : kTimeHoursMinutes;
    if (style & kStyleDigits) time_format = style & kStyleSeconds ? kTimeDigitsSeconds : kTimeDigitsMinutes;
    if (style == kFullestFormat) time_format = kTimeThousandths;
    tail.ch(' ');
    if (time_format == kTimeHoursMinutesSeconds)
        print_clock(value, tail.end());
    else
        print_time(value, time_format, tail.end());
}

// Steps 9 and 12 for a style that prints the whole date: the record, the
// date by its layout, and the time of day.
uint16_t print_whole(double value, uint16_t style, char* out) noexcept {
    if (record_of_value(value, working_record) != 0) {
        put_missing(out);
        return 0;
    }
    char* const end = print_date(out, style, working_record);
    if (end && (style & kStyleTime)) print_time_tail(value, style, TextSink::behind(out, end));
    return 0;
}

// Kept out of line: the short road of KELUTIL_date2str then saves no
// registers for it.
[[gnu::noinline]] uint16_t print(double value, uint16_t word, char* out) noexcept {
    const RegionalDateTables& t = regional_date_tables;
    // 1. No date at all.
    if (value == MISSING_VALUE) {
        put_missing(out);
        return 0;
    }
    // 2. The custom slots, "--" when their picture can't print the date.
    if (word == kCustomFirst || word == kCustomLast) {
        if (KELUTIL_date2str_custom(value, word - kCustomFirst, out) != 0) put_missing(out);
        return 0;
    }
    // 3.-4. A month or weekday given by its number.
    if (word & kMonthName) {
        print_name(out, value, word, t.month_names, 1, 12);
        return 0;
    }
    if (word & kWeekdayName) {
        print_name(out, value, word, t.weekday_names, 0, 7);
        return 0;
    }
    // 5. A length of time with its unit.
    double length = value;
    if (word & kStepText) return static_cast<uint16_t>(DateTime_UnitValue(&length, kUnitInDays | kUnitPrint, out));
    // 6. The style word: a table row, or the word itself.
    const bool override_style = word & kOverride;
    uint16_t style = word & static_cast<uint16_t>(~kOverride);
    if (style <= 0xFF) style = style <= kCustomFirst ? kFormatTable[style] : static_cast<uint16_t>(kStepFormat);
    // 7. A date style for steps of this length; nothing printed.
    if (style & kStepFormat) return static_cast<uint16_t>(DateTime_UnitValue(&length, kUnitInDays | kUnitStyle, out));
    // 8. The override prints the whole date, compact or by the short picture.
    if (override_style) style = (style & kLayoutMask) == kLayoutCompact ? kLayoutCompact : kLayoutShort;
    // 9. The whole date, or the record and one part of it.
    //    The internal calls stand for DateTime_CvtDouble mode 0 and
    //    DateText_Core, without the way through the exported entries.
    if ((style & kPartMask) == 0) return print_whole(value, style, out);
    if (record_of_value(value, working_record) != 0) {
        put_missing(out);
        return 0;
    }
    const DateRecord& r = working_record;
    char first[24] = "", second[16] = "";
    std::string_view separator;
    switch (style & kPartMask) {
        case kPartMonthDay:
            TextSink(first).text(style & kAbbreviated ? t.month_abbreviations[r.tm_mon] : t.month_names[r.tm_mon]);
            separator = " ";
            if (!(style & kFirstLetter)) TextSink(second).number(r.tm_mday);
            break;
        case kPartNumbers:
            TextSink(first).number(r.tm_mon + 1);
            separator = t.date_separator;
            TextSink(second).number(r.tm_mday);
            break;
        case kPartDay: TextSink(first).number(r.tm_mday); break;
        case kPartWeekday:
            TextSink(first).text(t.weekday_names[r.tm_wday], style & kAbbreviated ? kShortName : 15);
            break;
        case kPartWeekdayNumber: TextSink(first).number(r.tm_wday + 1); break;
        case kPartQuarter: {
            TextSink q(first);
            q.ch('Q');
            q.number(r.tm_mon / 3 + 1);
            break;
        }
        case kPartYear:
            if (style & kFourDigits)
                TextSink(first).number(r.tm_year, 4);
            else
                TextSink(first).number(r.tm_year % 100, 2);
            break;
        default: break;
    }
    // 10.-11. Cut, dropped and joined in the regional order.
    join(out, first, separator, second, style);
    // 12. The time of day behind the part.
    if (style & kStyleTime) print_time_tail(value, style, TextSink::behind(out));
    return 0;
}

}  // namespace
}  // namespace vl::datetime

using namespace vl::datetime;

extern "C" uint16_t VLAPI KELUTIL_date2str(double value, uint32_t format, char* out) noexcept {
    const auto word = static_cast<uint16_t>(format);
    if (!out) return answer(word);
    // The table's whole-date formats, most calls, go straight to their
    // printing: such a word has no flag bits for print's first steps.
    if (word < kCustomFirst && value != vl::MISSING_VALUE && (kFormatTable[word] & kPartMask) == 0)
        return print_whole(value, kFormatTable[word], out);
    return print(value, word, out);
}
