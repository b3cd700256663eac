// Exports an episode as a SwiftUI colour effect: a Metal file with the episode's own code, a view
// that runs it, and the manifest of a Swift package with both.
#pragma once

#include "TarnwickCore/Episode/ShaderKind.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwick {

// Pure; accepts any bytes; text that is not UTF-8 becomes U+FFFD. May be called from any thread.
//
// The output compiles if the episode does:
// - In comments the lines of a title are joined by spaces.
// - The name of the type is ASCII, because it names files, modules and functions. Letters are
//   transliterated to Latin ("Größe" gives "Grosse") or omitted. The name of the function gets
//   "Shader" appended if it is a word of Metal or Swift ("while", "float4").
// - In the view, a parameter named like a word of Swift is in backquotes. A parameter named like a
//   member of the view (`body`, `isRunning`, `Float`) gets the prefix "p_", repeated until the name
//   is unique. In the Metal file all parameters keep their names.
struct SwiftUIExport {
    struct Output {
        std::string name;            // of the type, without "View" at its end
        std::string function;        // name of the Metal function
        std::string metal;           // the Metal file
        std::string swift;           // the view, for a target that compiles the Metal file itself
        std::string packageSwift;    // the view inside the package, where it is public
        std::string packageManifest; // Package.swift

        bool operator==(const Output&) const = default;
    };

    // The episode cannot be a colour effect.
    struct Problem : std::runtime_error {
        enum class Reason : std::uint8_t { kind, inputs };

        static Problem ofKind(ShaderKind kind); // it is not a fragment episode
        static Problem ofInputs();              // it reads Inputs

        Reason reason;
        ShaderKind kind; // of the episode

      private:
        Problem(Reason reason, ShaderKind kind, const std::string& sentence)
            : std::runtime_error(sentence), reason(reason), kind(kind) {}
    };

    // Throws Problem.
    static Output make(std::string_view source, std::string_view title);

    // An identifier in upper camel case made of the words of `title`, without a number and
    // separators at its beginning. "TarnwickShader" if no word remains. "Shader" is put before a
    // name that would begin with a digit. In SwiftTypeName.cpp.
    static std::string typeName(std::string_view title);
};

} // namespace tarnwick
