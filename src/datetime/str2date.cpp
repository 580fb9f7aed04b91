// KELUTIL_str2date: dates read from what users type and data files hold,
// by the same format numbers and regional pictures the printer uses.  The
// text is read from a copy, so the caller's buffer is never written.

#include <cstring>
#include <memory>

#include "datetime/custom.h"
#include "datetime/date_parse.h"
#include "datetime/date_text.h"
#include "datetime/numeric_date.h"
#include "datetime/state.h"
#include "datetime/step_units.h"
#include "datetime/time_text.h"
#include "internal/values.h"
#include "platform/platform.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

enum ReadFlag : uint16_t {
    kShortOverride = VL_READ_COMPACT,
    kNowValue = VL_READ_NOW,
    kMarker = VL_READ_MARKER,
    kWeekdayNumber = VL_READ_WEEKDAY,
    kMonthNumber = VL_READ_MONTH,
    kStepQuantity = VL_READ_LENGTH,
};

constexpr uint16_t kLastFormat = VL_DATE_CUSTOM_SECOND;
constexpr uint16_t kRetryFormat = 10;
// The text of a custom reading kept for the retry.
constexpr std::size_t kSavedText = 120;
constexpr std::size_t kCompactDigits = 6;
// DateTime_CheckDate: fields from now where bad, then the time cleared.
constexpr int32_t kRepairAndClear = 18;

enum Reading : int { kRead = 0, kRetry = 2, kMissing = 5 };

constexpr bool is_delimiter(char c) noexcept { return c == ',' || c == '/' || c == '-' || c == '.' || c == ' '; }

// The caller's text copied, with room for padding and for the copy a retry
// puts back; short texts stay on the stack.
class WorkText {
  public:
    explicit WorkText(const char* s) noexcept : size_(std::strlen(s) + 1 + kCompactDigits) {
        char* room = small_;
        if (2 * size_ > sizeof small_) {
            try {
                heap_ = std::make_unique<char[]>(2 * size_);
            } catch (...) {
            }
            room = heap_.get();
        }
        text_ = room;
        backup_ = room ? room + size_ : nullptr;
        if (text_) std::strcpy(text_, s);
    }
    char* text() noexcept { return text_; }
    void save() noexcept { std::strcpy(backup_, text_); }
    void restore() noexcept { std::strcpy(text_, backup_); }
    const char* saved() const noexcept { return backup_; }

  private:
    char small_[128];
    std::size_t size_;
    std::unique_ptr<char[]> heap_;
    char* text_ = nullptr;
    char* backup_ = nullptr;
};

// Tokens cut at runs of the delimiters, upper-cased as they are taken.  The
// cursor is ours, so a host's own token cutting is never disturbed.
class Tokens {
  public:
    explicit Tokens(char* text) noexcept : p_(text) {}
    char* next() noexcept {
        while (*p_ && is_delimiter(*p_)) ++p_;
        if (!*p_) return nullptr;
        char* token = p_;
        for (; *p_ && !is_delimiter(*p_); ++p_) *p_ = platform::upper(*p_);
        if (*p_) *p_++ = '\0';
        return token;
    }

  private:
    char* p_;
};

void start_at_now() noexcept { working_record = DateTime_Now(); }

// The reading by picture: the even fields take the tokens in order.
int read_by_picture(char* text, const char (*fields)[kFieldSize], int count, bool long_picture) noexcept {
    // 1. Fields the text doesn't give keep today's values.  Today is asked
    //    for only when the text leaves a field out: reading the clock costs
    //    more than the rest of a reading, and a full date needs none of it.
    DateRecord& r = working_record;
    int32_t day = 0, month = 0, year = 0;
    bool has_day = false, has_month = false, has_year = false;
    // 2.-3. A leading weekday is passed over, not checked.
    Tokens tokens(text);
    char* token = tokens.next();
    if (token && abbreviation_index(token, kWeekdayAbbreviations) >= 0) token = tokens.next();
    // 4. The date parts of the picture in order.
    for (int i = 0; i < count && token; i += 2) {
        const char* field = fields[i];
        if (long_picture && (!field[0] || std::strcmp(field, "dddd") == 0)) continue;
        // 5.-6. A month may be named; everything else is a number.
        const bool is_month = field[0] == 'm' || field[0] == 'M';
        const int named = is_month ? abbreviation_index(token, kMonthAbbreviations) : -1;
        int32_t n = named + 1;
        if (named < 0 && !KELUTIL_cvtstr2int(token, &n)) {
            start_at_now();
            return kRetry;
        }
        // 7. The field's first letter says what the number is.
        if (field[0] == 'd' || field[0] == 'D') day = n, has_day = true;
        // Months count from 0; a wrapped number wraps here too, as it would
        // in 32-bit arithmetic, and is refused by the date check later.
        if (is_month) month = static_cast<int32_t>(static_cast<uint32_t>(n) - 1u), has_month = true;
        if (field[0] == 'y') year = n, has_year = true;
        token = tokens.next();
    }
    // 8. Tokens beyond the last field don't count.
    if (has_day && has_month && has_year)
        r.tm_sec = r.tm_min = r.tm_hour = 0;
    else
        start_at_now();
    if (has_day) r.tm_mday = day;
    if (has_month) r.tm_mon = month;
    if (has_year) r.tm_year = year;
    return kRead;
}

int read_short(char* text) noexcept {
    return read_by_picture(text, regional_date_tables.short_picture, kShortFields, false);
}

// A day of this month.
int read_day(const char* text) noexcept {
    start_at_now();
    int32_t n = 0;
    if (!KELUTIL_cvtstr2int(text, &n) || n < 1 || n > 31) return kRetry;
    working_record.tm_mday = n;
    return kRead;
}

// A weekday of this week, weeks beginning on Sunday; the week may reach
// into the neighbouring month.
int read_weekday(char* text) noexcept {
    start_at_now();
    platform::upper_in_place(text, std::strlen(text));
    const int w = abbreviation_index(text, kWeekdayAbbreviations);
    if (w < 0) return kRetry;
    const DateRecord& now = working_record;
    double today = 0.0;
    if (!DateTime_ToValue(static_cast<uint16_t>(now.tm_year), static_cast<uint16_t>(now.tm_mon + 1),
                          static_cast<uint16_t>(now.tm_mday), 0, 0, 0, today))
        return kRetry;
    DateRecord moved = now;
    if (!DateTime_FromValue(today + (w - now.tm_wday), moved, 0)) return kRetry;
    working_record = moved;
    return kRead;
}

// A year, with today's month and day.
int read_year(const char* text) noexcept {
    start_at_now();
    int32_t n = 0;
    if (!KELUTIL_cvtstr2int(text, &n)) return kRetry;
    working_record.tm_year = n;
    return kRead;
}

// YYMMDD: two characters each, the day taking the rest.  Nothing comes
// from today.
int read_compact(const char* text) noexcept {
    const std::size_t length = std::strlen(text);
    if (length < 2) return kRetry;
    int32_t part[3] = {};
    constexpr int32_t kMost[3] = {99, 12, 31};
    for (std::size_t i = 0; i < 3; ++i) {
        char piece[kSavedText] = "";
        const std::size_t from = 2 * i, count = i < 2 ? 2 : length - from;
        if (from > length || length - from < 2 || count >= sizeof piece) return kRetry;
        std::memcpy(piece, text + from, count);
        if (!KELUTIL_cvtstr2int(piece, &part[i]) || part[i] > kMost[i] || (i == 0 && part[i] < 0)) return kRetry;
    }
    working_record.tm_year = part[0];
    working_record.tm_mon = part[1] - 1;
    working_record.tm_mday = part[2];
    return kRead;
}

// Step 7: texts that can't be of the format go straight to the retry.
bool pre_check(uint16_t format, char* text) noexcept {
    if (!((format >= 5 && format <= 11) || format == 18)) return true;
    const std::size_t length = std::strlen(text);
    if (length == 0) return false;
    switch (format) {
        case 5:
        case 6:
        case 18: return platform::is_alpha(text[0]);
        case 7: return length <= 4;
        case 8: return length <= 2;
        case 11:
            if (length < kCompactDigits)
                KELUTIL_prepend_string(text, '0', static_cast<int32_t>(kCompactDigits - length));
            return true;
        default: return true;
    }
}

// Step 8: the date part by the format.
int read_by_format(uint16_t format, uint16_t style, bool override_style, bool delimited, char* text) noexcept {
    if (override_style) return (style & kLayoutMask) == kLayoutCompact ? read_compact(text) : read_short(text);
    switch (format) {
        case 1: return read_by_picture(text, regional_date_tables.long_picture, kLongFields, true);
        case 3:
        case 4: return delimited ? read_short(text) : read_day(text);
        // A weekday or a year with delimiters is more likely a whole date.
        case 5:
        case 6:
        case 18: return delimited ? kRetry : read_weekday(text);
        case 7:
        case 8: return delimited ? kRetry : read_year(text);
        case 11:
        case 12:
        case 13:
        case 14:
        case 15: return read_compact(text);
        case 17: return delimited ? read_short(text) : kMissing;
        default: return read_short(text);
    }
}

// What the reading asks of a text before it starts, found in one pass: a
// date is read in a few dozen instructions, and scanning the text once
// for each question would cost as much again.
struct Shape {
    char* first_blank = nullptr;
    bool colon = false;
    bool delimiter_before_blank = false;  // one of the delimiters other than the blank
};

Shape shape_of(char* text) noexcept {
    Shape shape;
    for (char* p = text; *p; ++p) {
        if (*p == ':') shape.colon = true;
        if (*p == ' ' && !shape.first_blank) shape.first_blank = p;
        if (!shape.first_blank && *p != ' ' && is_delimiter(*p)) shape.delimiter_before_blank = true;
    }
    return shape;
}

// The time behind a date: digit pairs for the styles without colons.
uint16_t tail_format(uint16_t style, bool custom) noexcept {
    if (custom || !(style & kStyleDigits)) return kTimeHoursMinutes;
    return style & kStyleSeconds ? kTimeDigitsSeconds : kTimeDigitsMinutes;
}

}  // namespace

double Date_ReadGeneral(const char* original, uint16_t flags, uint16_t format) noexcept {
    // 1. Nothing, or a negative number: no date.
    if (!original[0] || original[0] == '-') return MISSING_VALUE;
    WorkText work(original);
    char* text = work.text();
    if (!text) return MISSING_VALUE;
    // 2. Unknown formats read as format 0.
    if (format > kLastFormat) format = 0;
    char custom_time[kSavedText] = "";
    char* tail = nullptr;
    bool retried = false, custom = false;
    uint16_t style = 0;
    // 3. A custom picture reads into today at midnight; its time comes back
    //    as text.  A text that doesn't fit gets the retry.
    if (format >= kFirstCustomFormat) {
        start_at_now();
        DateTime_ResetTimeOfDay(&working_record);
        std::strncpy(custom_time, text, kSavedText - 1);
        const int result = Custom_Parse(custom_time, sizeof custom_time, format, working_record, kCustomReading);
        if (result == kCustomBadRun || result == kCustomBadLiteral) return MISSING_VALUE;
        custom = result == kCustomRead;
        if (custom) tail = custom_time;
        format = kRetryFormat;
        retried = true;
    }
    while (!custom) {
        // 4. The format's style word.
        style = kDateFormatTable[format];
        // 5. The time tail: behind the first blank when a time follows.
        const Shape shape = shape_of(text);
        bool delimited = shape.delimiter_before_blank || shape.first_blank;
        if (((style & kStyleDigits) || shape.colon) && shape.first_blank) {
            *shape.first_blank = '\0';
            tail = shape.first_blank + 1;
            delimited = shape.delimiter_before_blank;
        }
        // 6. The override reads the whole date compact or by the short picture.
        const bool override_style = flags & kShortOverride;
        if (override_style) style = (style & kLayoutMask) == kLayoutCompact ? kLayoutCompact : kLayoutShort;
        // 7.-8. The pre-check, then the reading.
        work.save();
        const int result =
            pre_check(format, text) ? read_by_format(format, style, override_style, delimited, text) : kRetry;
        if (result == kRead) break;
        // 9. One retry by the short picture, with the date part as it was.
        if (result == kMissing || retried || !work.saved()[0]) return MISSING_VALUE;
        retried = true;
        format = kRetryFormat;
        work.restore();
    }
    // 10. Month, day and year in range, and the time cleared.  A field out
    //     of range gives no date whatever the repair would put in the
    //     record, so the clock is not read for it.
    const DateRecord& r = working_record;
    if (r.tm_mon < 0 || r.tm_mon > 11 || r.tm_mday < 1 || r.tm_mday > 31 || r.tm_year < 0 || r.tm_year > 9999)
        return MISSING_VALUE;
    if (!DateTime_CheckDate(&working_record, kRepairAndClear)) return MISSING_VALUE;
    // 11. A date that exists; two-digit years widened.
    double value = 0.0;
    if (DateTime_CvtDouble(&value, &working_record, VL_CVT_TO_VALUE) != 0) return MISSING_VALUE;
    // 12. The time of day behind it.
    if (tail && *tail) value += KELUTIL_str2time(tail, tail_format(style, custom));
    return value;
}

bool Name_Lookup(const char* text, int32_t& number, const char (*table)[kNameRow], int32_t count,
                 int32_t base) noexcept {
    if (!text) return false;
    // 1. A number decides alone.
    if (base >= 0) {
        int32_t n = 0;
        if (KELUTIL_cvtstr2int(text, &n)) {
            if (n < base || n - base >= count) return false;
            number = n;
            return true;
        }
    } else {
        base = -1 - base;
    }
    // 2. The first name the text begins.
    if (!text[0]) return false;
    for (int32_t i = 0; i < count; ++i) {
        if (text::str_prefix_cmpi(text, table[i]) == 0) {
            number = i + base;
            return true;
        }
    }
    return false;
}

}  // namespace vl::datetime

using namespace vl;
using namespace vl::datetime;

extern "C" {

namespace {

// Everything but the quick road, kept out of line: its locals would
// otherwise give every quick reading a large frame to set up.
[[gnu::noinline]] double read_slow(char* text, uint32_t flags, uint32_t format) noexcept {
    const auto f = static_cast<uint16_t>(flags & 0xFFFF & ~kShortOverride);
    double value = 0.0;
    const RegionalDateTables& t = regional_date_tables;
    switch (f) {
        case kNowValue:
            start_at_now();
            return DateTime_CvtDouble(&value, &working_record, VL_CVT_TO_VALUE) == 0 ? value : MISSING_VALUE;
        case kMarker: DateTime_CvtDouble(&value, nullptr, VL_CVT_MARKER); return value;
        default: break;
    }
    if (!text) return MISSING_VALUE;
    int32_t n = 0;
    switch (f) {
        case kWeekdayNumber: return Name_Lookup(text, n, t.weekday_names, 7, 0) ? n : MISSING_VALUE;
        case kMonthNumber: return Name_Lookup(text, n, t.month_names, 12, 1) ? n : MISSING_VALUE;
        case kStepQuantity: {
            WorkText work(text);
            if (!work.text()) return MISSING_VALUE;
            DateTime_UnitValue(&value, kUnitRead, work.text());
            return value;
        }
        default: return Date_ReadGeneral(text, static_cast<uint16_t>(flags), static_cast<uint16_t>(format));
    }
}

// Plain format 0 with no flags: the quick road, else the general reader.
[[gnu::noinline]] double read_plain(char* text) noexcept {
    const NumericReading quick = Date_ReadNumericValue(text);
    if (quick.taken) return quick.value;
    return read_slow(text, 0, 0);
}

// Any other call, as it always went.
[[gnu::noinline]] double read_other(char* text, uint32_t flags, uint32_t format) noexcept {
    const auto f = static_cast<uint16_t>(flags & 0xFFFF & ~kShortOverride);
    // Format 0, and the unknown formats that read as it, first try the
    // quick road for three plain numbers, before anything else is asked.
    double value = 0.0;
    const auto f16 = static_cast<uint16_t>(format);
    const bool special =
        f == kNowValue || f == kMarker || f == kWeekdayNumber || f == kMonthNumber || f == kStepQuantity;
    if (!special && text && (f16 == 0 || f16 > kLastFormat) && Date_ReadNumeric(text, value)) return value;
    return read_slow(text, flags, format);
}

}  // namespace

double VLAPI KELUTIL_str2date(char* text, uint32_t flags, uint32_t format) noexcept {
    // Nearly every call is plain format 0 with no flags; one test sends it
    // on, so the entry sets up no frame at all.
    if (((flags & 0xFFFF & ~kShortOverride) | (format & 0xFFFF)) == 0 && text) return read_plain(text);
    return read_other(text, flags, format);
}

double VLAPI KELUTIL_str2date_ex(char* text, uint32_t flags, uint32_t format) noexcept {
    return KELUTIL_str2date(text, flags, format);
}

}  // extern "C"
