// Dates to text: the format table, the flag words, the questions, and the
// regional pictures.

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "civil.h"
#include "regional_settings.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::Intl;
using vltest::Poisoned;
using Row = std::vector<std::string>;

// Tuesday 5 March 2024 13:05:09.
const double kSample = vltest::day_value(2024, 3, 5) + vltest::hours(13, 5, 9);

// The printed text; only it and its terminator may be written.
std::string print(double value, uint32_t format) {
    Poisoned out(80);
    EXPECT_EQ(KELUTIL_date2str(value, format, out.data()), 0) << "format " << format;
    const std::string text = out.text();
    EXPECT_TRUE(out.clean_from(text.size() + 1)) << "format " << format;
    return text;
}

class DateText : public vltest::RegionalSettings {};

TEST_F(DateText, PrintsAsTheTableSaysUnderTheDefaultSettings) {
    vltest::for_rows("datetime/date2str_texts.tsv", 4,
                     [](const Row& row) { EXPECT_EQ(print(vltest::moment(row[0]), vltest::word(row[1])), row[2]); });
}

TEST_F(DateText, DayFirstSwapsOnlyTheTwoPartFormats) {
    apply(Intl{.iDate = "1"});
    EXPECT_EQ(print(kSample, 2), "5 Mar");
    EXPECT_EQ(print(kSample, 3), "5/3");
    EXPECT_EQ(print(kSample, 0), "03/05/24") << "0 follows the picture, not the order";
    EXPECT_EQ(print(kSample, 16), "Mar") << "16 has no second text";
    apply(Intl{.iDate = "2"});
    EXPECT_EQ(print(kSample, 2), "Mar 5") << "date order 2 is month first";
}

TEST_F(DateText, NoDateAtAllPrintsTwoDashes) {
    for (uint32_t format = 0; format <= 20; ++format) {
        // 1.0 lies before the calendar; 19 and 20 are the custom slots.
        for (double value : {VL_MISSING_VALUE, 1.0, 5373483.5}) EXPECT_EQ(print(value, format), "--") << value;
    }
    EXPECT_EQ(print(VL_MISSING_VALUE, 2048 + 1), "--") << "before the month name";
}

TEST_F(DateText, QuestionsAndStepStylesAnswerWithoutPrinting) {
    vltest::for_rows("datetime/date2str_answers.tsv", 5, [](const Row& row) {
        Poisoned out(8);
        EXPECT_EQ(
            KELUTIL_date2str(vltest::moment(row[0]), vltest::word(row[1]), row[2] == "none" ? nullptr : out.data()),
            vltest::word(row[3]));
        EXPECT_TRUE(out.clean_from(0)) << "nothing is printed";
    });
    // A layout of its own with piece 0 prints nothing either.
    Poisoned out(16);
    EXPECT_EQ(KELUTIL_date2str(kSample, 16384, out.data()), 0);
    EXPECT_TRUE(out.clean_from(0));
}

TEST_F(DateText, LanguageFlagComesFromTheFirstLetter) {
    for (const auto& [language, flag] : {std::pair{"HUN", 1u}, {"hun", 1u}, {"ENU", 0u}, {"xh", 0u}, {"E", 0u}}) {
        SCOPED_TRACE(language);
        apply(Intl{.sLanguage = language});
        EXPECT_EQ(KELUTIL_date2str(0.0, 24576, nullptr), flag);
        EXPECT_EQ(KELUTIL_Main(nullptr, 0, 0, 4), flag);
    }
}

TEST_F(DateText, RegionalPictures) {
    vltest::for_rows("datetime/date2str_pictures.tsv", 7, [&](const Row& row) {
        auto setting = [&](int i) { return row[i].empty() ? nullptr : row[i].c_str(); };
        apply(Intl{.iDate = setting(0), .sDate = setting(1), .sShortDate = setting(2), .sLongDate = setting(3)});
        EXPECT_EQ(print(kSample, 0), row[4]);
        EXPECT_EQ(print(kSample, 1), row[5]);
    });
}

// The short and long dates of every day of three centuries, under several
// settings, against texts built from an independent calendar.
TEST_F(DateText, EveryDayOfThreeCenturiesPrintsItsCalendarDate) {
    const char* const months[] = {"January", "February", "March",     "April",   "May",      "June",
                                  "July",    "August",   "September", "October", "November", "December"};
    const char* const weekdays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    auto padded = [](int64_t n, int width) {
        char b[8];
        std::snprintf(b, sizeof b, "%0*d", width, static_cast<int>(n));
        return std::string(b);
    };
    auto yy = [&](int64_t y) { return y >= 1945 && y <= 2044 ? padded(y % 100, 2) : padded(y, 4); };
    const Intl settings[] = {
        Intl{},
        Intl{.iDate = "1", .sDate = ".", .sShortDate = "dd.MM.yyyy", .sLongDate = "dddd', 'd'. 'MMMM' 'yyyy"},
        Intl{.iDate = "2", .sDate = "-", .sShortDate = "yyyy-M-d", .sLongDate = "yyyy'. 'MMMM' 'dd'., 'dddd"},
    };
    for (int s = 0; s < 3; ++s) {
        SCOPED_TRACE(settings[s].sShortDate ? settings[s].sShortDate : "defaults");
        apply(settings[s]);
        int failures = 0;
        for (int64_t z = vltest::days_from_civil(1900, 1, 1);
             z <= vltest::days_from_civil(2199, 12, 31) && failures < 5; ++z) {
            const vltest::Civil c = vltest::civil_from_days(z);
            const std::string month = months[c.month - 1], weekday = weekdays[vltest::weekday_from_days(z)];
            const std::string day = std::to_string(c.day), year = padded(c.year, 4);
            const std::string want[3][2] = {
                {padded(c.month, 2) + "/" + padded(c.day, 2) + "/" + yy(c.year),
                 weekday.substr(0, 3) + " " + month + " " + day + ", " + year},
                {padded(c.day, 2) + "." + padded(c.month, 2) + "." + year,
                 weekday + ", " + day + ". " + month + " " + year},
                {year + "-" + std::to_string(c.month) + "-" + day,
                 year + ". " + month + " " + padded(c.day, 2) + "., " + weekday},
            };
            // Noon, so that no rounding can move the day.
            const double v = static_cast<double>(z) + vltest::kUnixDayValue + 0.5;
            const std::string got_short = print(v, 0), got_long = print(v, 1);
            if (got_short != want[s][0] || got_long != want[s][1]) {
                ADD_FAILURE() << "day " << v << ": <" << got_short << "> <" << got_long << ">, want <" << want[s][0]
                              << "> <" << want[s][1] << ">";
                ++failures;
            }
        }
    }
}

TEST_F(DateText, ExactlyTheTextAndItsTerminatorAreWritten) {
    // The caller gives room for the longest text; a buffer that fits the
    // text exactly is enough, and nothing behind it is touched.
    for (uint32_t format : {0u, 1u, 10u, 33292u, 18u}) {
        SCOPED_TRACE(format);
        const std::string text = print(kSample, format);
        Poisoned out(text.size() + 1 + 4);
        KELUTIL_date2str(kSample, format, out.data());
        EXPECT_EQ(out.text(), text);
        EXPECT_EQ(out.untouched_from(0), text.size() + 1);
        EXPECT_TRUE(out.clean_from(text.size() + 1));
    }
}

}  // namespace
