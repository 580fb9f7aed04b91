// The bracket scanner's two tests, step by step.

#include <string>

#include "support.h"
#include "text/bracket.h"

using namespace vl::text;

namespace {

// Feeds `text` through the tests as the token scanner does (close test
// only while a bracket is open) and records the depth and kind after each
// character.
std::string trace(const char* text) {
    bracket_reset();
    bool open = false;
    std::string out;
    for (const char* p = text; *p; ++p) {
        if (open && bracket_close_test(*p))
            open = false;
        else if (bracket_open_test(*p))
            open = true;
        out += std::to_string(bracket_scanner.depth);
        out += bracket_scanner.kind == kNoBracket ? '-' : static_cast<char>('0' + bracket_scanner.kind);
    }
    return out;
}

TEST(BracketScanner, Traces) {
    // Per character: the depth, then the kind (0-3) or '-' for none.
    const struct {
        const char* text;
        const char* depth_kind;
    } rows[] = {
        {"(a)", "10100-"},  {"((a))", "102020100-"}, {"([)", "10100-"}, {"\"\"", "120-"},
        {"{\"}", "11110-"}, {"[[]]", "1323130-"},    {"x(", "0-10"},    {")", "0-"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.text);
        EXPECT_EQ(trace(r.text), r.depth_kind);
    }
}

}  // namespace
