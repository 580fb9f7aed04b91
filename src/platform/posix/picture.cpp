// The date and time pictures natively, as the Windows picture operations
// print them for the user's default locale: English names from the string
// table, a 12-hour clock with AM and PM, the era AD.

#include <cstring>
#include <string_view>

#include "platform/platform.h"

namespace vl::platform {
namespace {

constexpr uint32_t kFirstMonthString = 201;
constexpr uint32_t kFirstWeekdayString = 301;
constexpr std::size_t kAbbreviation = 3;
// The system time record counts from the start of 1601.
constexpr uint16_t kFirstSystemYear = 1601;
constexpr uint16_t kLastSystemYear = 30827;

// Collects the printed text; it only counts once it no longer fits.
class Picture {
  public:
    explicit Picture(std::span<char> out) noexcept : out_(out) {}
    void text(std::string_view s) noexcept {
        for (char c : s) ch(c);
    }
    void ch(char c) noexcept {
        if (n_ < out_.size()) out_[n_] = c;
        ++n_;
    }
    void number(unsigned v, int width) noexcept {
        char d[8];
        int k = 0;
        do {
            d[k++] = static_cast<char>('0' + v % 10);
            v /= 10;
        } while (v && k < 8);
        for (int i = k; i < width; ++i) ch('0');
        while (k) ch(d[--k]);
    }
    // The count with the terminator, or 0 when the text did not fit.
    int32_t finish() noexcept {
        if (out_.empty()) return static_cast<int32_t>(n_ + 1);
        if (n_ + 1 > out_.size()) return 0;
        out_[n_] = '\0';
        return static_cast<int32_t>(n_ + 1);
    }

  private:
    std::span<char> out_;
    std::size_t n_ = 0;
};

// The word of a string-table row: 0 the first word, 1 what follows the
// first blank ("Jan January").
std::string_view string_word(uint32_t id, int word, char (&room)[32]) noexcept {
    const auto n = static_cast<std::size_t>(load_string(id, room));
    const std::string_view all(room, n);
    const std::size_t blank = all.find(' ');
    if (blank == std::string_view::npos) return all;
    return word == 0 ? all.substr(0, blank) : all.substr(blank + 1);
}

bool leap(unsigned y) noexcept { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); }

unsigned days_in_month(unsigned y, unsigned m) noexcept {
    constexpr unsigned kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && leap(y) ? 29 : kDays[m - 1];
}

// The weekday is worked out from the date; the record's own is not used.
unsigned weekday(unsigned y, unsigned m, unsigned d) noexcept {
    constexpr unsigned kOffset[12] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
    if (m < 3) --y;
    return (y + y / 4 - y / 100 + y / 400 + kOffset[m - 1] + d) % 7;
}

// One run of a picture letter in the date.
void date_run(Picture& p, const SystemTime& t, char letter, std::size_t run) noexcept {
    char room[32];
    switch (letter) {
        case 'd':
            if (run <= 2) {
                p.number(t.day, static_cast<int>(run));
            } else {
                const auto name = string_word(kFirstWeekdayString + weekday(t.year, t.month, t.day), 0, room);
                p.text(run == 3 ? name.substr(0, kAbbreviation) : name);
            }
            break;
        case 'M':
            if (run <= 2)
                p.number(t.month, static_cast<int>(run));
            else
                p.text(string_word(kFirstMonthString + t.month - 1u, run == 3 ? 0 : 1, room));
            break;
        case 'y':
            if (run <= 2)
                p.number(t.year % 100u, 2);
            else
                p.number(t.year, 4);
            break;
        default:  // 'g': the era, once for every letter of the run
            for (std::size_t i = 0; i < run; ++i) p.text("AD");
            break;
    }
}

// One run of a picture letter in the time.
void time_run(Picture& p, const SystemTime& t, char letter, std::size_t run) noexcept {
    const int width = run >= 2 ? 2 : 1;
    switch (letter) {
        case 'h': p.number(t.hour % 12 == 0 ? 12u : t.hour % 12u, width); break;
        case 'H': p.number(t.hour, width); break;
        case 'm': p.number(t.minute, width); break;
        case 's': p.number(t.second, width); break;
        default:  // 't'
            p.text(std::string_view(t.hour < 12 ? "AM" : "PM", run >= 2 ? 2 : 1));
            break;
    }
}

// The walk both operations share: quoted text, runs of picture letters and
// everything else copied as it stands.
template <typename Run>
int32_t walk(const char* picture, std::span<char> out, std::string_view letters, Run run) noexcept {
    Picture p(out);
    bool quoted = false;
    for (const char* c = picture; *c;) {
        // 1. Apostrophes switch quoting; two of them inside quotes are one.
        if (*c == '\'') {
            if (quoted && c[1] == '\'') {
                p.ch('\'');
                c += 2;
                continue;
            }
            quoted = !quoted;
            ++c;
            continue;
        }
        // 2. A run of one picture letter prints one part.
        if (!quoted && letters.find(*c) != std::string_view::npos) {
            std::size_t n = 1;
            while (c[n] == *c) ++n;
            run(p, *c, n);
            c += n;
            continue;
        }
        // 3. Everything else as it stands.
        p.ch(*c++);
    }
    return p.finish();
}

}  // namespace

int32_t date_picture(const SystemTime& t, const char* picture, std::span<char> out) noexcept {
    if (!picture) return 0;
    if (t.year < kFirstSystemYear || t.year > kLastSystemYear || t.month < 1 || t.month > 12 || t.day < 1 ||
        t.day > days_in_month(t.year, t.month))
        return 0;
    return walk(picture, out, "dMyg", [&t](Picture& p, char c, std::size_t n) { date_run(p, t, c, n); });
}

int32_t time_picture(const SystemTime& t, const char* picture, std::span<char> out) noexcept {
    if (!picture) return 0;
    if (t.hour > 23 || t.minute > 59 || t.second > 59 || t.milliseconds > 999) return 0;
    return walk(picture, out, "hHmst", [&t](Picture& p, char c, std::size_t n) { time_run(p, t, c, n); });
}

}  // namespace vl::platform
