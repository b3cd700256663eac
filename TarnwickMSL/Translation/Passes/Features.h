// The types that a module has and its target may lack.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Target.h"

namespace tarnwick::msl {

// Throws TranslationError if the module declares the capability of a type that the target lacks.
void requireFeatures(const EntryPoint& made, const Target& target);

} // namespace tarnwick::msl
