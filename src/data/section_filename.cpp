// KELUTIL_GetFileSection_Filename: a base path and names composed on it.

#include <cstring>

#include "data/data_state.h"
#include "vlcore.h"

namespace {

constexpr uint16_t kStoreBase = VL_SECTION_NAME_SET_BASE;
constexpr uint16_t kCompose = VL_SECTION_NAME_COMPOSE;
constexpr uint16_t kBase = VL_SECTION_NAME_BASE;
constexpr uint16_t kComposed = VL_SECTION_NAME_LAST;

}  // namespace

extern "C" const char* VLAPI KELUTIL_GetFileSection_Filename(const char* text, uint32_t operation) noexcept {
    using vl::data::base_path_store;
    using vl::data::kBasePathRoom;
    auto& base = base_path_store.base;
    auto& composed = base_path_store.composed;
    switch (static_cast<uint16_t>(operation)) {
        case kStoreBase: {
            // A base that would not fit is refused; the old one stays.
            if (!text) return nullptr;
            const std::size_t n = std::strlen(text);
            if (n >= kBasePathRoom) return nullptr;
            std::memcpy(base.data(), text, n + 1);
            return base.data();
        }
        case kCompose: {
            if (!text) return nullptr;
            const std::size_t b = std::strlen(base.data()), n = std::strlen(text);
            if (b + n >= kBasePathRoom) return nullptr;
            std::memcpy(composed.data(), base.data(), b);
            std::memcpy(composed.data() + b, text, n + 1);
            return composed.data();
        }
        case kBase: return base.data();
        case kComposed: return composed.data();
        default: return nullptr;
    }
}
