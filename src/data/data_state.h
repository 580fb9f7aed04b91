// The process-wide state of the text data subsystem, in one place.  One
// copy per process, zero at load; all calls come from one thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "vlcore.h"

namespace vl::data {

// One table pointer per name class, 0 to 102; null until KELUTIL_Names
// operation 1 fills it.
constexpr std::size_t kNameClassCount = VL_NAMES_CLASSES;
extern std::array<const VL_NAME_ROW*, kNameClassCount> name_pointer_table;

// The two texts behind KELUTIL_GetFileSection_Filename.
constexpr std::size_t kBasePathRoom = 260;
struct BasePathStore {
    std::array<char, kBasePathRoom> base{};
    std::array<char, kBasePathRoom> composed{};
};
extern BasePathStore base_path_store;

}  // namespace vl::data
