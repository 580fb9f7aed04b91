// Tokens and separators on arbitrary text.

#include "fuzz_support.h"
#include "text/text.h"
#include "vlcore.h"

using namespace vlfuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    std::string_view in(reinterpret_cast<const char*>(data), size);
    Text text(take_text(in));
    Text separators(take_text(in));
    const char* end = text.data() + text.size();

    // Walking a whole line token by token ends inside the text.
    Text token(std::string_view(text.data(), text.size()));
    for (const char* p = text.data(); *p;) {
        const char* next = KELUTIL_next_token(token.data(), p);
        require(next >= p && next <= end);
        require(std::strlen(token.data()) <= static_cast<std::size_t>(end - p));
        if (next == p) {
            if (*p != ';') break;
            ++next;
        }
        p = next;
    }
    for (const char* p = text.data(); *p;) p = KELUTIL_next_word(token.data(), p);

    const std::string before(text.data(), text.size());
    if (const char* rest = get_next_token_sep(token.data(), text.data(), separators.data()))
        require(rest > text.data() && rest <= end);
    const char* rest = KELUTIL_next_token_sep(token.data(), text.data(), separators.data());
    require(rest >= text.data() && rest <= end);
    require(before == text.data());

    // The internal splitter cuts the text for good.
    const char* tail = vl::text::DateText_Split(text.data(), token.data(), separators.data());
    require(tail >= text.data() && tail <= end);
    return 0;
}
