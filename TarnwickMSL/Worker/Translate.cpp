#include "TarnwickMSL/Worker/Translate.h"

#include "TarnwickMSL/Translation/Passes.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

static std::string detail(const TranslationError& error) {
    auto* fault = dynamic_cast<const CompilerFault*>(&error);
    return fault && showsFaults() ? " [" + fault->detail + "]" : "";
}

namespace {

struct Translation {
    llvm::LLVMContext context;
    Parsed parsed;
};

} // namespace

// `wasParsed` tells a program that the front end took from one that it did not.
static Compilation attempt(std::string_view source, const StandardLibrary& library,
                           const CompileOptions& options, Places places, bool& wasParsed,
                           StepTimes* times, Remains* remains = nullptr) {
    const auto work = std::make_shared<Translation>();
    if (remains)
        *remains = work;
    Parsed& parsed = work->parsed;
    work->context.setDiscardValueNames(!showsFaults()); // only people read the names of values
    parsed = parse(source, library, work->context,
                   {.places = places,
                    .moreWarningsIn = options.moreWarningsIn,
                    .constants = options.constants,
                    .times = times});
    wasParsed = !parsed.failed;
    Compilation compilation{
        .failed = parsed.failed, .entryPoints = {}, .messages = std::move(parsed.messages)};
    if (compilation.failed)
        return compilation;
    try {
        compilation.entryPoints =
            runSteps(*parsed.module, parsed.entries, parsed.constants, options.target, times);
    } catch (const TranslationError& error) {
        compilation.failed = true;
        const std::string place = error.place.empty() ? "program_source:1:1" : error.place;
        compilation.messages +=
            place + ": error: " + error.what() + detail(error) + "\n1 error generated.\n";
    }
    return compilation;
}

// Only a program that cannot be translated is worth the time to find the line that is at fault.
Compilation translate(std::string_view source, const StandardLibrary& library,
                      const CompileOptions& options, StepTimes* times, Remains* remains) {
    bool wasParsed = false;
    Compilation first = attempt(source, library, options, Places::left, wasParsed, times, remains);
    if (!first.failed || !wasParsed)
        return first;
    Compilation second = attempt(source, library, options, Places::kept, wasParsed, times);
    return second.failed ? second : first;
}

} // namespace tarnwick::msl
