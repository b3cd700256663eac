// The steps from the front end's module to SPIR-V. docs/compiler.md has their table.
#pragma once

#include "TarnwickMSL/Target.h"
#include "TarnwickMSL/Translation/Signature.h"
#include "TarnwickMSL/Translation/StepTimes.h"

#include <string>
#include <string_view>
#include <vector>

namespace llvm {
class Module;
}

namespace tarnwick::msl {

class KeptFunctions;

// Runs all steps. Changes the module. Throws TranslationError for a program that cannot be
// translated; an error in an entry point has at least the place of the entry point.
//
// With the environment variable TARNWICK_MSL_DUMP=FOLDER it writes the text after each step into
// FOLDER/NAME.NN-STEP.ll; NAME is "program" or the entry point, NN counts the steps from 01. With
// TARNWICK_CHECK_STEPS=1 it checks the code from the step `inline` on, after each step that changed
// it: LLVM's verifier and the rules that hold from there on. TARNWICK_CHECK_STEPS=all (the default
// in debug builds; 0 is off) checks the steps before as well, and the last step's words by the
// SPIR-V validator. An error that they find is a CompilerFault that names the step.
//
// Adds the time of each step to `times`, if it is not null. If `kept` is not null, the module may
// lack functions and entry points that are there, and `kept` has those of this program afterwards.
std::vector<EntryPoint> runSteps(llvm::Module& program, const std::vector<EntrySignature>& entries,
                                 const std::vector<ConstantSignature>& constants = {},
                                 const Target& target = {}, StepTimes* times = nullptr,
                                 KeptFunctions* kept = nullptr);

// Whether the variables above ask for the details of a CompilerFault.
bool showsFaults();

// The front end's result as text, from which runStep starts.
std::string programText(const llvm::Module& program, const std::vector<EntrySignature>& entries,
                        const std::vector<ConstantSignature>& constants);

// Runs one step on a text (Passes/Forms/Text.h says its form) and returns the text after it; after
// the step `spirv` that is the listing of the SPIR-V. Checks the result. Throws
// std::invalid_argument if there is no step of this name or the text cannot be read, and
// TranslationError as runSteps does.
std::string runStep(std::string_view name, std::string_view text, const Target& target = {});

// The table of the steps in Markdown, as docs/compiler.md has it.
std::string stepTable();

} // namespace tarnwick::msl
