// The example host's interpreter on lines that once threw or ran off the
// stack, and on lines of any length: each row is a script line and the
// transcript it must leave behind its echo.

#include <sstream>
#include <string>
#include <vector>

#include "interpreter.h"
#include "support.h"

namespace {

const std::string kFailed = "#Command Error!\n";
const std::string kTooDeep = "error: too deeply nested\n" + kFailed;
const std::string kTooManySteps = "error: progress takes 0 to 1000 steps\n" + kFailed;

std::string times(std::string_view piece, int count) {
    std::string out;
    for (int i = 0; i < count; ++i) out += piece;
    return out;
}

struct Row {
    const char* name;
    std::string line;
    std::string output;
};

TEST(HostTranscript, EveryLineRunsOrFailsWithAMessage) {
    const std::string long_name = times("v", 100000);
    const std::string long_text = times("text ", 20000);
    const std::vector<Row> rows = {
        {"a date format beyond 32 bits", "date 99999999999999999999999 1",
         "error: no date format 99999999999999999999999\n" + kFailed},
        {"a format that only asks prints nothing", "date 8192 1", "\n"},
        {"100,000 nested brackets", "x = " + times("(", 100000) + "1" + times(")", 100000), kTooDeep},
        {"100,000 signs", "type " + times("-", 100000) + "1", kTooDeep},
        {"100,000 powers", "type 1" + times("^1", 100000), kTooDeep},
        {"100,000 nested calls", "type " + times("SIN(", 100000) + "0" + times(")", 100000), kTooDeep},
        {"brackets 100 deep", "type " + times("(", 100) + "7" + times(")", 100), "7\n"},
        {"a name of 100,000 letters", long_name + " = 3; type " + long_name + " * 2", "6\n"},
        {"a quoted text of 100,000 characters", "type '" + long_text + "'", long_text + "\n"},
        {"a class that wraps to 7 in 32 bits", "names 4294967303 PLOTXY", "error: names CLASS NAME\n" + kFailed},
        {"more progress steps than a front end shows", "progress 1e12", kTooManySteps},
        {"negative progress", "progress -1", kTooManySteps},
    };
    host::Library vl;
    vl.bind_linked();
    ASSERT_NE(vl.main(nullptr, 6000, reinterpret_cast<intptr_t>(""), 0), 0u);
    for (const Row& row : rows) {
        host::Interpreter interpreter(vl, nullptr);
        std::istringstream in(row.line + "\n");
        std::ostringstream out;
        host::transcript(interpreter, in, out);
        const std::string echo = "> " + row.line + "\n";
        const std::string text = out.str();
        ASSERT_TRUE(text.starts_with(echo)) << row.name << ": the line is not echoed first";
        EXPECT_EQ(text.substr(echo.size()), row.output) << row.name;
    }
}

}  // namespace
