// Format-directed output: KELUTIL_sprintf and the digit-row converter.

#include <algorithm>
#include <string>

#include "support.h"
#include "text/text_rows.h"
#include "vlcore.h"

using vltest::Poisoned;

namespace {

void expect_sprintf(const std::string& format, double value, const std::string& text, int32_t result) {
    SCOPED_TRACE("format <" + format + ">");
    Poisoned dst(VL_FORMAT_ROOM);
    EXPECT_EQ(KELUTIL_sprintf(dst.data(), format.c_str(), value), result);
    EXPECT_EQ(dst.text(), text);
    EXPECT_TRUE(dst.clean_from(text.size() + 1)) << "wrote past the terminator";
}

TEST(Sprintf, Table) {
    vltest::each_row("text/format_output.tsv", "sprintf", 4, [](const auto& f) {
        expect_sprintf(f[0], vltest::value(f[1]), f[2], static_cast<int32_t>(vltest::integer(f[3])));
    });
}

TEST(Sprintf, FormatLengthLimit) {
    const std::string ok = "%7.3e" + std::string(114, ' ');  // 119 characters
    expect_sprintf(ok, 1.5, "1.500e0", 0);
    expect_sprintf(ok + " ", 1.5, "--", -1);
}

// ---- KELUTIL_real_str -----------------------------------------------------

// A form and flags as written in the data: names joined by '|', or a number.
uint32_t mode_of(const std::string& field) {
    const struct {
        const char* name;
        uint32_t bit;
    } names[] = {{"fixed", VL_REAL_FIXED}, {"general", VL_REAL_GENERAL}, {"exponent", VL_REAL_EXPONENT},
                 {"width", VL_REAL_WIDTH}, {"trim", VL_REAL_TRIM},       {"upper", VL_REAL_UPPER}};
    uint32_t mode = 0;
    std::size_t from = 0;
    for (std::size_t bar; from <= field.size(); from = bar + 1) {
        bar = std::min(field.find('|', from), field.size());
        const std::string part = field.substr(from, bar - from);
        uint32_t bit = 0;
        for (const auto& n : names)
            if (part == n.name) bit = n.bit;
        mode |= bit ? bit : static_cast<uint32_t>(vltest::integer(part));
    }
    return mode;
}

TEST(RealStr, Modes) {
    vltest::each_row("text/format_output.tsv", "real_str", 6, [](const auto& f) {
        Poisoned dst(VL_REAL_STR_ROOM);
        EXPECT_EQ(KELUTIL_real_str(vltest::value(f[0]), mode_of(f[1]), static_cast<uint32_t>(vltest::integer(f[2])),
                                   static_cast<uint32_t>(vltest::integer(f[3])), dst.data()),
                  vltest::integer(f[5]));
        EXPECT_EQ(dst.text(), f[4]);
        EXPECT_TRUE(dst.clean_from(f[4].size() + 1)) << "wrote past the terminator";
    });
}

TEST(RealStr, LongestTexts) {
    // 255 places behind the point and no digit reaching them: "0." and 255
    // zeros, unsigned.
    Poisoned dst(VL_REAL_STR_ROOM);
    EXPECT_EQ(KELUTIL_real_str(-1e-300, VL_REAL_FIXED, 7, 255, dst.data()), 1);
    EXPECT_EQ(dst.text(), "0." + std::string(255, '0'));
    EXPECT_TRUE(dst.clean_from(258));
    // The largest double in fixed form: 309 integer places from a row of 119
    // digits (their tail the noise of repeated multiplication), the rest
    // zeros.
    Poisoned big(VL_REAL_STR_ROOM);
    EXPECT_EQ(KELUTIL_real_str(-1.7976931348623157e308, VL_REAL_FIXED, 255, 255, big.data()), 0);
    const std::string text = big.text();
    EXPECT_EQ(text.size(), 310u);
    EXPECT_EQ(text.substr(0, 15), "-17976931348623");
    EXPECT_EQ(text.substr(120), std::string(190, '0'));
    EXPECT_EQ(text.find('.'), std::string::npos);
    EXPECT_LT(text.size() + 1, static_cast<std::size_t>(VL_REAL_STR_ROOM));
    EXPECT_TRUE(big.clean_from(text.size() + 1));
    // At most 119 digits in exponent form.
    Poisoned e(VL_REAL_STR_ROOM);
    EXPECT_EQ(KELUTIL_real_str(1.0 / 3.0, VL_REAL_EXPONENT, 0, 200, e.data()), 0);
    EXPECT_EQ(e.text().size(), std::string("3.").size() + 118 + std::string("e-1").size());
    EXPECT_EQ(e.text().substr(0, 17), "3.333333333333333");
}

}  // namespace
