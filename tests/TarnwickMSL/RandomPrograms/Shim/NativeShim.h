// What a random program uses of Metal's language, for the native compiler.
#pragma once

#include "tests/TarnwickMSL/RandomPrograms/Shim/NativeRuns.h"

// Metal's address spaces; no standard header may come after this one.
#define thread
#define device
#define threadgroup
#define constant const
