#include "TarnwickMSL/Translation/Passes/Driver.h"

#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Support/raw_ostream.h>

#include <cstdlib>
#include <utility>

namespace tarnwick::msl {

static const char* dumpFolder() {
    const char* folder = std::getenv("TARNWICK_MSL_DUMP");
    return folder && *folder ? folder : nullptr;
}

namespace {

enum class Checks : std::uint8_t { none, code, all }; // all: the SPIR-V as well

} // namespace

static Checks checks() {
    const char* value = std::getenv("TARNWICK_CHECK_STEPS");
    const std::string_view word = value ? value : "";
#ifndef NDEBUG
    if (word.empty())
        return Checks::all;
#endif
    if (word.empty() || word == "0")
        return Checks::none;
    return word == "all" ? Checks::all : Checks::code;
}

bool looksInside() {
    return dumpFolder() || checks() != Checks::none;
}

// NN-STEP, and the ending of the text's kind.
static std::string fileName(const Step& step) {
    const std::ptrdiff_t number = &step - steps().data() + 1;
    return (number < 10 ? "0" : "") + std::to_string(number) + "-" + std::string(step.name) +
           (step.language == Language::spirv  ? ".spvasm"
            : step.language == Language::wgsl ? ".wgsl"
                                              : ".ll");
}

static void dump(const Work& work, const std::string& file) {
    const char* folder = dumpFolder();
    if (!folder)
        return;
    const std::string name = work.entry ? work.entry->name : "program";
    std::error_code error;
    llvm::raw_fd_ostream stream(std::string(folder) + "/" + name + "." + file, error);
    if (!error)
        stream << text(work);
}

void dumpStart(const Work& work) {
    dump(work, "00-front-end.ll");
}

// The last rule that a step before this one establishes.
static Form formBefore(const Step& step) {
    Form form = Form::any;
    for (const Step& earlier : steps().first(static_cast<std::size_t>(&step - steps().data())))
        form = std::max(form, earlier.form);
    return form;
}

static void require(const Step& step, const std::string& found) {
    if (!found.empty())
        throw CompilerFault("After the step '" + std::string(step.name) + "': " + found);
}

void requireForm(const Step& step, const Work& work) {
    if (!work.result.text.empty())
        return; // a browser checks it
    if (!work.result.words.empty())
        require(step, spirvFaults(work.result.words));
    else
        require(step,
                checkForm(work.module(), &work.shader, std::max(step.form, formBefore(step))));
}

// Code that a step leaves as it was needs only the check of the step's own rule.
static void check(const Step& step, Work& work) {
    const Checks asked = checks();
    const bool isWritten = !work.result.words.empty() || !work.result.text.empty();
    // The program before its functions are inlined is large, and its checks cost as much as all of
    // an entry point's later ones; the SPIR-V validator costs as much again.
    const bool isCostly = isWritten || (step.scope == Scope::program && step.form == Form::any);
    if (asked == Checks::none || (isCostly && asked != Checks::all))
        return;
    const std::size_t before = std::exchange(work.fingerprint, fingerprint(work.module()));
    if (isWritten || before != work.fingerprint)
        requireForm(step, work);
    else
        require(step, checkRule(work.module(), &work.shader, step.form));
}

static void run(const Step& step, Work& work) {
    try {
        step.run(work);
    } catch (CompilerFault& fault) {
        fault.detail = "In the step '" + std::string(step.name) + "': " + fault.detail;
        throw;
    }
}

void perform(const Step& step, Work& work) {
    run(step, work);
    dump(work, fileName(step));
    check(step, work);
}

} // namespace tarnwick::msl
