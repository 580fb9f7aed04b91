// The status window's lines for the host and its bar arithmetic.

#include <string>

#include "output/status.h"
#include "support.h"

namespace {

using namespace vl::output;

TEST(StatusText, HostLineIsCutToItsBuffer) {
    const struct {
        std::size_t title_length;
        std::size_t line_length;
    } rows[] = {{0, 6}, {1, 7}, {112, 118}, {113, 119}, {114, 119}, {500, 119}};
    for (const auto& row : rows) {
        SCOPED_TRACE("title of " + std::to_string(row.title_length));
        const std::string line = host_status_line(std::string(row.title_length, 'x'));
        EXPECT_EQ(line.size(), row.line_length);
        EXPECT_EQ(line.substr(0, 6), "ty -q ");
    }
}

TEST(StatusText, TitleOfTheRoadWithoutDialog) {
    EXPECT_EQ(no_dialog_title("Importing"), "Importing... Hit ESC to abort!");
    EXPECT_EQ(no_dialog_title(nullptr), "... Hit ESC to abort!");
    EXPECT_EQ(host_status_line(no_dialog_title("Importing")), "ty -q Importing... Hit ESC to abort!");
}

TEST(StatusText, BarRightEdge) {
    const struct {
        int32_t left, right;
        uint16_t percent;
        int32_t edge;
    } rows[] = {
        {1, 201, 0, 1},     {1, 201, 50, 101},    {1, 201, 100, 201},
        {1, 201, 150, 201}, {1, 201, 65535, 201}, {1, 11, 33, 4},  // 3.3 plus 1, truncated
        {1, 11, 99, 10},                                           // 9.9 plus 1, truncated
        {5, 5, 50, 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.left) + ".." + std::to_string(row.right) + " at " +
                     std::to_string(row.percent));
        EXPECT_EQ(bar_right_edge(row.left, row.right, row.percent), row.edge);
    }
}

}  // namespace
