#include "tests/TarnwickMSL/SpirvModules.h"

#include <llvm/AsmParser/Parser.h>
#include <llvm/IR/LLVMContext.h>
#include <llvm/Support/SourceMgr.h>

#include <array>
#include <stdexcept>

namespace tarnwick::msl {

static constexpr std::string_view target =
    "target datalayout = \"e-p:32:32-i64:64-v16:16-v24:32-v32:32-v48:64-v96:128-v192:256-v256:256-"
    "v512:512-v1024:1024-G1\"\ntarget triple = \"spir-unknown-unknown\"\n";

static llvm::BasicBlock* blockNamed(llvm::Function& function, std::string_view name) {
    for (llvm::BasicBlock& block : function)
        if (block.getName() == llvm::StringRef(name.data(), name.size()))
            return &block;
    return nullptr;
}

ParsedShader parseShader(const ShaderText& text) {
    ParsedShader parsed;
    parsed.context = std::make_unique<llvm::LLVMContext>();
    llvm::SMDiagnostic error;
    std::string code = std::string(target) + std::string(text.code);
    ShaderModule& shader = parsed.shader;
    shader.module = llvm::parseAssemblyString(code, error, *parsed.context);
    if (!shader.module)
        throw std::runtime_error(error.getMessage().str() + " in " + error.getLineContents().str());
    shader.main = shader.module->getFunction("main");
    shader.name = "shade";
    shader.stage = text.stage;
    shader.interface = text.interface;
    shader.textures = text.textures;
    for (const auto& [header, merge, next] : text.merges)
        shader.structure[blockNamed(*shader.main, header)] = {blockNamed(*shader.main, merge),
                                                              blockNamed(*shader.main, next)};
    return parsed;
}

} // namespace tarnwick::msl
