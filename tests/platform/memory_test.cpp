// Movable memory blocks through the platform layer.

#include "platform/platform.h"
#include "support.h"
#include "vlcore.h"

using namespace vl::platform;

namespace {

TEST(MemoryBlocks, ZeroFilledLockableFreeable) {
    for (std::size_t size : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
        SCOPED_TRACE(size);
        MemHandle h = mem_alloc(kMemMoveableZeroInit, size);
        ASSERT_NE(h, nullptr);
        EXPECT_GE(mem_size(h), size);
        auto* p = static_cast<unsigned char*>(mem_lock(h));
        ASSERT_NE(p, nullptr);
        for (std::size_t i = 0; i < size; ++i) ASSERT_EQ(p[i], 0) << "byte " << i;
        p[size - 1] = 0xAB;
        EXPECT_FALSE(mem_unlock(h)) << "last unlock";
        auto* again = static_cast<unsigned char*>(mem_lock(h));
        EXPECT_EQ(again[size - 1], 0xAB);
        EXPECT_TRUE(mem_lock(h) != nullptr);
        EXPECT_TRUE(mem_unlock(h)) << "still locked once";
        EXPECT_FALSE(mem_unlock(h));
        EXPECT_EQ(mem_free(h), nullptr);
    }
}

TEST(MemoryBlocks, NullHandleIsRefused) {
    EXPECT_EQ(mem_lock(nullptr), nullptr);
    EXPECT_EQ(mem_size(nullptr), 0u);
    EXPECT_FALSE(mem_unlock(nullptr));
}

#ifndef _WIN32
TEST(MemoryBlocks, ForeignAndFreedHandlesAreRefusedNatively) {
    int local = 0;
    EXPECT_EQ(mem_lock(&local), nullptr);
    EXPECT_EQ(mem_free(&local), &local);
    MemHandle h = mem_alloc(kMemMoveableZeroInit, 16);
    EXPECT_EQ(mem_free(h), nullptr);
    EXPECT_EQ(mem_lock(h), nullptr);
    EXPECT_EQ(mem_free(h), h) << "double free is refused";
}

TEST(MemoryBlocks, PublicHelpersMatchTheLayer) {
    VL_HGLOBAL h = vl_global_alloc(VL_GMEM_MOVEABLE | VL_GMEM_ZEROINIT, 10);
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(vl_global_size(h), 10u);
    EXPECT_NE(vl_global_lock(h), nullptr);
    EXPECT_EQ(vl_global_unlock(h), 0);
    EXPECT_EQ(vl_global_free(h), nullptr);
}
#endif

}  // namespace
