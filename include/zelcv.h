/* zelcv: computer-vision primitives on images in the caller's memory.
 *
 * This header takes in all functions. Each subsystem's header below zelcv/ may be included by itself just as well.
 *
 * An image is a pointer to the first pixel of a region and a step: the number of bytes from the start of one row to the
 * start of the next. The region's size is given in pixels. Functions own nothing, keep nothing and print nothing: what a
 * function needs as scratch memory the caller provides, sized by the function's GetBufferSize or GetSize twin.
 *
 * A name says what it works on: zeliFilterSobelHorizBorder_8u16s_C1R takes 8u pixels and gives 16s ones; C1, C3, C4 is the
 * number of interleaved channels; R stands for a region of interest, I for in place, M for masked.
 *
 * Every function returns a ZelStatus: 0 for success, a negative number for an error, with nothing written, a positive number
 * for a warning, with the result delivered. Arguments are checked in one order, and the first fault is returned: pointers,
 * width, height, steps against the bytes of a row, steps against the element size, then what is particular to the function.
 *
 * Results are the same bits on every size, alignment and number of threads, in every build of the library. All functions may
 * be called from several threads at once, as long as destinations, buffers and states are distinct.
 */
#ifndef ZELCV_H
#define ZELCV_H

#include "zelcv/types.h" /* records, enumerations, states, the version */

#include "zelcv/arith.h"    /* absolute difference, accumulators */
#include "zelcv/features.h" /* Canny edges, corner measures, colour gradients, angles */
#include "zelcv/filter.h"   /* row and column pipelines, derivatives */
#include "zelcv/integral.h" /* integral images, deviations in rectangles, Haar classifiers */
#include "zelcv/morph.h"    /* dilation, erosion and their like, reconstruction */
#include "zelcv/rank.h"     /* minimum and maximum of rectangles */
#include "zelcv/smooth.h"   /* box averages, Laplacians, Gauss filters */
#include "zelcv/stats.h"    /* means, norms, minimum and maximum */

#endif
