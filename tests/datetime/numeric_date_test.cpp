// The quick road of the date reader against the general one: on many
// generated texts, wherever the quick road takes a text it must give the
// same value and leave the same shared state, and where it doesn't it must
// leave the state alone.

#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "datetime/date_parse.h"
#include "datetime/numeric_date.h"
#include "datetime/state.h"
#include "pinned_today.h"
#include "support.h"
#include "text/text.h"
#include "vlcore.h"

namespace {

using namespace vl::datetime;

// What a reading may leave behind besides its value.
struct Trace {
    DateRecord working;
    DateRecord scratch;
    uint8_t number_error;
    bool operator==(const Trace& o) const {
        return std::memcmp(&working, &o.working, sizeof working) == 0 &&
               std::memcmp(&scratch, &o.scratch, sizeof scratch) == 0 && number_error == o.number_error;
    }
};

// A reading's value and what it left, from a state no reading leaves.
struct Reading {
    double value;
    Trace left;
    bool operator==(const Reading& o) const { return vltest::bits(value) == vltest::bits(o.value) && left == o.left; }
};

template <class Read>
Reading reading(Read&& read) {
    working_record = DateRecord{1, 2, 3, 4, 5, 6, 7, 8, 1};
    scratch_record = DateRecord{9, 9, 9, 9, 9, 9, 9, 9, 9};
    vl::text::number_error_flag = 1;
    const double value = read();
    return {value, {working_record, scratch_record, vl::text::number_error_flag}};
}

// What a reading that touches nothing leaves.
Trace marks() {
    return reading([] { return 0.0; }).left;
}

Reading general(const std::string& text) {
    return reading([&] { return Date_ReadGeneral(text.c_str(), 0, 0); });
}

Reading by_entry(const std::string& text, uint32_t format) {
    return reading([&] {
        std::vector<char> buffer = vltest::writable(text);
        return KELUTIL_str2date(buffer.data(), 0, format);
    });
}

// The quick road's reading; `took` says whether it took the text.
Reading quick(const std::string& text, bool& took) {
    return reading([&] {
        double value = 0.0;
        took = Date_ReadNumeric(text.c_str(), value);
        return value;
    });
}

// Whether the quick road takes the text and reads it as the general reader;
// a failure when not.
bool same_as_general(const std::string& text) {
    bool took = false;
    const Reading q = quick(text, took), g = general(text);
    if (took && q == g) return true;
    ADD_FAILURE() << text << ": quick " << took << " " << q.value << ", general " << g.value;
    return false;
}

// Texts near the quick road's edges: numbers of zero to five digits, in and
// out of range, separators good and bad, times plain and not, blanks
// around.
// Timestamps of fixed width, "yyyy-mm-dd hh:mm" with or without seconds,
// often with one character changed or the text cut or lengthened.
std::string fixed_width_text(std::mt19937& rng) {
    auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    const char* const separators = "/-.,: a";
    char text[40];
    std::snprintf(text, sizeof text, "%04d%c%02d%c%02d %02d:%02d", pick(10000), separators[pick(3)], pick(14),
                  separators[pick(3)], pick(33), pick(100), pick(100));
    std::string result = text;
    if (pick(3) == 0) result += ":" + std::to_string(pick(10)) + std::to_string(pick(10));
    switch (pick(6)) {
        case 0: result[static_cast<std::size_t>(pick(static_cast<int>(result.size())))] = "0x :/-. "[pick(8)]; break;
        case 1: result.resize(static_cast<std::size_t>(pick(static_cast<int>(result.size())))); break;
        case 2: result += " :0aPM"[pick(6)]; break;
        default: break;
    }
    return result;
}

std::string generated_text(std::mt19937& rng) {
    auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    if (pick(5) == 0) return fixed_width_text(rng);
    // Half the texts keep to well-formed parts, where the quick road goes.
    const bool clean = pick(2) == 0;
    auto number = [&]() -> std::string {
        switch (clean ? 4 + pick(6) : pick(10)) {
            case 0: return std::to_string(pick(100000));
            case 1: return pick(4) == 0 ? "" : "x";
            case 2: return "-" + std::to_string(pick(10));
            case 3: return "+" + std::to_string(pick(10));
            case 4: return std::to_string(1900 + pick(200));
            case 5: return "0" + std::to_string(pick(10));
            default: return std::to_string(pick(35));
        }
    };
    const char* const separators[] = {"/", "-", ".", "/", "-", ".", ",", " ", "//", ":", "a"};
    const char* const times[] = {"",       "",        "",         " 13:05",    " 1:05",   " 23:59:59", " 9:5:7",
                                 " 24:00", " 99:99",  " 1:05 PM", " 12:30 am", " 12:30:", " 123:4",    " x",
                                 " words", "  12:30", " 1:2:3:4", " 12:30 ",   ":"};
    std::string text;
    if (!clean && pick(4) == 0) text += " ";
    text += number();
    const int parts = !clean && pick(4) == 0 ? 1 + pick(4) : 3;
    for (int i = 1; i < parts; ++i) text += separators[pick(clean ? 6 : std::size(separators))] + number();
    text += times[pick(clean ? 7 : std::size(times))];
    if (!clean && pick(4) == 0) text += " ";
    return text;
}

class QuickRoad : public vltest::PinnedToday {};

TEST_F(QuickRoad, ReadsAsTheGeneralReaderDoes) {
    // Pictures the quick road takes, then pictures it leaves alone.
    const struct {
        vltest::Intl intl;
        bool quick;
    } settings[] = {
        {{}, true},
        {{.iDate = "1", .sShortDate = "dd/MM/yyyy"}, true},
        {{.sDate = "-", .sShortDate = "yyyy-MM-dd"}, true},
        {{.iDate = "1", .sDate = ".", .sShortDate = "d.M.yy"}, true},
        {{.sShortDate = "MM/yy"}, false},
        {{.sShortDate = "dd/dd/yy"}, false},
        {{.sShortDate = "YY/MM/dd"}, false},
    };
    std::mt19937 rng(2024);
    for (const auto& [intl, quick_picture] : settings) {
        apply(intl);
        int taken = 0, failures = 0;
        for (int i = 0; i < 20000 && failures < 5; ++i) {
            const std::string text = generated_text(rng);
            SCOPED_TRACE("\"" + text + "\" by " + (intl.sShortDate ? intl.sShortDate : "the default picture"));
            bool took = false;
            const Reading q = quick(text, took), g = general(text);
            // An unknown format reads as format 0 but comes in by the
            // entry's other way.  A text the quick road leaves, it leaves
            // untouched.
            const Reading entry = by_entry(text, 0), other = by_entry(text, 21);
            if (!(entry == g && other == g && (took ? q == g : q.left == marks()))) {
                ADD_FAILURE() << "quick " << took << " " << q.value << ", general " << g.value << ", entry "
                              << entry.value << ", other " << other.value;
                ++failures;
            }
            taken += took;
        }
        // The generated texts must exercise the quick road, or nothing is
        // shown; a picture without day, month and year once each never does.
        if (quick_picture)
            EXPECT_GT(taken, 2000);
        else
            EXPECT_EQ(taken, 0);
    }
}

// The quick road's own calendar arithmetic against the general reader's,
// on the month ends and leap days of every year a record holds.
TEST_F(QuickRoad, CountsDaysAsTheGeneralReaderDoes) {
    apply({});
    int failures = 0;
    for (int year = 0; year <= 9999 && failures < 5; ++year) {
        for (int month = 1; month <= 12; ++month) {
            for (const int day : {0, 1, 28, 29, 30, 31, 32}) {
                const std::string text = std::to_string(month) + "/" + std::to_string(day) + "/" + std::to_string(year);
                failures += !same_as_general(text);
            }
        }
    }
}

// Every time of two-digit parts behind a date, hours past a day and
// minutes and seconds past an hour among them: the quick road adds its
// terms from tables and must give the time reader's sums bit for bit.
TEST_F(QuickRoad, AddsEveryTimeAsTheGeneralReaderDoes) {
    int failures = 0;
    for (const bool year_first : {false, true}) {
        apply(year_first ? vltest::Intl{.sDate = "-", .sShortDate = "yyyy-MM-dd"} : vltest::Intl{});
        for (int hours = 0; hours < 100 && failures < 5; ++hours) {
            for (int minutes = 0; minutes < 100; ++minutes) {
                const int seconds = (hours * 7 + minutes * 13) % 100;
                char text[40];
                if (year_first)
                    std::snprintf(text, sizeof text, "2024-02-29 %02d:%02d:%02d", hours, minutes, seconds);
                else
                    std::snprintf(text, sizeof text, "2/29/24 %d:%02d", hours, minutes);
                failures += !same_as_general(text);
            }
        }
    }
}

}  // namespace
