// The custom slots: setting and asking their pictures, dividing a picture
// into the date and time parts the picture operations print, and printing
// a date by a slot with the fraction of a second put in afterwards.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "datetime/custom.h"
#include "datetime/state.h"
#include "datetime/text_out.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

// String ids of the default pictures of slots 0 and 1.
constexpr uint32_t kDefaultPictureString = 21100;
// The fraction marker: "'.'" and one or more "#".
constexpr std::string_view kFractionDot = "'.'";

enum Operation : uint16_t { kSet = VL_CUSTOM_SET, kGet = VL_CUSTOM_GET, kDefaults = VL_CUSTOM_DEFAULTS, kFirstFormat = VL_CUSTOM_ASK_FIRST };

// Time formats that print 1, 2, 3 or 4 decimals of the second.
constexpr uint16_t kFractionTimeFormats[kMostFractionDigits] = {11, 7, 10, 12};

void copy_cut(char* to, std::string_view from, std::size_t room = kPictureRoom) noexcept {
    const std::size_t n = std::min(from.size(), room - 1);
    if (n) std::memcpy(to, from.data(), n);
    to[n] = '\0';
}

// Stores a picture in a slot when it divides and stays within the slot's
// limits; otherwise the slot keeps what it had.
void set_slot(CustomSlot& slot, const char* picture) noexcept {
    // 1. A picture longer than a slot holds is refused, not cut.
    if (strnlen(picture, kPictureRoom) >= kPictureRoom) return;
    CustomSlot next{};
    std::strcpy(next.picture, picture);
    if (!Custom_Split(next.picture, next.date_part, next.time_part, next.digits, next.order)) return;
    // 2. The time formats print at most four decimals of the second.
    if (next.digits > kMostFractionDigits) return;
    slot = next;
}

void set_default(int slot) noexcept {
    char picture[kPictureRoom];
    platform::load_string(kDefaultPictureString + static_cast<uint32_t>(slot), picture);
    set_slot(custom_slots[slot], picture);
}

}  // namespace

bool Custom_Split(const char* picture, char* date_part, char* time_part, int32_t& digits, int32_t& order) noexcept {
    // 1. The first date and the first time letter outside quotes.
    const std::string_view all(picture);
    std::size_t first_date = std::string_view::npos, first_time = std::string_view::npos;
    bool quoted = false;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const char c = all[i];
        if (c == '\'') {
            quoted = !quoted;
            continue;
        }
        if (quoted) continue;
        if (first_date == std::string_view::npos && std::string_view("dMyg").find(c) != std::string_view::npos)
            first_date = i;
        if (first_time == std::string_view::npos && std::string_view("hHmst").find(c) != std::string_view::npos)
            first_time = i;
    }
    const bool has_date = first_date != std::string_view::npos, has_time = first_time != std::string_view::npos;
    // 2. Neither: nothing to print.
    if (!has_date && !has_time) return false;
    // 3.-6. The first part runs up to the other part's first letter.
    digits = 0;
    if (!has_time) {
        copy_cut(date_part, all);
        copy_cut(time_part, {});
        order = 0;
    } else if (!has_date) {
        copy_cut(date_part, {});
        copy_cut(time_part, all);
        order = 1;
    } else if (first_date < first_time) {
        copy_cut(date_part, all.substr(0, first_time));
        copy_cut(time_part, all.substr(first_time));
        order = 0;
    } else {
        copy_cut(time_part, all.substr(0, first_date));
        copy_cut(date_part, all.substr(first_date));
        order = 1;
    }
    // 7. The fraction leaves the time part.
    if (has_time) digits = Custom_StripFraction(time_part);
    return true;
}

int32_t Custom_StripFraction(char* time_part) noexcept {
    const std::string_view all(time_part);
    for (std::size_t at = all.find(kFractionDot); at != std::string_view::npos; at = all.find(kFractionDot, at + 1)) {
        std::size_t end = at + kFractionDot.size();
        while (end < all.size() && all[end] == '#') ++end;
        const auto count = static_cast<int32_t>(end - at - kFractionDot.size());
        if (count == 0) continue;
        std::memmove(time_part + at, time_part + end, all.size() - end + 1);
        return count;
    }
    return 0;
}

bool Custom_InsertFraction(char* text, const char* digits, uint16_t format) noexcept {
    // 1. Where the seconds end, found on a copy with a scratch record.
    char copy[kPictureRoom];
    copy_cut(copy, text);
    DateRecord scratch{};
    if (Custom_Parse(copy, sizeof copy, format, scratch, kCustomFindSeconds) != kCustomRead) return false;
    // 2.-3. Head, the point and the digits, tail.
    const std::size_t head = std::strlen(copy);
    char joined[3 * kPictureRoom];
    std::string_view all(text);
    std::size_t n = 0;
    for (std::string_view piece : {all.substr(0, head), std::string_view("."), std::string_view(digits),
                                   all.substr(std::min(head, all.size()))}) {
        std::memcpy(joined + n, piece.data(), std::min(piece.size(), sizeof joined - 1 - n));
        n += std::min(piece.size(), sizeof joined - 1 - n);
    }
    copy_cut(text, std::string_view(joined, n));
    return true;
}

}  // namespace vl::datetime

using namespace vl;
using namespace vl::datetime;

extern "C" {

uint16_t VLAPI KELUTIL_custom_date_format(int32_t slot, uint32_t operation, char* text) noexcept {
    const auto op = static_cast<uint16_t>(operation);
    if (op == kDefaults) {
        set_default(0);
        set_default(1);
        return 0;
    }
    if (op == kFirstFormat) return kFirstCustomFormat;
    if (slot < 0 || slot > 1) return 0;
    if (op == kSet) {
        if (text && text[0])
            set_slot(custom_slots[slot], text);
        else
            set_default(slot);
    } else if (op == kGet && text) {
        copy_cut(text, custom_slots[slot].picture);
    }
    return 0;
}

int32_t VLAPI KELUTIL_date2str_custom(double value, int32_t slot, char* out) noexcept {
    if (!out || slot < 0 || slot > 1) return 1;
    const CustomSlot& s = custom_slots[slot];
    const auto format = static_cast<uint16_t>(kFirstCustomFormat + slot);
    // 1. The fraction as the time formats round it.
    char fraction[kMostFractionDigits + 1] = "";
    int32_t fraction_number = 0;
    if (s.digits >= 1 && s.digits <= kMostFractionDigits) {
        char time[64];
        KELUTIL_time2str(value, kFractionTimeFormats[s.digits - 1], time);
        const char* dot = std::strchr(time, '.');
        copy_cut(fraction, dot ? std::string_view(dot + 1) : std::string_view{},
                 static_cast<std::size_t>(s.digits) + 1);
        KELUTIL_cvtstr2int(fraction, &fraction_number);
    }
    // 2. The record: the seconds cut when the fraction carries the rest.
    DateRecord r{};
    if (!DateTime_FromValue(value, r, s.digits && fraction_number != 0)) return 1;
    // 3.-4. Both parts by the picture operations.
    const platform::SystemTime t{static_cast<uint16_t>(r.tm_year), static_cast<uint16_t>(r.tm_mon + 1),
                                 static_cast<uint16_t>(r.tm_wday), static_cast<uint16_t>(r.tm_mday),
                                 static_cast<uint16_t>(r.tm_hour), static_cast<uint16_t>(r.tm_min),
                                 static_cast<uint16_t>(r.tm_sec),  0};
    char date[kPictureRoom], time[kPictureRoom];
    if (platform::date_picture(t, s.date_part, date) == 0) return 1;
    if (platform::time_picture(t, s.time_part, time) == 0) return 1;
    // 5. In the slot's order, cut to 60 characters.
    char joined[2 * kPictureRoom];
    TextSink(joined).text(s.order == 0 ? date : time);
    TextSink::behind(joined).text(s.order == 0 ? time : date);
    char text[kPictureRoom];
    copy_cut(text, joined);
    // 6. The fraction behind the seconds.  The caller's buffer sees only a
    //    finished text.
    if (s.digits > 0 && !Custom_InsertFraction(text, fraction, format)) return 1;
    std::strcpy(out, text);
    return 0;
}

}  // extern "C"
