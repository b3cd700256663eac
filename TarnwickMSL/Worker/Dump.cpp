#include "TarnwickMSL/Worker/Dump.h"

#include "TarnwickMSL/Translation/Passes.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>

#include <iostream>

namespace tarnwick::msl {

bool dumpParsed(std::string_view source, const StandardLibrary& library) {
    llvm::LLVMContext context;
    const Parsed parsed = parse(source, library, context);
    std::cerr << parsed.messages;
    if (!parsed.failed)
        std::cout << programText(*parsed.module, parsed.entries, parsed.constants);
    return !parsed.failed;
}

bool dumpStep(std::string_view step, std::string_view text) {
    try {
        std::cout << runStep(step, text);
        return true;
    } catch (const CompilerFault& fault) {
        std::cerr << fault.detail << '\n';
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return false;
}

} // namespace tarnwick::msl
