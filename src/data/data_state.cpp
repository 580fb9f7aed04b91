// Storage of the subsystem's process-wide state.

#include "data/data_state.h"

namespace vl::data {

std::array<const VL_NAME_ROW*, kNameClassCount> name_pointer_table{};
BasePathStore base_path_store{};

}  // namespace vl::data
