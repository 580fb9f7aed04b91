// The regional date tables: what the system's regional settings say about
// writing dates.  Loaded when the library loads and whenever the host
// reports changed settings; printing and reading dates never touch the
// system settings themselves.
#pragma once

#include <cstdint>

namespace vl::datetime {

struct RegionalDateTables {
    int32_t date_order = 0;     // iDate: 1 means day first
    int32_t language_flag = 0;  // 1 when the language name begins with "H"
    char language[25] = "E";    // sLanguage, upper-cased
    char date_separator[10] = "/";
};
extern RegionalDateTables regional_date_tables;

// Reads the "intl" settings into the tables.
void regional_tables_load();

}  // namespace vl::datetime
