// The regional date tables: what the system's regional settings say about
// writing dates.  Loaded when the library loads and whenever the host
// reports changed settings; printing and reading dates never touch the
// system settings themselves.
#pragma once

#include <cstdint>

namespace vl::datetime {

// A picture alternates date parts (even fields: "MM", "dd", "yyyy"...) and
// the literal text between them (odd fields).
inline constexpr int kFieldSize = 10;  // 9 characters and the terminator
inline constexpr int kShortFields = 5;
inline constexpr int kLongFields = 7;

// A picture as the printer walks it: each field turned, at load, into what
// it prints.
enum class PicturePiece : uint8_t {
    kNothing,
    kLiteral,
    kYear,      // two digits for 1945 to 2044, else four
    kYearFull,  // four digits
    kDay,
    kDay2,
    kWeekday3,
    kWeekday,
    kWeekdayLettered,  // the field's first letter, then the name
    kMonth,
    kMonth2,
    kMonth3,
    kMonthName,
    kMonthLettered,
};
struct PictureStep {
    PicturePiece piece = PicturePiece::kNothing;
    uint8_t length = 0;  // of text
    char text[kFieldSize] = {};
};
struct CompiledPicture {
    PictureStep steps[kLongFields];
    uint8_t count = 0;
};

struct RegionalDateTables {
    int32_t date_order = 0;     // iDate: 1 means day first
    int32_t language_flag = 0;  // 1 when the language name begins with "H"
    char language[25] = "E";    // sLanguage, upper-cased
    char date_separator[kFieldSize] = "/";
    char short_picture[kShortFields][kFieldSize] = {"MM", "/", "dd", "/", "yy"};
    char long_picture[kLongFields][kFieldSize] = {"ddd", " ", "MMMM", " ", "d", ", ", "yyyy"};
    char month_abbreviations[12][8] = {};
    char month_names[13][15] = {};   // the 13th stays empty
    char weekday_names[8][15] = {};  // the 8th stays empty
    // Their lengths, measured at load so that printing needn't.
    uint8_t month_name_lengths[13] = {};
    uint8_t weekday_name_lengths[8] = {};
    // The two pictures ready for printing.
    CompiledPicture short_steps;
    CompiledPicture long_steps;
};
extern RegionalDateTables regional_date_tables;

// Reads the "intl" settings and the month and weekday names into the
// tables, and sets the working record to now.  The load of
// KELUTIL_date2str(0.0, 32768, no buffer) runs this.
void regional_tables_load();

}  // namespace vl::datetime
