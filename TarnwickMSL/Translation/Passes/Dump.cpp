#include "TarnwickMSL/Translation/Passes/Dump.h"

#include <llvm/Support/raw_ostream.h>

#include <cstdlib>

namespace tarnwick::msl {

using namespace llvm;

std::string text(const Module& module) {
    std::string written;
    raw_string_ostream stream(written);
    module.print(stream, nullptr);
    return written;
}

static void name(raw_ostream& stream, const BasicBlock* block) {
    if (block)
        block->printAsOperand(stream, false);
    else
        stream << "none";
}

std::string text(const ShaderModule& shader) {
    std::string written;
    raw_string_ostream stream(written);
    for (const InterfaceVariable& variable : shader.interface)
        stream << "; " << variable.global << " kind " << static_cast<int>(variable.kind)
               << " binding " << variable.binding << " location " << variable.location << " "
               << variable.builtIn << "\n";
    for (const TextureVariable& texture : shader.textures)
        stream << "; texture " << texture.index << " binding " << texture.binding << "\n";
    for (const BasicBlock& block : *shader.main) {
        auto found = shader.structure.find(const_cast<BasicBlock*>(&block));
        if (found == shader.structure.end())
            continue;
        stream << "; ";
        name(stream, &block);
        stream << " merges at ";
        name(stream, found->second.merge);
        if (found->second.continueTarget) {
            stream << ", continues at ";
            name(stream, found->second.continueTarget);
        }
        stream << "\n";
    }
    return written + text(*shader.module);
}

static void write(StringRef name, StringRef step, auto&& makeText) {
    const char* folder = std::getenv("TARNWICK_MSL_DUMP");
    if (!folder || !*folder)
        return;
    std::error_code failure;
    raw_fd_ostream file((Twine(folder) + "/" + name + "." + step + ".ll").str(), failure);
    if (!failure)
        file << makeText();
}

void dump(const Module& module, StringRef name, StringRef step) {
    write(name, step, [&] { return text(module); });
}

void dump(const ShaderModule& shader, StringRef step) {
    write(shader.name, step, [&] { return text(shader); });
}

} // namespace tarnwick::msl
