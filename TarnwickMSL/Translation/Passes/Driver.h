// Runs one step and checks its result.
#pragma once

#include "TarnwickMSL/Translation/Passes/Steps.h"

namespace tarnwick::msl {

// Runs the step, then writes the dump and checks the form if the environment asks for it
// (Passes.h). A CompilerFault names the step.
void perform(const Step& step, Work& work);

// Throws a CompilerFault that names the step if the code does not pass LLVM's verifier, breaks a
// rule of a step up to this one, or is SPIR-V that the validator refuses.
void requireForm(const Step& step, const Work& work);

// Whether the environment asks for dumps or checks.
bool looksInside();

// Writes the dump of the front end's module.
void dumpStart(const Work& work);

} // namespace tarnwick::msl
