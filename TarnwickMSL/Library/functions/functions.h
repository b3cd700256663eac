// The functions of the standard library (Metal Shading Language 3.1, 6). Macros write each
// overload, rather than templates, so that calls resolve as the language defines.
//
// `metal::` is `metal::fast::`. A function that is the same in precise math has one definition and
// a using-declaration. Precise bodies are in `_core`, in plain operations of float without
// fast-math flags. docs/library.md lists the lowering and the error of each function.
#pragma once

#include "overloads.h"
#include "constants.h"
#include "limits.h"
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
#include "pixels.h"
#include "namespaces.h"

#include "overloads_end.h"
