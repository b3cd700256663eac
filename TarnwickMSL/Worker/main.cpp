// The compiler as a process of its own. For people it also prints what the first step gives:
//   tarnwick-msl-worker --dump-ir FILE.metal
#include "TarnwickMSL/Translation/FrontEnd.h"

#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>
#include <llvm/Support/raw_ostream.h>

#include <chrono>
#include <cstring>
#include <fstream>
#include <iterator>

using namespace tarnwick::msl;

namespace {

double seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void print(const StageValue& value) {
    llvm::outs() << "      value " << value.name << " [" << value.attribute << " " << value.index
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

int main(int count, char** words) {
    if (count < 3 || std::strcmp(words[1], "--dump-ir") != 0)
        return 2;
    std::ifstream file(words[2], std::ios::binary);
    const std::string source{std::istreambuf_iterator<char>(file), {}};
    double start = seconds();
    StandardLibrary library = StandardLibrary::build();
    llvm::errs() << "library " << (seconds() - start) * 1e3 << " ms, "
                 << library.precompiled().size() << " bytes\n";
    for (int i = 0; i < 3; ++i) {
        llvm::LLVMContext context;
        start = seconds();
        Parsed parsed = parse(source, library, context);
        llvm::errs() << "parse " << (seconds() - start) * 1e3 << " ms\n";
        if (i < 2)
            continue;
        llvm::errs() << parsed.messages;
        if (parsed.failed)
            return 1;
        for (const EntrySignature& entry : parsed.entries)
            print(entry);
        parsed.module->print(llvm::outs(), nullptr);
    }
    return 0;
}
