// The plain records beside a module as lines of text: "; texture index=3 shape=2d".
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick::msl {

// Record is EntrySignature, Argument, StageValue, StageAttribute, ConstantSignature,
// InterfaceVariable,
// TextureVariable, TypeLacks or ShaderModule (name, stage and flags alone).

// "; WORD FIELD=VALUE FIELD=VALUE" and a line end. Fields with their default are left out; a value
// with blanks is in quotes.
template <class Record> std::string recordLine(std::string_view word, const Record& record);

// Sets the fields that the line has. Returns the first field of the line that the record does not
// have, or whose value is invalid; nothing if all fields are valid.
template <class Record>
std::optional<std::string> readRecord(std::string_view line, Record& record);

// The word of such a line; empty for any other line.
std::string_view recordWord(std::string_view line);

// The value of one field of a line; empty if the line does not have it.
std::string fieldOf(std::string_view line, std::string_view field);

} // namespace tarnwick::msl
