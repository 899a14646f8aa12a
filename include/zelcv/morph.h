/* zelcv, morphology: dilation and erosion under masks, what is built of them, gray masks, reconstruction.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_MORPH_H
#define ZELCV_MORPH_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
