// The string table: the same texts natively and from the DLL's resources.

#include <string>

#include "platform/platform.h"
#include "support.h"

using namespace vl::platform;

namespace {

TEST(StringTable, KnownIdsAndTruncation) {
    const struct {
        uint32_t id;
        std::size_t size;
        int32_t length;
        const char* text;
    } cases[] = {
        {201, 64, 11, "Jan January"},
        {212, 64, 12, "Dec December"},
        {307, 64, 8, "Saturday"},
        {301, 7, 6, "Sunday"},
        {301, 6, 5, "Sunda"},
        {301, 2, 1, "S"},
        {213, 64, 0, ""},
        {0, 64, 0, ""},
        {300, 64, 0, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("id " + std::to_string(c.id) + " size " + std::to_string(c.size));
        vltest::Poisoned buf(c.size + 4);
        EXPECT_EQ(load_string(c.id, std::span<char>(buf.data(), c.size)), c.length);
        EXPECT_EQ(buf.text(), c.text);
        EXPECT_TRUE(buf.clean_from(c.size)) << "nothing written past the buffer";
    }
}

}  // namespace
