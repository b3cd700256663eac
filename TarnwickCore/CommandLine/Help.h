// The help of a command, made from its options.
#pragma once

#include "TarnwickCore/CommandLine/Option.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

// "usage: NAME [OPTION]... OPERANDS", the summary, and for each option one or more lines of at most
// 100 characters: its purpose, its values, whether it is required, its default.
std::string helpText(std::string_view name, const CommandForm& form, std::string_view summary);

// "size of the picture; each from 1 to 16384 pixels; default: 1280x720"
std::string optionDetails(const Option& option);

// `text`, which begins `indent` characters into a line, in lines of at most 100 characters; all but
// the first begin with as many blanks.
std::string wrapped(std::string_view text, std::size_t indent);

} // namespace tarnwick
