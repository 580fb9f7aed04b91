// The string table: the same texts natively and from the DLL's resources.
// The cases are in strings.tsv.

#include <string>

#include "data/data_support.h"
#include "platform/platform.h"
#include "support.h"

namespace {

TEST(StringTable, KnownIdsAndTruncation) {
    vltest::each_case("platform/strings.tsv", "string", [](const vltest::Case& c) {
        SCOPED_TRACE("size " + *c.text(0));
        const auto size = static_cast<std::size_t>(c.number(0));
        vltest::Poisoned buf(size + 4);
        EXPECT_EQ(vl::platform::load_string(std::stoul(c.what), std::span<char>(buf.data(), size)), c.number(1));
        EXPECT_EQ(buf.text(), *c.text(2));
        EXPECT_TRUE(buf.clean_from(size)) << "nothing written past the buffer";
    });
}

}  // namespace
