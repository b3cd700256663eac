// Shader modules from LLVM's text, for tests of the writer without the steps before it.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {

// A module and the context that it lives in. `main`'s blocks are structured as `merges` says, by
// name: {header, merge, continue target or ""}.
struct ShaderText {
    std::string_view code; // without the target's lines
    Stage stage = Stage::fragment;
    std::vector<InterfaceVariable> interface;
    std::vector<TextureVariable> textures = {};
    std::vector<std::array<std::string_view, 3>> merges = {};
};

struct ParsedShader {
    std::unique_ptr<llvm::LLVMContext> context;
    ShaderModule shader;
};

ParsedShader parseShader(const ShaderText& text);

} // namespace tarnwick::msl
