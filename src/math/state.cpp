// The process-wide state of the mathematics subsystem, in one place.

#include "math/math.h"

namespace vl::math {

int32_t math_error_flag = 0;

// Before the first find the end row's name stands in, with row 0.
LastFind last_find = {"0", 0};

UniformState uniform_state = {};
NormalState normal_state = {};
PoissonState poisson_state = {-1.0, 0.0, 0.0, 0.0};

}  // namespace vl::math
