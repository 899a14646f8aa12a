// The one place that chooses: `isa` is the namespace whose operations the build uses.
#pragma once

#include "vector/portable.h"

#if defined(ZELCV_AVX2)
#  include "vector/avx2.h"
#elif defined(ZELCV_SSE2)
#  include "vector/sse2.h"
#endif

namespace zelcv {

#if defined(ZELCV_AVX2)
namespace isa = avx2;
#elif defined(ZELCV_SSE2)
namespace isa = sse2;
#else
namespace isa = portable;
#endif

} // namespace zelcv
