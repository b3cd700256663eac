// The place in the program of an instruction. Known only if the program was parsed for it
// (Places::kept).
#pragma once

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/DebugInfoMetadata.h>
#include <llvm/IR/Instruction.h>

#include <string>

namespace tarnwick::msl {

// "file:line:column" of the user's line, also for instructions of the standard library that it
// calls; empty if not known.
inline std::string programPlace(const llvm::Instruction& instruction) {
    const llvm::DILocation* at = instruction.getDebugLoc();
    while (at && at->getInlinedAt() && at->getFilename().starts_with("/metal/"))
        at = at->getInlinedAt();
    if (!at || at->getLine() == 0)
        return "";
    return at->getFilename().str() + ":" + std::to_string(at->getLine()) + ":" +
           std::to_string(at->getColumn());
}

// Runs an action about an instruction. An error of the action gets the instruction's place.
template <class Action> decltype(auto) at(const llvm::Instruction& instruction, Action action) {
    std::string place = programPlace(instruction); // the action may erase it
    try {
        return action();
    } catch (TranslationError& error) {
        if (error.place.empty())
            error.place = place;
        throw;
    }
}

} // namespace tarnwick::msl
