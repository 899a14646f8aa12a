// The vector layer, all of it. Instruction sets are known in this folder and nowhere else.
//
//   vec.h          the vector itself: width, memory, groups of vectors
//   arithmetic.h   saturation, products of pairs, extremes, absolute values, roots
//   convert.h      widening and narrowing
//   masks.h        lanes as masks, masks as bits
//   shuffle.h      lanes in other places
//   shift.h        lanes moved along the vector
//   scan.h         sums over lanes
//   portable.h     what the operations mean that compilers' vectors lack; sse2.h and avx2.h have the same in few instructions
#pragma once

#include "vector/arithmetic.h"
#include "vector/convert.h"
#include "vector/masks.h"
#include "vector/scan.h"
#include "vector/shift.h"
#include "vector/shuffle.h"
#include "vector/vec.h"
