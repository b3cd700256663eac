// Condenses the overloads of a function to a few lines.
#pragma once

#include "TarnwickMSL/Declarations/Generator/TypeText.h"

#include <string>
#include <vector>

namespace tarnwick::msl {

struct Overload {
    struct Parameter {
        TypeText type;
        std::string name;
        bool isOptional = false; // has a default
    };

    std::string name;
    TypeText result;
    std::vector<Parameter> parameters;
    bool isTemplate = false;
};

// One line for each group of overloads that differ in one type only, which is T: "T mix(T x, T y,
// T z)  T: float, half and vectors". E is the element of T; boolN has as many components as T.
// Templates are omitted if there are others. Lines are separated by line feeds.
std::string signaturesOf(const std::vector<Overload>& overloads);

} // namespace tarnwick::msl
