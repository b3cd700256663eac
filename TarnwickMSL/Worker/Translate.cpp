#include "TarnwickMSL/Worker/Translate.h"

#include "TarnwickMSL/Translation/KeptFunctions.h"
#include "TarnwickMSL/Translation/Passes.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

static std::string detail(const TranslationError& error) {
    auto* fault = dynamic_cast<const CompilerFault*>(&error);
    return fault && showsFaults() ? " [" + fault->detail + "]" : "";
}

// `place` is "file:line:column".
static Diagnostic diagnosticAt(llvm::StringRef place, std::string text) {
    Diagnostic made{.file = {}, .length = 1, .text = std::move(text)};
    const auto [file, column] = place.rsplit(':');
    const auto [name, line] = file.rsplit(':');
    made.file = name.str();
    line.getAsInteger(10, made.line);
    column.getAsInteger(10, made.column);
    return made;
}

// Memory that several translations share, one after the other.
struct Translation {
    llvm::LLVMContext context;
    Parsed parsed;      // the last one
    KeptFunctions kept; // of it
    Target target;      // of it
    int uses = 0;
};

// A context never frees types and constants.
constexpr int mostUses = 100;

void Remains::tidy() {
    if (!translation)
        return;
    translation->parsed.module.reset();
    translation->kept.tidy();
    if (translation->uses > mostUses)
        translation.reset();
}

// Parses the source. The module lacks functions that `work.kept` has.
static Parsed parseInto(Translation& work, std::string_view source, const StandardLibrary& library,
                        ParseOptions parsing, const TranslationOptions& options) {
    bool isFollowed = false;
    parsing.omitted = [&](const std::shared_ptr<const void>& declarations, const Symbols& changed) {
        isFollowed = declarations == work.parsed.declarations && options.target == work.target;
        return isFollowed ? work.kept.follow(changed) : Symbols();
    };
    Parsed parsed = parse(source, library, work.context, parsing);
    if (!isFollowed)
        work.kept.clear();
    work.target = options.target;
    return parsed;
}

// Whether all code of the program is in functions that it calls by name.
static bool isPlain(const Parsed& parsed) {
    return parsed.constants.empty() && !parsed.module->getNamedGlobal("llvm.global_ctors") &&
           llvm::none_of(*parsed.module,
                         [](const llvm::Function& function) { return function.hasAddressTaken(); });
}

// `wasParsed` tells a program that the front end took from one that it did not.
static Compilation attempt(std::string_view source, const StandardLibrary& library,
                           const TranslationOptions& options, Places places, bool& wasParsed,
                           StepTimes* times, Remains* remains = nullptr) {
    if (remains)
        remains->tidy();
    std::shared_ptr<Translation> work = remains ? remains->translation : nullptr;
    if (!work)
        work = std::make_shared<Translation>();
    if (remains)
        remains->translation = work;
    ++work->uses;
    // Only people read the names of values, in dumps and in text.
    work->context.setDiscardValueNames(!showsFaults() &&
                                       options.target.language == Language::spirv);
    work->parsed = parseInto(*work, source, library,
                             {.places = places,
                              .moreWarningsIn = options.moreWarningsIn,
                              .constants = options.constants,
                              .includes = options.includes,
                              .reflects = options.reflects,
                              .times = times},
                             options);
    Parsed& parsed = work->parsed;
    wasParsed = !parsed.failed;
    Compilation compilation{
        .failed = parsed.failed,
        .entryPoints = {},
        .messages = std::move(parsed.messages),
        .diagnostics = std::move(parsed.diagnostics),
        .files = std::move(parsed.files),
        .reflection = std::move(parsed.reflection),
    };
    if (compilation.failed)
        return compilation;
    try {
        compilation.entryPoints =
            runSteps(*parsed.module, parsed.entries, parsed.constants, options.target, times,
                     remains && isPlain(parsed) ? &work->kept : nullptr);
    } catch (const TranslationError& error) {
        work->parsed.declarations.reset();
        compilation.failed = true;
        const std::string place = error.place.empty() ? "program_source:1:1" : error.place;
        compilation.diagnostics.push_back(diagnosticAt(place, error.what() + detail(error)));
        compilation.messages +=
            place + ": error: " + compilation.diagnostics.back().text + "\n1 error generated.\n";
    }
    if (options.lists)
        for (const EntryPoint& entry : compilation.entryPoints)
            compilation.listings.push_back(entry.text.empty() ? spirvText(entry.words)
                                                              : entry.text);
    return compilation;
}

// Only a program that cannot be translated is worth the time to find the line that is at fault.
Compilation translate(std::string_view source, const StandardLibrary& library,
                      const TranslationOptions& options, StepTimes* times, Remains* remains) {
    bool wasParsed = false;
    Compilation first = attempt(source, library, options, Places::left, wasParsed, times, remains);
    if (!first.failed || !wasParsed)
        return first;
    Compilation second = attempt(source, library, options, Places::kept, wasParsed, times);
    return second.failed ? second : first;
}

} // namespace tarnwick::msl
