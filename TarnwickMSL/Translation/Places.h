// Where in the program an instruction comes from. Code knows it only where it was parsed for that
// (Places::kept).
#pragma once

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/DebugInfoMetadata.h>
#include <llvm/IR/Instruction.h>

#include <string>

namespace tarnwick::msl {

// "file:line:column" of the user's line, also for what the standard library made of it; empty where
// it is not known.
inline std::string programPlace(const llvm::Instruction& instruction) {
    const llvm::DILocation* at = instruction.getDebugLoc();
    while (at && at->getInlinedAt() && at->getFilename().starts_with("/metal/"))
        at = at->getInlinedAt();
    if (!at || at->getLine() == 0)
        return "";
    return at->getFilename().str() + ":" + std::to_string(at->getLine()) + ":" +
           std::to_string(at->getColumn());
}

// Does something about an instruction; what cannot be done is told at its place.
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
