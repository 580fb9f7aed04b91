#include "datetime/regional.h"

#include <cstring>

#include "platform/platform.h"

namespace vl::datetime {

RegionalDateTables regional_date_tables;

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
}

}  // namespace vl::datetime
