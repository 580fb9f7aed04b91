// DateText_Core: a whole date by the regional pictures.  The pictures are
// read once, at load, into steps; printing walks the steps.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "datetime/date_text.h"
#include "datetime/regional.h"
#include "datetime/text_out.h"

namespace vl::datetime {
namespace {

// Two-digit years stand for 1945 to 2044; any other year is written whole.
constexpr int32_t kFirstShortYear = 1945;
constexpr int32_t kLastShortYear = 2044;

constexpr std::size_t kNameRoom = 15;

std::string_view name_of(const char* row) noexcept { return {row, strnlen(row, kNameRoom)}; }

// What one field of a picture prints.
PictureStep compile_field(std::string_view field, bool literal) noexcept {
    PictureStep step;
    step.length = static_cast<uint8_t>(std::min<std::size_t>(field.size(), kFieldSize - 1));
    std::memcpy(step.text, field.data(), step.length);
    // 1. The year, whatever the field's place: "yy" only where it can't be
    //    mistaken, so a two-letter field decides by the year it prints.
    if (!field.empty() && field[0] == 'y') {
        step.piece = field.size() == 2 ? PicturePiece::kYear : PicturePiece::kYearFull;
        return step;
    }
    // 2. Literal text as it stands.
    if (literal) {
        step.piece = PicturePiece::kLiteral;
        return step;
    }
    // 3. Day or month by the first letter, the form by the length.
    constexpr PicturePiece kDayForms[] = {PicturePiece::kDay, PicturePiece::kDay2, PicturePiece::kWeekday3,
                                          PicturePiece::kWeekday, PicturePiece::kWeekdayLettered};
    constexpr PicturePiece kMonthForms[] = {PicturePiece::kMonth, PicturePiece::kMonth2, PicturePiece::kMonth3,
                                            PicturePiece::kMonthName, PicturePiece::kMonthLettered};
    const bool day = !field.empty() && field[0] == 'd';
    if (field.size() >= 1 && field.size() <= 5) step.piece = (day ? kDayForms : kMonthForms)[field.size() - 1];
    return step;
}

// The steps write into a scratch text with stores of fixed width, of which
// only the first characters count: the lengths of names and numbers then
// decide no branch, and a random date costs no mispredicted jump.  The
// text is copied out once, to exactly its own length.
constexpr std::size_t kWideStore = 16;
// Seven steps of at most a letter and a wide store each, and room behind.
constexpr std::size_t kScratchRoom = kLongFields * (kWideStore + 1) + kWideStore;

// The helpers below are forced inline: each is a few instructions, and a
// call per step cost more than the step itself.

// Up to 16 characters of a name row (or of the rows behind it, which
// don't count).  The rows of a table lie one after the other, so a wide
// load from a row stays within its table.
[[gnu::always_inline]] inline char* put_name(char* p, const char* table, std::size_t row, std::size_t length) noexcept {
    std::memcpy(p, table + row * kNameRoom, kWideStore);
    return p + length;
}

// A number below 100: two digits, or one when it is below 10 and no width
// asks for two; the first digit is overwritten when it doesn't count.
[[gnu::always_inline]] inline char* put_small(char* p, uint32_t v, bool two) noexcept {
    const char* pair = kDigitPairs + 2 * v;
    const std::size_t both = two || v >= 10 ? 1 : 0;
    p[0] = pair[0];
    p[both] = pair[1];
    return p + both + 1;
}

// A year: two digits for 1945 to 2044 (in the short form), else four.
[[gnu::always_inline]] inline char* put_year(char* p, int32_t year, bool short_form) noexcept {
    if (year < 0 || year > 9999) {
        // Out of the calendar: the plain printer.
        TextSink t = TextSink::behind(p, p);
        t.number(short_form && year >= kFirstShortYear && year <= kLastShortYear ? year % 100 : year, 4);
        return t.end();
    }
    const auto y = static_cast<uint32_t>(year);
    const std::size_t low = short_form && year >= kFirstShortYear && year <= kLastShortYear ? 0 : 2;
    std::memcpy(p, kDigitPairs + 2 * (y / 100), 2);
    std::memcpy(p + low, kDigitPairs + 2 * (y % 100), 2);
    return p + low + 2;
}

// Any other number, as TextSink prints it.
[[gnu::always_inline]] inline char* put_number(char* p, int32_t v, int width) noexcept {
    if (v >= 0 && v < 100) return put_small(p, static_cast<uint32_t>(v), width == 2);
    TextSink t = TextSink::behind(p, p);
    t.number(v, width);
    return t.end();
}

// `n` characters (terminator included) to the caller's buffer, by two
// overlapping copies of a fixed width: a date text always falls in the
// same width class, so the choice is predicted.
void copy_out(char* to, const char* from, std::size_t n) noexcept {
    if (n >= 16 && n <= 32) {
        std::memcpy(to, from, 16);
        std::memcpy(to + n - 16, from + n - 16, 16);
    } else if (n >= 8 && n < 16) {
        std::memcpy(to, from, 8);
        std::memcpy(to + n - 8, from + n - 8, 8);
    } else if (n >= 4 && n < 8) {
        std::memcpy(to, from, 4);
        std::memcpy(to + n - 4, from + n - 4, 4);
    } else {
        std::memcpy(to, from, n);
    }
}

char* print_steps(char* text, const CompiledPicture& picture, const DateRecord& r) noexcept {
    const RegionalDateTables& t = regional_date_tables;
    // 1. The names of the day and month; a day or month out of range has
    //    none (row 0 is read, none of it counts).
    const bool weekday_ok = r.tm_wday >= 0 && r.tm_wday < 7;
    const bool month_ok = r.tm_mon >= 0 && r.tm_mon < 12;
    const std::size_t weekday_row = weekday_ok ? static_cast<std::size_t>(r.tm_wday) : 0;
    const std::size_t month_row = month_ok ? static_cast<std::size_t>(r.tm_mon) : 0;
    const std::size_t weekday_length = weekday_ok ? t.weekday_name_lengths[weekday_row] : 0;
    const std::size_t month_length = month_ok ? t.month_name_lengths[month_row] : 0;
    const char* weekdays = t.weekday_names[0];
    const char* months = t.month_names[0];
    // 2. The steps into the scratch text.
    char scratch[kScratchRoom];
    char* p = scratch;
    for (int i = 0; i < picture.count; ++i) {
        const PictureStep& s = picture.steps[i];
        switch (s.piece) {
            case PicturePiece::kNothing: break;
            case PicturePiece::kLiteral:
                std::memcpy(p, s.text, kFieldSize);
                p += s.length;
                break;
            case PicturePiece::kYear: p = put_year(p, r.tm_year, true); break;
            case PicturePiece::kYearFull: p = put_year(p, r.tm_year, false); break;
            case PicturePiece::kDay: p = put_number(p, r.tm_mday, 0); break;
            case PicturePiece::kDay2: p = put_number(p, r.tm_mday, 2); break;
            case PicturePiece::kWeekday3:
                p = put_name(p, weekdays, weekday_row, std::min<std::size_t>(weekday_length, 3));
                break;
            case PicturePiece::kWeekday: p = put_name(p, weekdays, weekday_row, weekday_length); break;
            case PicturePiece::kWeekdayLettered:
                *p++ = s.text[0];
                p = put_name(p, weekdays, weekday_row, weekday_length);
                break;
            case PicturePiece::kMonth: p = put_number(p, r.tm_mon + 1, 0); break;
            case PicturePiece::kMonth2: p = put_number(p, r.tm_mon + 1, 2); break;
            case PicturePiece::kMonth3:
                p = put_name(p, months, month_row, std::min<std::size_t>(month_length, 3));
                break;
            case PicturePiece::kMonthName: p = put_name(p, months, month_row, month_length); break;
            case PicturePiece::kMonthLettered:
                *p++ = s.text[0];
                p = put_name(p, months, month_row, month_length);
                break;
        }
    }
    // 3. Ended, and out to the caller's buffer.
    *p = '\0';
    const auto n = static_cast<std::size_t>(p - scratch);
    copy_out(text, scratch, n + 1);
    return text + n;
}

}  // namespace

void compile_picture(std::span<const char[kFieldSize]> fields, CompiledPicture& out) noexcept {
    out.count = 0;
    for (std::size_t i = 0; i < fields.size() && i < std::size(out.steps); ++i) {
        const PictureStep step = compile_field(name_of(fields[i]).substr(0, kFieldSize - 1), i % 2 == 1);
        if (step.piece != PicturePiece::kNothing) out.steps[out.count++] = step;
    }
}

char* print_date(char* text, uint16_t style, const DateRecord& record) noexcept {
    switch (style & kLayoutMask) {
        case kLayoutCompact: {
            // YYMMDD, two digits each.
            TextSink out(text);
            out.number(record.tm_year % 100, 2);
            out.number(record.tm_mon + 1, 2);
            out.number(record.tm_mday, 2);
            return out.end();
        }
        case kLayoutLong: return print_steps(text, regional_date_tables.long_steps, record);
        case kLayoutShort: return print_steps(text, regional_date_tables.short_steps, record);
        default: return nullptr;
    }
}

bool DateText_Core(char* text, uint16_t style, DateRecord& record) noexcept {
    // The load of the regional date tables.
    if (style == kLoadTables) {
        regional_tables_load();
        return false;
    }
    return text && print_date(text, style, record);
}

}  // namespace vl::datetime
