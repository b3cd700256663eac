// The parts of a SwiftUI package that are the same for every episode. Blanks and line breaks at the
// ends of a text are part of it: the texts are joined without separators.
#pragma once

#include <array>
#include <string_view>

namespace tarnwick::pieces {

// clang-format off

// Follows the name of the view without its ending; the name of the namespace follows.
inline constexpr std::string_view metalInclusions = R"msl(View.swift runs it.
// The shader below is the episode's own code, inside a namespace; only `constant Uniforms&` and `constant Params&`
// were changed to `thread const …&`.
#include <metal_stdlib>
#include <SwiftUI/SwiftUI_Metal.h>
using namespace metal;

namespace )msl";

// Follows the episode's text; the name of the namespace follows.
inline constexpr std::string_view metalNamespaceEnd = R"msl(
} // namespace )msl";

// Follows the name of the namespace; the name of the function follows.
inline constexpr std::string_view metalStitchable = R"msl(

/// The position and size are in points; the scale turns them into pixels, as the episode expects.
[[ stitchable ]] half4 )msl";

// Follows the name of the function; one argument for each parameter follows.
inline constexpr std::string_view metalArguments = R"msl((float2 tw_position, half4 tw_color, float2 tw_size, float tw_scale, float tw_time)msl";

// Follows the name of the namespace, which follows once more.
inline constexpr std::string_view metalUniforms = R"msl(::Uniforms u;
    u.resolution = tw_size * tw_scale;
    u.time = tw_time;
    u.timeDelta = 1.0 / 60.0;
    u.mouse = u.resolution * 0.5;
    u.frame = uint(max(tw_time, 0.0) * 60.0);
    u.pad = 0;
    )msl";

// Follows the values of the parameters; the name of the namespace follows.
inline constexpr std::string_view metalCall = R"msl(
    // SwiftUI's y runs down; the episode's uv starts at the bottom left.
    float2 uv = float2(tw_position.x / tw_size.x, 1.0 - tw_position.y / tw_size.y);
    return half4()msl";

// Follows the name of the namespace and ends the file.
inline constexpr std::string_view metalEnd = R"msl(::shade(uv, u, p));
}
)msl";

// The package's manifest; the name of the type is between each two parts.
inline constexpr std::array<std::string_view, 9> manifest{
R"swift(// swift-tools-version: 5.9
// )swift",
R"swift(View, a Tarnwick shader as a SwiftUI view. Add this folder to an Xcode project (File > Add Package
// Dependencies… > Add Local…), then `import )swift",
R"swift(Shader` and use `)swift",
R"swift(View()`.
import PackageDescription

let package = Package(
    name: ")swift",
R"swift(Shader",
    platforms: [.macOS(.v14), .iOS(.v17), .visionOS(.v1)],
    products: [.library(name: ")swift",
R"swift(Shader", targets: [")swift",
R"swift(Shader"])],
    targets: [
        // The .metal file is compiled into the module's own library, which the view reads with ShaderLibrary.bundle(.module).
        .target(name: ")swift",
R"swift(Shader", resources: [.process(")swift",
R"swift(.metal")])
    ]
)
)swift"};
// clang-format on

} // namespace tarnwick::pieces
