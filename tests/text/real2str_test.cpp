// Numbers to text under the short format texts, and the small companions.

#include <filesystem>
#include <fstream>
#include <string>

#include "support.h"
#include "text/text_rows.h"
#include "vlcore.h"

using vltest::bits;
using vltest::Poisoned;

namespace {

// Prints into a poisoned buffer and checks that exactly the text and its
// terminator were written.  A "*" or "." body gets the short room it is
// promised, any other body the full one.
void expect_prints(const std::string& format, double value, const std::string& text) {
    SCOPED_TRACE("format <" + format + ">");
    const bool short_body = format.find('%') == format.npos && format.find_first_of("*.") != format.npos;
    Poisoned dst(short_body ? VL_REAL2STR_SHORT_ROOM : VL_FORMAT_ROOM);
    EXPECT_EQ(KELUTIL_real2str(value, dst.data(), format.c_str()), dst.data());
    EXPECT_EQ(dst.text(), text);
    EXPECT_TRUE(dst.clean_from(text.size() + 1)) << "wrote past the terminator";
}

TEST(Real2Str, Table) {
    vltest::each_row("text/real2str.tsv", "print", 3,
                     [](const auto& f) { expect_prints(f[0], vltest::value(f[1]), f[2]); });
}

// The `D` prefix prints what date printing prints for the number behind it.
TEST(Real2Str, DatePrefixHandsOver) {
    const struct {
        const char* format;
        uint32_t date_format;
    } cases[] = {{"D", 0}, {"D3", 3}, {"D 5", 5}, {"D65539", 3}, {"Dx", 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.format);
        Poisoned expected(VL_FORMAT_ROOM), dst(VL_FORMAT_ROOM);
        KELUTIL_date2str(2451545.25, c.date_format, expected.data());
        EXPECT_EQ(KELUTIL_real2str(2451545.25, dst.data(), c.format), dst.data());
        EXPECT_EQ(dst.text(), expected.text());
        EXPECT_EQ(dst.untouched_from(), expected.untouched_from());
    }
}

TEST(Real2Str, PrintfBodyLimits) {
    // Output of exactly 119 characters fits; one more prints "--".
    expect_prints("%119.1f", 1.5, std::string(116, ' ') + "1.5");
    expect_prints("%120.1f", 1.5, "--");
    const std::string exact = "%.0f" + std::string(115, 'x');  // body of 119 characters
    expect_prints(exact, 1.0, "1" + std::string(115, 'x'));
    const std::string longer = exact + "x";  // 120 characters, output still short
    expect_prints(longer, 1.0, "--");
    // White space does not count against the body.
    const std::string spaced = exact + "   ";
    expect_prints(spaced, 1.0, "1" + std::string(115, 'x'));
    // The suffix counts against the output.
    const std::string with_suffix = "%.0f" + std::string(114, 'x');  // 115 characters out
    expect_prints("E" + with_suffix, 1000.0, "1" + std::string(114, 'x') + "k");
    expect_prints("%.150f", 1.5, "--");
}

// ---- KELUTIL_real2real, KELUTIL_int2str, KELUTIL_int2fixstr -------------

TEST(Real2Real, Table) {
    vltest::each_row("text/real2str.tsv", "round", 3, [](const auto& f) {
        EXPECT_EQ(KELUTIL_real2real(vltest::value(f[0]), static_cast<int32_t>(vltest::integer(f[1]))),
                  vltest::value(f[2]));
    });
}

TEST(Int2Str, TextAndStaticBuffer) {
    const struct {
        int32_t value;
        const char* text;
    } cases[] = {{0, "0"}, {42, "42"}, {-7, "-7"}, {INT32_MAX, "2147483647"}, {INT32_MIN, "-2147483648"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_STREQ(KELUTIL_int2str(c.value), c.text);
    }
    char* first = KELUTIL_int2str(1);
    char* second = KELUTIL_int2str(22);
    EXPECT_EQ(first, second) << "one static buffer";
    EXPECT_STREQ(first, "22");
}

TEST(Int2FixStr, Table) {
    vltest::each_row("text/real2str.tsv", "fixstr", 3, [](const auto& f) {
        Poisoned dst(32);
        KELUTIL_int2fixstr(static_cast<int32_t>(vltest::integer(f[0])), static_cast<int32_t>(vltest::integer(f[1])),
                           dst.data());
        EXPECT_EQ(dst.text(), f[2]);
        EXPECT_TRUE(dst.clean_from(f[2].size() + 1));
    });
}

// ---- KELUTIL_GetPrivateProfileReal ---------------------------------------

class ProfileReal : public ::testing::Test {
  protected:
    void SetUp() override {
        path_ = std::filesystem::temp_directory_path() /
                ("vlcore_real_" + std::to_string(reinterpret_cast<uintptr_t>(this)) + ".ini");
        std::ofstream(path_) << "[Plot]\nScale = 2.5\nBad=abc\nExp=1e3\nEmpty=\nNeg=-0.125\n[Other]\nScale=7\n";
    }
    void TearDown() override { std::filesystem::remove(path_); }
    double read(const char* section, const char* key, double def) {
        return KELUTIL_GetPrivateProfileReal(section, key, def, path_.string().c_str());
    }
    std::filesystem::path path_;
};

TEST_F(ProfileReal, StoredTexts) {
    EXPECT_EQ(read("Plot", "Scale", 9.0), 2.5);
    EXPECT_EQ(read("plot", "SCALE", 9.0), 2.5) << "names match without regard to case";
    EXPECT_EQ(read("Other", "Scale", 9.0), 7.0);
    EXPECT_EQ(read("Plot", "Exp", 9.0), 1000.0);
    EXPECT_EQ(read("Plot", "Neg", 9.0), -0.125);
    EXPECT_EQ(read("Plot", "Empty", 9.0), 0.0) << "an empty text reads as zero";
    EXPECT_EQ(bits(read("Plot", "Bad", 9.0)), bits(VL_MISSING_VALUE));
}

TEST_F(ProfileReal, DefaultTravelsAsText) {
    EXPECT_EQ(read("Plot", "Absent", 1.25), 1.25);
    EXPECT_EQ(read("Plot", "Absent", 3.14159265), 3.0 + 14159.0 / 100000.0) << "five decimals of \"*\"";
    EXPECT_EQ(read("Plot", "Absent", 1e12), 1e12) << "via \"1E12\"";
    EXPECT_EQ(read("Absent", "Scale", -2.5), -2.5);
    EXPECT_EQ(read("Plot", "Absent", VL_MISSING_VALUE), 0.0) << "\"--\" reads as zero";
    EXPECT_EQ(KELUTIL_GetPrivateProfileReal("Plot", "Scale", 4.5, (path_.string() + ".none").c_str()), 4.5);
}

}  // namespace
