// The load of the regional date tables.

#include "datetime/regional.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "datetime/calendar.h"
#include "datetime/date_text.h"
#include "datetime/state.h"
#include "platform/platform.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

constexpr const char* kDefaultShortPicture = "MM/dd/yy";
constexpr const char* kDefaultLongPicture = "ddd' 'MMMM' 'd', 'yyyy";
// Pictures are read up to 49 characters; the short one gets the separator
// added behind it.
constexpr std::size_t kPictureRoom = 50;

constexpr uint32_t kFirstMonthString = 201;
constexpr uint32_t kFirstWeekdayString = 301;

// Copies at most what a field holds, always terminated.
void set_field(std::span<char> field, const char* text) noexcept {
    const std::size_t n = std::min(std::strlen(text), field.size() - 1);
    std::memcpy(field.data(), text, n);
    field[n] = '\0';
}

// Cuts `text` at `delimiters` into the fields from `first` on, every
// `stride`-th; the fields not reached stay empty.
void split_picture(char* text, const char* delimiters, std::span<char[kFieldSize]> fields, int first,
                   int stride) noexcept {
    char token[kPictureRoom + kFieldSize];
    char* rest = text;
    for (int i = first; i < static_cast<int>(fields.size()); i += stride) {
        if (*rest == '\0') break;
        rest = text::DateText_Split(rest, token, delimiters);
        set_field(fields[i], token);
    }
}

// The long picture: at apostrophes, or at blanks with a comma as its own
// literal, or the default when it has neither.
void divide_long_picture(char* text, char (&fields)[kLongFields][kFieldSize]) noexcept {
    for (auto& f : fields) f[0] = '\0';
    // 1. Neither apostrophes nor blanks: the default picture.
    if (!std::strchr(text, '\'') && !std::strchr(text, ' ')) std::strcpy(text, kDefaultLongPicture);
    // 2. Apostrophes quote the literal text between the parts.
    if (std::strchr(text, '\'')) {
        split_picture(text, "'", fields, 0, 1);
        return;
    }
    // 3. Blanks: each part goes into an even field, and the odd one behind
    //    it is ", " when the part ended in a comma, else " ".
    split_picture(text, " ", fields, 0, 2);
    for (int i = 0; i + 1 < kLongFields; i += 2) {
        const std::size_t n = std::strlen(fields[i]);
        if (n > 0 && fields[i][n - 1] == ',') {
            fields[i][n - 1] = '\0';
            set_field(fields[i + 1], ", ");
        } else {
            set_field(fields[i + 1], " ");
        }
    }
}

// Month or weekday names from the string table: the text up to the first
// blank is the abbreviation (when there is a table for it), the rest the
// name.  Stops at the first string that is missing.
template <std::size_t Rows, std::size_t Abbr>
void load_names(uint32_t first_id, int count, char (&names)[Rows][15], char (*abbreviations)[Abbr]) noexcept {
    for (auto& row : names) row[0] = '\0';
    if (abbreviations)
        for (int i = 0; i < count; ++i) abbreviations[i][0] = '\0';
    for (int i = 0; i < count; ++i) {
        char text[15];
        if (platform::load_string(first_id + static_cast<uint32_t>(i), text) == 0) break;
        char* blank = abbreviations ? std::strchr(text, ' ') : nullptr;
        if (!blank) {
            set_field(names[i], text);
            continue;
        }
        *blank = '\0';
        set_field(abbreviations[i], text);
        set_field(names[i], blank + 1);
    }
}

}  // namespace

void regional_tables_load() {
    RegionalDateTables& t = regional_date_tables;
    // 1. Which comes first, day or month.
    t.date_order = platform::profile_int("intl", "iDate", 0);
    // 2. The language; only its first letter matters to the library.
    platform::profile_string("intl", "sLanguage", "E", t.language);
    platform::upper_in_place(t.language, std::strlen(t.language));
    t.language_flag = t.language[0] == 'H' ? 1 : 0;
    // 3. The date separator.
    platform::profile_string("intl", "sDate", "/", t.date_separator);
    // 4. The two pictures.
    char short_text[kPictureRoom + kFieldSize];
    char long_text[kPictureRoom];
    platform::profile_string("intl", "sShortDate", kDefaultShortPicture, std::span(short_text, kPictureRoom));
    platform::profile_string("intl", "sLongDate", kDefaultLongPicture, long_text);
    // 5. The long picture into its seven fields.
    divide_long_picture(long_text, t.long_picture);
    // 6. The short picture: three parts cut at the separator's characters,
    //    and the separator itself between them.
    std::strcat(short_text, t.date_separator);
    for (auto& f : t.short_picture) f[0] = '\0';
    split_picture(short_text, t.date_separator, t.short_picture, 0, 2);
    set_field(t.short_picture[1], t.date_separator);
    set_field(t.short_picture[3], t.date_separator);
    // The pictures as the printer walks them.
    compile_picture(t.short_picture, t.short_steps);
    compile_picture(t.long_picture, t.long_steps);
    // 7. The working record starts at now.
    DateTime_CheckDate(&working_record, VL_CHECK_FILL);
    // 8.-9. Month and weekday names.
    load_names(kFirstMonthString, 12, t.month_names, t.month_abbreviations);
    load_names<8, 8>(kFirstWeekdayString, 7, t.weekday_names, nullptr);
    // 10. The lengths of the names, for the printer.
    for (std::size_t i = 0; i < std::size(t.month_names); ++i)
        t.month_name_lengths[i] = static_cast<uint8_t>(strnlen(t.month_names[i], sizeof t.month_names[i]));
    for (std::size_t i = 0; i < std::size(t.weekday_names); ++i)
        t.weekday_name_lengths[i] = static_cast<uint8_t>(strnlen(t.weekday_names[i], sizeof t.weekday_names[i]));
}

}  // namespace vl::datetime
