// DateText_Core: a whole date by the regional pictures.  The pictures are
// read once, at load, into steps; printing walks the steps.

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

void print_steps(TextSink& out, const CompiledPicture& picture, const DateRecord& r) noexcept {
    const RegionalDateTables& t = regional_date_tables;
    const bool weekday_ok = r.tm_wday >= 0 && r.tm_wday < 7;
    const bool month_ok = r.tm_mon >= 0 && r.tm_mon < 12;
    const std::string_view weekday = weekday_ok ? name_of(t.weekday_names[r.tm_wday]) : std::string_view{};
    const std::string_view month = month_ok ? name_of(t.month_names[r.tm_mon]) : std::string_view{};
    for (int i = 0; i < picture.count; ++i) {
        const PictureStep& s = picture.steps[i];
        switch (s.piece) {
            case PicturePiece::kNothing: break;
            case PicturePiece::kLiteral: out.text({s.text, s.length}); break;
            case PicturePiece::kYear:
                if (r.tm_year >= kFirstShortYear && r.tm_year <= kLastShortYear)
                    out.number(r.tm_year % 100, 2);
                else
                    out.number(r.tm_year, 4);
                break;
            case PicturePiece::kYearFull: out.number(r.tm_year, 4); break;
            case PicturePiece::kDay: out.number(r.tm_mday); break;
            case PicturePiece::kDay2: out.number(r.tm_mday, 2); break;
            case PicturePiece::kWeekday3: out.text(weekday, 3); break;
            case PicturePiece::kWeekday: out.text(weekday); break;
            case PicturePiece::kWeekdayLettered:
                out.ch(s.text[0]);
                out.text(weekday);
                break;
            case PicturePiece::kMonth: out.number(r.tm_mon + 1); break;
            case PicturePiece::kMonth2: out.number(r.tm_mon + 1, 2); break;
            case PicturePiece::kMonth3: out.text(month, 3); break;
            case PicturePiece::kMonthName: out.text(month); break;
            case PicturePiece::kMonthLettered:
                out.ch(s.text[0]);
                out.text(month);
                break;
        }
    }
}

}  // namespace

void compile_picture(std::span<const char[kFieldSize]> fields, CompiledPicture& out) noexcept {
    out.count = 0;
    for (std::size_t i = 0; i < fields.size() && i < std::size(out.steps); ++i) {
        const PictureStep step = compile_field(name_of(fields[i]).substr(0, kFieldSize - 1), i % 2 == 1);
        if (step.piece != PicturePiece::kNothing) out.steps[out.count++] = step;
    }
}

bool DateText_Core(char* text, uint16_t style, DateRecord& record) noexcept {
    // The load of the regional date tables.
    if (style == kLoadTables) {
        regional_tables_load();
        return false;
    }
    if (!text) return false;
    switch (style & kLayoutMask) {
        case kLayoutCompact: {
            // YYMMDD, two digits each.
            TextSink out(text);
            out.number(record.tm_year % 100, 2);
            out.number(record.tm_mon + 1, 2);
            out.number(record.tm_mday, 2);
            return true;
        }
        case kLayoutLong: {
            TextSink out(text);
            print_steps(out, regional_date_tables.long_steps, record);
            return true;
        }
        case kLayoutShort: {
            TextSink out(text);
            print_steps(out, regional_date_tables.short_steps, record);
            return true;
        }
        default: return false;
    }
}

}  // namespace vl::datetime
