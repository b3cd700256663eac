#include "TarnwickMSL/Worker/Translate.h"

#include "TarnwickMSL/Translation/Passes.h"
#include "TarnwickMSL/Translation/SpirvWriter.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/LLVMContext.h>

namespace tarnwick::msl {

Compilation translate(std::string_view source, const StandardLibrary& library,
                      const Target& target) {
    llvm::LLVMContext context;
    Parsed parsed = parse(source, library, context);
    Compilation compilation{
        .failed = parsed.failed, .entryPoints = {}, .messages = std::move(parsed.messages)};
    if (compilation.failed)
        return compilation;
    std::string place = "program_source:1:1";
    try {
        prepare(*parsed.module, parsed.entries);
        for (const EntrySignature& entry : parsed.entries) {
            place = entry.place;
            compilation.entryPoints.push_back(
                writeSpirv(lower(*parsed.module, entry, parsed.entries, target)));
        }
    } catch (const TranslationError& error) {
        compilation.failed = true;
        compilation.entryPoints.clear();
        compilation.messages += place + ": error: " + error.what() + "\n1 error generated.\n";
    }
    return compilation;
}

} // namespace tarnwick::msl
