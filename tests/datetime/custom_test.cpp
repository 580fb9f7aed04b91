// The custom slots: their pictures, printing by them, and reading by them.

#include <string>
#include <vector>

#include "pinned_today.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::day_value;
using vltest::hours;

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

TEST_F(CustomFormat, PrintsAndReadsByThePicture) {
    vltest::for_rows("datetime/custom_pictures.tsv", 4, [](const std::vector<std::string>& row) {
        set(0, row[1]);
        if (row[0] == "print")
            EXPECT_EQ(print(vltest::moment(row[2]), 19), row[3]);
        else
            vltest::expect_moment(read(row[3], 19), row[2]);
    });
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
