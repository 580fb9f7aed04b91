// Custom_Parse: a text read by the picture of a custom slot, field by field.
// The picture names widths only where a field is directly followed by
// another; elsewhere a literal or the end of the picture ends the token.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "datetime/custom.h"
#include "datetime/date_parse.h"
#include "datetime/regional.h"
#include "datetime/text_out.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

enum class Field : uint8_t {
    kNone,
    kDay,
    kWeekdayShort,
    kWeekday,
    kMonth,
    kMonthShort,
    kMonthName,
    kYear,
    kHour,
    kMinute,
    kSecond,
    kMark,
    kFraction,
};
struct FieldKind {
    Field field = Field::kNone;
    bool followable = false;  // may be followed by a field directly, at the run's width
};

// The picture language: a letter and its run length.
FieldKind field_of(char c, std::size_t run) noexcept {
    switch (c) {
        case 'd': {
            constexpr FieldKind kDays[] = {
                {Field::kDay, false}, {Field::kDay, true}, {Field::kWeekdayShort, true}, {Field::kWeekday, false}};
            return run <= 4 ? kDays[run - 1] : FieldKind{};
        }
        case 'M': {
            constexpr FieldKind kMonths[] = {
                {Field::kMonth, false}, {Field::kMonth, true}, {Field::kMonthShort, true}, {Field::kMonthName, false}};
            return run <= 4 ? kMonths[run - 1] : FieldKind{};
        }
        case 'y':
            if (run == 1 || run == 2 || run == 4) return {Field::kYear, run != 1};
            return {};
        case 'h':
        case 'H': return run <= 2 ? FieldKind{Field::kHour, run == 2} : FieldKind{};
        case 'm': return run <= 2 ? FieldKind{Field::kMinute, run == 2} : FieldKind{};
        case 's': return run <= 2 ? FieldKind{Field::kSecond, run == 2} : FieldKind{};
        case 't': return run <= 2 ? FieldKind{Field::kMark, true} : FieldKind{};
        case '#':
            return run <= static_cast<std::size_t>(kMostFractionDigits) ? FieldKind{Field::kFraction, true}
                                                                        : FieldKind{};
        default: return {};
    }
}

// A literal at `p`, which holds an apostrophe: 'c' is c, '' a blank (what
// ' ' became when the blanks went), '''' an apostrophe.  Answers its length
// in the picture, 0 for a fault.
std::size_t literal_at(const char* p, char& c) noexcept {
    std::size_t n = 0;
    while (p[n] == '\'') ++n;
    switch (n) {
        case 1:
            if (p[1] == '\0' || p[2] != '\'') return 0;
            c = p[1];
            return 3;
        case 2: c = ' '; return 2;
        case 4: c = '\''; return 4;
        default: return 0;
    }
}

int row_of(const char* token, const char (*rows)[kNameRow], int count) noexcept {
    for (int i = 0; i < count; ++i)
        if (rows[i][0] && platform::compare_nocase(token, rows[i]) == 0) return i;
    return -1;
}

// What the fields read besides the record: the morning or afternoon mark
// and the fraction's digits.
struct Extras {
    char mark[3] = "";
    char fraction[kMostFractionDigits + 1] = "";
    bool has_fraction = false;
};

// Step 8: one token into its field.
bool store(Field field, char* token, DateRecord& r, Extras& x) noexcept {
    const RegionalDateTables& t = regional_date_tables;
    int32_t n = 0;
    switch (field) {
        case Field::kWeekdayShort:
        case Field::kWeekday:
        case Field::kMonthShort:
        case Field::kMonthName:
        case Field::kMark: {
            // Names are compared without blanks and in capitals.
            KELUTIL_strip(token);
            platform::upper_in_place(token, std::strlen(token));
            int i = -1;
            if (field == Field::kWeekdayShort && std::strlen(token) == 3)
                i = abbreviation_index(token, kWeekdayAbbreviations);
            if (field == Field::kMonthShort && std::strlen(token) == 3)
                i = abbreviation_index(token, kMonthAbbreviations);
            if (field == Field::kWeekday) i = row_of(token, t.weekday_names, 7);
            if (field == Field::kMonthName) i = row_of(token, t.month_names, 12);
            if (field == Field::kMark) {
                const std::string_view s(token);
                if (s == "A" || s == "AM") i = 0;
                if (s == "P" || s == "PM") i = 1;
                if (i >= 0) std::memcpy(x.mark, i == 0 ? "AM" : "PM", 3);
                return i >= 0;
            }
            if (i < 0) return false;
            if (field == Field::kWeekdayShort || field == Field::kWeekday)
                r.tm_wday = i;
            else
                r.tm_mon = i;
            return true;
        }
        case Field::kFraction:
            if (std::strlen(token) > static_cast<std::size_t>(kMostFractionDigits) || !KELUTIL_cvtstr2int(token, &n))
                return false;
            std::strcpy(x.fraction, token);
            x.has_fraction = true;
            return true;
        default: break;
    }
    if (!KELUTIL_cvtstr2int(token, &n)) return false;
    switch (field) {
        case Field::kDay: r.tm_mday = n; break;
        case Field::kMonth: r.tm_mon = n - 1; break;
        case Field::kYear: r.tm_year = n; break;
        case Field::kHour: r.tm_hour = n; break;
        case Field::kMinute: r.tm_min = n; break;
        case Field::kSecond: r.tm_sec = n; break;
        default: break;
    }
    return true;
}

// Step 9: the time that was read, as KELUTIL_str2time reads it.
void rewrite_time(char* text, std::size_t room, const DateRecord& r, const Extras& x) noexcept {
    char time[96] = "";
    if (x.has_fraction || r.tm_hour + r.tm_min + r.tm_sec > 0) {
        TextSink out(time);
        out.number(r.tm_hour, 2);
        out.ch(':');
        out.number(r.tm_min, 2);
        out.ch(':');
        out.number(r.tm_sec, 2);
        if (x.has_fraction) {
            out.ch('.');
            out.text(x.fraction);
        }
        out.ch(' ');
        out.text(x.mark);
    }
    if (!x.mark[0]) KELUTIL_strip(time);
    const std::size_t n = std::min(std::strlen(time), room - 1);
    std::memcpy(text, time, n);
    text[n] = '\0';
}

}  // namespace

int Custom_Parse(char* text, std::size_t room, uint16_t format, DateRecord& record, int mode) noexcept {
    if (!text || room == 0 || (format != kFirstCustomFormat && format != kFirstCustomFormat + 1)) return kCustomBadRun;
    // 1. Working copies: the text, and the picture without its blanks.
    char work[kPictureRoom];
    const std::size_t length = strnlen(text, std::min(room, kPictureRoom - 1));
    std::memcpy(work, text, length);
    work[length] = '\0';
    char picture[kPictureRoom];
    std::strcpy(picture, custom_slots[format - kFirstCustomFormat].picture);
    KELUTIL_strip(picture);
    if (!picture[0]) return kCustomBadRun;
    Extras extras;
    std::size_t pos = 0;
    const char* p = picture;
    while (*p) {
        // 2. The field: a letter and the run of it.
        std::size_t run = 1;
        while (p[run] == *p) ++run;
        const FieldKind kind = field_of(*p, run);
        // 5. A run outside the language.
        if (kind.field == Field::kNone) return kCustomBadRun;
        p += run;
        // 3.-4. What ends the token: the end of the picture, a literal, or
        //    the run's own width.  The search for the seconds passes over
        //    the fraction marker, which the printed text does not hold yet.
        const char* behind = p;
        char literal = 0;
        if (mode == kCustomFindSeconds && *behind == '\'') {
            const std::size_t n = literal_at(behind, literal);
            if (n && behind[n] == '#') {
                behind += n;
                while (*behind == '#') ++behind;
            }
        }
        enum class End { kRest, kLiteral, kWidth } end = End::kRest;
        if (*behind == '\'') {
            const std::size_t n = literal_at(behind, literal);
            if (n == 0) return kCustomBadLiteral;
            end = End::kLiteral;
            p = behind + n;
        } else if (*behind) {
            if (!kind.followable) return kCustomEnded;
            end = End::kWidth;
            p = behind;
        } else {
            p = behind;
        }
        // 6. The token, blanks in front of it skipped.
        while (work[pos] == ' ' || work[pos] == '\t') ++pos;
        if (!work[pos]) return kCustomEnded;
        std::size_t token_end = length, next = length;
        if (end == End::kLiteral) {
            const char* hit = std::strchr(work + pos, literal);
            if (!hit) return kCustomEnded;
            token_end = static_cast<std::size_t>(hit - work);
            next = token_end + 1;
        } else if (end == End::kWidth) {
            if (length - pos < run) return kCustomEnded;
            token_end = next = pos + run;
        }
        // 7. The search ends behind the seconds.
        if (mode == kCustomFindSeconds && kind.field == Field::kSecond) {
            text[token_end] = '\0';
            return kCustomRead;
        }
        // 8. The token into its field.
        const char cut = work[token_end];
        work[token_end] = '\0';
        if (!store(kind.field, work + pos, record, extras)) return kCustomNoFit;
        work[token_end] = cut;
        pos = next;
    }
    // A picture with no seconds gives the fraction no place.
    if (mode == kCustomFindSeconds) return kCustomEnded;
    // 9. The text becomes the time that was read.
    rewrite_time(text, room, record, extras);
    return kCustomRead;
}

}  // namespace vl::datetime
