// The custom slots: their pictures, printing by them, and reading by them.

#include <string>
#include <vector>

#include "pinned_today.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::day_value;
using vltest::hours;

constexpr double kMissing = VL_MISSING_VALUE;
const double kSample = day_value(2024, 3, 5) + hours(13, 5, 9);

class CustomFormat : public vltest::PinnedToday {
  protected:
    void SetUp() override {
        PinnedToday::SetUp();
        KELUTIL_custom_date_format(0, 2, nullptr);
    }
    static std::string picture(int slot) {
        vltest::Poisoned out(64);
        KELUTIL_custom_date_format(slot, 1, out.data());
        return out.text();
    }
    static void set(int slot, const std::string& p) {
        std::vector<char> text = vltest::writable(p);
        EXPECT_EQ(KELUTIL_custom_date_format(slot, 0, text.data()), 0);
    }
    static std::string print(double value, uint32_t format) {
        vltest::Poisoned out(64);
        KELUTIL_date2str(value, format, out.data());
        EXPECT_TRUE(out.clean_from(out.text().size() + 1));
        return out.text();
    }
    static double read(const std::string& text, uint32_t format) {
        std::vector<char> buffer = vltest::writable(text);
        return KELUTIL_str2date(buffer.data(), 0, format);
    }
};

TEST_F(CustomFormat, PicturesAndTheirDefaults) {
    EXPECT_EQ(picture(0), "M'-'d'-'yyyy");
    EXPECT_EQ(picture(1), "hh':'mm':'ss'.'####");
    EXPECT_EQ(KELUTIL_custom_date_format(0, 256, nullptr), 19);
    // Refused pictures leave the slot as it was.
    const std::string too_long(61, 'd');
    for (const char* refused : {"'abc'", "hh':'mm':'ss'.'#####", "'.'##", too_long.c_str()}) {
        SCOPED_TRACE(refused);
        set(1, refused);
        EXPECT_EQ(picture(1), "hh':'mm':'ss'.'####");
    }
    set(0, "yyyyMMdd");
    EXPECT_EQ(picture(0), "yyyyMMdd");
    set(0, "");
    EXPECT_EQ(picture(0), "M'-'d'-'yyyy");
}

TEST_F(CustomFormat, PrintsThroughTheSystemPictures) {
    const struct {
        const char* picture;
        double value;
        const char* text;
    } rows[] = {
        {"M'-'d'-'yyyy", kSample, "3-5-2024"},
        {"hh':'mm':'ss'.'####", day_value(2024, 3, 5) + hours(13, 5, 9.25), "01:05:09.2500"},
        {"hh':'mm':'ss'.'####", day_value(2024, 3, 5) + hours(13, 5, 59.99996), "01:06:00.0000"},
        {"HH':'mm':'ss'.'#", day_value(2024, 3, 5) + hours(13, 5, 9.25), "13:05:09.3"},
        {"yyyy'-'MM'-'dd' 'HH':'mm':'ss'.'##' 'tt", day_value(2024, 3, 5) + hours(13, 5, 9.25),
         "2024-03-05 13:05:09.25 PM"},
        {"h':'mm' 'tt' on 'dddd', 'MMMM' 'd", kSample, "1:05 PM on Tuesday, March 5"},
        {"ddMMMyy", kSample, "05Mar24"},
        {"HH':'mm'.'##", kSample, "--"},        // no seconds for the fraction
        {"yyyy", day_value(1500, 1, 1), "--"},  // before the system calendar
        {"yyyy", kMissing, "--"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.picture);
        set(0, r.picture);
        EXPECT_EQ(print(r.value, 19), r.text);
    }
}

TEST_F(CustomFormat, ReadsByThePicture) {
    const double march5 = day_value(2024, 3, 5);
    const struct {
        const char* picture;
        const char* text;
        double want;
    } rows[] = {
        {"yyyyMMdd", "20240305", march5},
        {"ddMMMyy", "05MAR24", march5},
        {"dd' 'MMMM' 'yyyy", "5   march 2024", march5},
        {"yyyy'-'MM'-'dd' 'hh':'mm':'ss", "2024-03-05 01:05:09", march5 + hours(1, 5, 9)},
        {"yyyy'-'MM'-'dd' 'hh':'mm':'ss' 'tt", "2024-03-05 01:05:09 PM", march5 + hours(13, 5, 9)},
        {"M'-'d'-'yyyy' 'HH':'mm':'ss'.'###", "3-5-2024 13:05:09.250", march5 + hours(13, 5, 9.25)},
        {"ddd', 'MMM' 'd", "Tue, Mar 5", day_value(2026, 3, 5)},
        // Not fitting: the text is read again as format 10.
        {"yMd", "3/5/2024", march5},
        {"yyyyMMdd", "2024", kMissing},
        // Pictures outside the language: no date.
        {"'x'yyyy", "x2024", kMissing},
        {"yyy", "2024", kMissing},
        {"gg yyyy", "AD 2024", kMissing},
        {"d'ab'M", "5ab3", kMissing},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(std::string(r.picture) + " / " + r.text);
        set(0, r.picture);
        const double got = read(r.text, 19);
        if (r.want == kMissing)
            EXPECT_EQ(vltest::bits(got), vltest::bits(kMissing));
        else
            EXPECT_NEAR(got, r.want, 1e-7);
    }
}

TEST_F(CustomFormat, WhatThePictureLeavesOutIsTodayAtMidnight) {
    set(1, "HH':'mm");
    // Whatever an earlier call left in the shared record.
    EXPECT_EQ(print(day_value(1999, 7, 4) + hours(6, 7, 8), 0), "07/04/99");
    EXPECT_NEAR(read("13:05", 20), today_ + hours(13, 5), 1e-7);
    set(1, "MMMM");
    EXPECT_EQ(read("March", 20), day_value(2026, 3, 19));
}

TEST_F(CustomFormat, PrintedTextsReadBack) {
    const char* pictures[] = {"M'-'d'-'yyyy' 'H':'mm", "yyyyMMdd' 'HH':'mm':'ss",
                              "dddd', 'MMMM' 'dd', 'yyyy' 'hh':'mm' 'tt", "HH':'mm':'ss'.'##' 'dd'/'MM'/'yyyy"};
    for (const char* p : pictures) {
        SCOPED_TRACE(p);
        set(1, p);
        for (int64_t z = vltest::days_from_civil(1700, 1, 1); z < vltest::days_from_civil(2300, 1, 1); z += 997) {
            // Whole minutes, so every picture keeps the whole value.
            const double value =
                static_cast<double>(z) + vltest::kUnixDayValue + hours(static_cast<double>(z % 24), 17);
            const std::string text = print(value, 20);
            EXPECT_NEAR(read(text, 20), value, 1e-7) << text;
        }
    }
}

}  // namespace
