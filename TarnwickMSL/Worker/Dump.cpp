#include "TarnwickMSL/Worker/Dump.h"

#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>
#include <llvm/Support/raw_ostream.h>

namespace tarnwick::msl {
namespace {

void print(const StageValue& value) {
    llvm::outs() << ";        value " << value.name << " [" << value.attribute << " " << value.index
                 << "] scalar " << int(value.scalar) << " x " << value.width << " at "
                 << value.offset << " interpolation " << int(value.interpolation) << "\n";
}

void print(const EntrySignature& entry) {
    llvm::outs() << "; entry " << entry.name << " stage " << int(entry.stage) << " symbol "
                 << entry.symbol << "\n";
    for (const Argument& argument : entry.arguments) {
        llvm::outs() << ";   " << argument.name << " kind " << int(argument.kind) << " index "
                     << argument.index << " space " << int(argument.space) << " reference "
                     << argument.isReference << " bytes " << argument.elementBytes << " type "
                     << argument.elementType << "\n";
        for (const StageValue& value : argument.values)
            print(value);
    }
    for (const StageValue& value : entry.results)
        print(value);
}

} // namespace

bool dumpParsed(std::string_view source, const StandardLibrary& library) {
    llvm::LLVMContext context;
    const Parsed parsed = parse(source, library, context);
    llvm::errs() << parsed.messages;
    if (parsed.failed)
        return false;
    for (const EntrySignature& entry : parsed.entries)
        print(entry);
    parsed.module->print(llvm::outs(), nullptr);
    return true;
}

} // namespace tarnwick::msl
