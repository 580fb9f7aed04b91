// The quick road of the date reader: three plain numbers by the short
// picture, the most common text of data-file columns.
#pragma once

namespace vl::datetime {

// Reads `text` as format 0 does when it is three numbers of one to four
// digits with one '/', '-' or '.' between them, ending there, at a blank
// before other words, or at a blank before a time of "h:mm" or "h:mm:ss"
// digits, and the short picture names day, month and year.  Answers false,
// having touched nothing, for any other text; the general reader takes
// those.  When it answers true, `value` and the shared state (the working
// record, the record copy and the number error flag) are what the general
// reader leaves for the same text.
bool Date_ReadNumeric(const char* text, double& value) noexcept;

// The same reading with its answer handed back in registers: `taken` as
// Date_ReadNumeric answers, and `value` its value when taken.  Nothing
// passes through memory, which the hot caller would otherwise store and
// load again on every reading.
struct NumericReading {
    double value;
    bool taken;
};
NumericReading Date_ReadNumericValue(const char* text) noexcept;

}  // namespace vl::datetime
