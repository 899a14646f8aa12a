// The version record. The build names the instruction set that it compiles for in ZELCV_TARGET.
#include "zelcv.h"

namespace {
constexpr ZelLibVersion kVersion = {
    7, 0, 205, 1040, ZELCV_TARGET, "zelcv" ZELCV_TARGET "-7.0.dll", "7.0 build 205.58", "Apr 18 2011",
};
}

const ZelLibVersion* zelcvGetLibVersion(void)
{
    return &kVersion;
}
