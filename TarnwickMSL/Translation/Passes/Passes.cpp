// Runs the table of steps (Steps.cpp); after each row it dumps and checks the code.
#include "TarnwickMSL/Translation/Passes.h"

#include "TarnwickMSL/Translation/KeptFunctions.h"
#include "TarnwickMSL/Translation/Passes/Driver.h"
#include "TarnwickMSL/Translation/Passes/Features.h"
#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <stdexcept>

namespace tarnwick::msl {

static void performScope(Scope scope, Work& work, StepTimes* times) {
    for (const Step& step : steps()) {
        if (step.scope != scope || (step.use == Use::faster && !work.target.isOptimised) ||
            (step.language && *step.language != work.target.language))
            continue;
        perform(step, work);
        addTime(times, step.name);
    }
}

static void runEntry(Work& work, std::vector<EntryPoint>& made, StepTimes* times) {
    try {
        performScope(Scope::entryPoint, work, times);
        requireFeatures(work.result, work.target);
    } catch (TranslationError& error) {
        if (error.place.empty())
            error.place = work.entry->place;
        throw;
    }
    made.push_back(std::move(work.result));
}

std::vector<EntryPoint> runSteps(llvm::Module& program, const std::vector<EntrySignature>& entries,
                                 const std::vector<ConstantSignature>& constants,
                                 const Target& target, StepTimes* times, KeptFunctions* kept) {
    {
        Work work(program, entries);
        work.target = target;
        work.constants = constants;
        work.kept = kept;
        dumpStart(work);
        performScope(Scope::program, work, times);
    }
    std::vector<EntryPoint> made;
    for (const EntrySignature& entry : entries) {
        if (const EntryPoint* result = kept ? kept->result(entry.symbol) : nullptr) {
            made.push_back(*result);
            continue;
        }
        Work work(program, entries);
        work.entry = &entry;
        work.constants = constants;
        work.target = target;
        runEntry(work, made, times);
        if (kept)
            kept->setResult(entry.symbol, made.back());
    }
    return made;
}

bool showsFaults() {
    return looksInside();
}

std::string programText(const llvm::Module& program, const std::vector<EntrySignature>& entries,
                        const std::vector<ConstantSignature>& constants) {
    return text(program, entries, constants);
}

static std::string unknownStep(std::string_view name) {
    std::string sentence = "There is no step '" + std::string(name) + "'. The steps are:";
    for (const Step& step : steps())
        sentence += " " + std::string(step.name);
    return sentence + ".";
}

static void requireInput(const Step& step, const Work& work) {
    const std::string name(step.name);
    if (step.name == "cut" || step.name == "wrap") {
        if (!work.entry)
            throw TextError("The step '" + name + "' needs a line '; entry'.");
    } else if (step.scope == Scope::entryPoint && !work.shader.main) {
        throw TextError("The step '" + name + "' needs a function 'main'.");
    }
    if (step.name == "wrap" && !work.shader.module)
        throw TextError("The step 'wrap' needs a line '; shader'.");
}

std::string runStep(std::string_view name, std::string_view text, const Target& target) {
    const Step* step = stepNamed(name);
    if (!step)
        throw TextError(unknownStep(name));
    ReadWork read = readWork(text);
    read.work->target = target;
    requireInput(*step, *read.work);
    step->run(*read.work);
    requireForm(*step, *read.work);
    return msl::text(*read.work);
}

std::string stepTable() {
    std::string text = "| step | header | why here | from here on |\n|---|---|---|---|\n";
    for (const Step& step : steps()) {
        text += "| `" + std::string(step.name) + "` | `TarnwickMSL/Translation/" +
                std::string(step.header) + "` | ";
        text += std::string(step.reason) + (step.use == Use::faster ? " Not with `-O0`." : "") +
                (step.language == Language::wgsl ? " Only for WGSL." : "") + " | " +
                std::string(sentence(step.form)) + " |\n";
    }
    return text;
}

} // namespace tarnwick::msl
