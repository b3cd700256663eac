// tarnwick --complete INDEX WORD...: the words that fit at one place of a command line. The
// completion scripts of the shells (desktop/completion) run it at each press of the tab key.
#pragma once

#include "programs/Commands/Command.h"

#include <span>
#include <string>

namespace tarnwick {

// `words` are INDEX and the words after "tarnwick", among them the begun one, which has that index
// from 0. One line for each word that fits:
//
//     WORD<tab>PURPOSE            more follows without a blank if WORD ends with "="
//     :files<tab>BEFORE<tab>metal json
//     :folders<tab>BEFORE         the shell completes the name after the text BEFORE
//
// Anything that cannot be completed gives no line.
std::string completionAnswer(std::span<const Command* const> commands,
                             std::span<const char* const> words);

} // namespace tarnwick
