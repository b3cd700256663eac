// An episode as a SwiftUI colour effect: a Metal file around the episode's own code, a view that
// runs it, and the manifest of a Swift package that bundles both.
#pragma once

#include "TarnwickCore/Episode/ShaderKind.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// Pure; any bytes are taken, and what is not UTF-8 becomes U+FFFD. May be called from any thread.
//
// What is written compiles where the episode does:
// - In comments the lines of a title are joined by spaces.
// - The type's name is ASCII, so that it may name files, modules and functions everywhere: letters
//   of other scripts are written in Latin ("Größe" gives "Grosse"), what has no such form is left
//   out. A function that would be called as a word of Metal or Swift is ("while", "float4") ends
//   in "Shader".
// - In the view a parameter whose name is a word of Swift stands in backquotes; one called as
//   something that the view needs itself is (`body`, `isRunning`, `Float`) gets "p_" before its
//   name, as often as it takes to be the only one. In the Metal file all keep their names.
struct SwiftUIExport {
    struct Output {
        std::string name;            // of the type, without the "View" at its end
        std::string function;        // the Metal function's
        std::string metal;           // the Metal file
        std::string swift;           // the view, for a target that compiles the Metal file itself
        std::string packageSwift;    // the view as it stands inside the package, where it is public
        std::string packageManifest; // Package.swift

        bool operator==(const Output&) const = default;
    };

    // Why an episode cannot be a colour effect.
    struct Problem : std::runtime_error {
        enum class Reason : std::uint8_t { kind, inputs };

        static Problem ofKind(ShaderKind kind); // it is no fragment episode
        static Problem ofInputs();              // it reads Inputs

        Reason reason;
        ShaderKind kind; // where the reason is `inputs`: fragment

      private:
        Problem(Reason reason, ShaderKind kind, const std::string& sentence)
            : std::runtime_error(sentence), reason(reason), kind(kind) {}
    };

    // Throws Problem.
    static Output make(std::string_view source, std::string_view title);

    // An identifier in upper camel case made of the title's words, without the number and the
    // separators that the title may begin with; "TarnwickShader" when no word is left, and
    // "Shader" is put before one that would begin with a digit. In SwiftTypeName.cpp.
    static std::string typeName(std::string_view title);
};

} // namespace tarnwick
