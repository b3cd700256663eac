// The functions of the standard library (Metal Shading Language 3.1, 6), each overload spelled out
// by macros rather than deduced, so that a call resolves as the language's users expect.
//
// `metal::` is `metal::fast::`. A function that both have in common is one function with a second
// name; what is better than fast math grants lives in `_core`, in plain operations of float that
// carry no fast-math flag. docs/library.md lists how each is lowered and how exact it is.
#pragma once

#include "overloads.h"
#include "constants.h"
#include "core_scaling.h"
#include "core_exponential.h"
#include "core_trigonometric.h"
#include "core_inverse.h"
#include "core_hyperbolic.h"
#include "core_parts.h"
#include "integer.h"
#include "common.h"
#include "fast_core.h"
#include "halves.h"
#include "math.h"
#include "precise.h"
#include "mixed.h"
#include "relational.h"
#include "geometric.h"
#include "matrix.h"
#include "graphics.h"
#include "pack.h"
#include "namespaces.h"

#include "overloads_end.h"
