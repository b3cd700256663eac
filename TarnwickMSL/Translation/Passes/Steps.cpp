#include "TarnwickMSL/Translation/Passes/Steps.h"

#include "TarnwickMSL/Translation/Passes/Calls/Description.h"
#include "TarnwickMSL/Translation/Passes/Calls/FunctionConstants.h"
#include "TarnwickMSL/Translation/Passes/Calls/FunctionPointers.h"
#include "TarnwickMSL/Translation/Passes/Calls/Inlining.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/ArrayLoops.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/Flatten.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/Flow.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/HeaderTests.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopBudget.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/Loops.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/Phis.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/Regions.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/Selections.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/UniformConditions.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/VectorPhis.h"
#include "TarnwickMSL/Translation/Passes/Entry/Bindings.h"
#include "TarnwickMSL/Translation/Passes/Entry/Cut.h"
#include "TarnwickMSL/Translation/Passes/Entry/Wrapper.h"
#include "TarnwickMSL/Translation/Passes/Memory/AddressSpaces.h"
#include "TarnwickMSL/Translation/Passes/Memory/ArgumentBuffers.h"
#include "TarnwickMSL/Translation/Passes/Memory/AtomicPlaces.h"
#include "TarnwickMSL/Translation/Passes/Memory/Atomics.h"
#include "TarnwickMSL/Translation/Passes/Memory/Handles.h"
#include "TarnwickMSL/Translation/Passes/Memory/Initialisers.h"
#include "TarnwickMSL/Translation/Passes/Memory/ListMembers.h"
#include "TarnwickMSL/Translation/Passes/Memory/MemoryCalls.h"
#include "TarnwickMSL/Translation/Passes/Memory/NarrowAccess.h"
#include "TarnwickMSL/Translation/Passes/Memory/NearAddresses.h"
#include "TarnwickMSL/Translation/Passes/Memory/PointerArrays.h"
#include "TarnwickMSL/Translation/Passes/Memory/Pointers.h"
#include "TarnwickMSL/Translation/Passes/Memory/ShortArrays.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"
#include "TarnwickMSL/Translation/Passes/Optimising/FloatCounters.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"
#include "TarnwickMSL/Translation/Passes/Values/BitChoices.h"
#include "TarnwickMSL/Translation/Passes/Values/Comparisons.h"
#include "TarnwickMSL/Translation/Passes/Values/ExtendedComparisons.h"
#include "TarnwickMSL/Translation/Passes/Values/Fractions.h"
#include "TarnwickMSL/Translation/Passes/Values/Legalise.h"
#include "TarnwickMSL/Translation/Passes/Values/OddIntegers.h"
#include "TarnwickMSL/Translation/Passes/Values/TwoValuedTables.h"
#include "TarnwickMSL/Translation/Passes/Values/ValueNames.h"
#include "TarnwickMSL/Translation/Passes/Values/WideVectors.h"
#include "TarnwickMSL/Translation/Passes/Widths/WordMemory.h"
#include "TarnwickMSL/Translation/Passes/Widths/WordValues.h"
#include "TarnwickMSL/Translation/SpirvWriter.h"
#include "TarnwickMSL/Translation/WgslWriter.h"

#include <algorithm>
#include <array>

namespace tarnwick::msl {

using namespace llvm;

static void comparisons(Work& work) {
    for (Function& function : work.program)
        fixComparisonLanes(function);
}

static std::vector<Function*> roots(const Work& work) {
    std::vector<Function*> found;
    for (const EntrySignature& entry : work.entries)
        if (Function* function = work.program.getFunction(entry.symbol);
            function && !function->isDeclaration())
            found.push_back(function);
    return found;
}

static void inlining(Work& work) {
    inlineEverything(work.program, roots(work), work.optimiser(), work.kept);
}

static void cutting(Work& work) {
    work.shader = cut(work.program, *work.entry);
    work.shader.constants = work.constants;
    const Target& target = work.target;
    work.shader.lacks = {.int8 = !target.hasInt8,
                         .int16 = !target.hasInt16,
                         .int64 = !target.hasInt64,
                         .half = !target.hasFloat16};
}

static void copies(Work& work) {
    if (hasLongCopies(work.main()))
        work.optimiser().dropCopies(work.main());
    if (!expandMemoryCalls(work.main()))
        return;
    work.optimiser().forget(work.main());
    work.optimiser().clean(work.main());        // a load of one of two records becomes two loads,
    work.optimiser().cleanLightly(work.main()); // so that both become values
}

static void unrolling(Work& work) {
    if (!work.optimiser().hasShortLoops(work.main()) && !work.main().hasFnAttribute(unrollsMark))
        return;
    work.optimiser().unrollLoops(work.main());
    work.optimiser().clean(work.main());
}

static void lists(Work& work) {
    if (!divideLists(work.main()))
        return;
    work.optimiser().forget(work.main());
    work.optimiser().cleanLightly(work.main());
}

static void shortArrays(Work& work) {
    if (!chooseFromShortArrays(work.main()))
        return;
    work.optimiser().forget(work.main());
    work.optimiser().cleanLightly(work.main());
}

static void pointerArrays(Work& work) {
    if (!splitPointerArrays(work.main()))
        return;
    work.optimiser().forget(work.main());
    work.optimiser().cleanLightly(work.main());
}

static void tidying(Work& work) {
    if (work.hasDeadCode)
        work.optimiser().tidy(work.main());
    work.hasDeadCode = false;
}

static void vectorPhis(Work& work) {
    if (isPlain(work.main()))
        return;
    splitVectorPhis(work.main(), work.shader.structure);
    work.optimiser().dropDeadCode(work.main());
}

static void wordValues(Work& work) {
    if (!useWordValues(work.shader))
        return;
    work.optimiser().forget(work.main());
    work.optimiser().dropDeadCode(work.main());
}

// clang-format off
static constexpr std::array table{
    Step{"function-constants", Scope::program, "Passes/Calls/FunctionConstants.h",
         [](Work& work) { defineFunctionConstants(work.program, work.constants); },
         "Gives function constants without a value an initialiser; before `describe`, because it makes calls."},
    Step{"function-pointers", Scope::program, "Passes/Calls/FunctionPointers.h",
         [](Work& work) { numberFunctions(work.program); },
         "Turns function pointers into numbers and calls through them into branches; before every step that follows calls."},
    Step{"describe", Scope::program, "Passes/Calls/Description.h",
         [](Work& work) { describe(work.program, work.target); },
         "Sets attributes by which the optimiser keeps calls in order, and drops logs that the target does not keep; before every step that optimises."},
    Step{"value-names", Scope::program, "Passes/Values/ValueNames.h",
         [](Work& work) { nameStoredValues(work.program); },
         "Gives values the names of the variables that they are stored to, for text; before variables become values.",
         Form::any, Use::needed, Language::wgsl},
    Step{"comparisons", Scope::program, "Passes/Values/Comparisons.h", comparisons,
         "Turns Clang's lanes of all ones into Metal's lanes of 1; before any step rewrites Clang's patterns."},
    Step{"initialisers", Scope::program, "Passes/Memory/Initialisers.h",
         [](Work& work) { foldInitialisers(work.program, roots(work), work.optimiser()); },
         "Evaluates constants that need code; before `inline`, so that their values reach every function."},
    Step{"inline", Scope::program, "Passes/Calls/Inlining.h", inlining,
         "Cleans each function and inlines it into its callers, callees first; before `cut`, so that entry points share the work.",
         Form::calls},
    Step{"local-constants", Scope::program, "Passes/Calls/FunctionConstants.h",
         [](Work& work) { makeConstantsLocal(work.program, roots(work)); },
         "Makes constants that depend on function constants variables of each entry point; after `inline`, when an entry point is one function."},
    Step{"cut", Scope::entryPoint, "Passes/Entry/Cut.h",
         cutting,
         "Moves one entry point into a new module, with copies of the constants that it uses; all later steps change only that module."},
    Step{"wrap", Scope::entryPoint, "Passes/Entry/Wrapper.h",
         [](Work& work) { wrap(work.shader, *work.entry, work.entries, work.target); },
         "Makes `main`, which reads inputs, runs the entry point and writes outputs; after `cut`, which gives it a module.",
         Form::main},
    Step{"address-spaces", Scope::entryPoint, "Passes/Memory/AddressSpaces.h",
         [](Work& work) { work.forgetMainIf(answerSpaces(work.shader)); },
         "Answers in which address space a pointer is; after `wrap`, which binds the arguments, and before `clean`, for which the questions keep variables in memory."},
    Step{"clean", Scope::entryPoint, "Passes/Optimising/Optimiser.h",
         [](Work& work) { work.optimiser().clean(work.main()); },
         "Turns memory into values and combines instructions; after `wrap`, so that calls get their constant handles."},
    Step{"late-address-spaces", Scope::entryPoint, "Passes/Memory/AddressSpaces.h",
         [](Work& work) { work.forgetMainIf(answerAllSpaces(work.shader)); },
         "Repeats `address-spaces` for pointers that were in memory; after `clean`, which makes them values."},
    Step{"function-numbers", Scope::entryPoint, "Passes/Calls/FunctionPointers.h",
         [](Work& work) { work.forgetMainIf(chooseNumbers(work.main())); },
         "Turns function pointers that are chosen or in local memory into numbers; after `clean`, which shows the choices, and before every step that reads the types of local memory."},
    Step{"memory-calls", Scope::entryPoint, "Passes/Memory/MemoryCalls.h", copies,
         "Turns copies and fills into loads and stores; after `clean`, which removes most of them, and before loops are measured."},
    Step{"fractions", Scope::entryPoint, "Passes/Values/Fractions.h",
         [](Work& work) { work.forgetMainIf(trimFractions(work.main())); },
         "Removes the clamp of `fract` where the fraction cannot reach one; after `clean`, which shows the operands.",
         Form::any, Use::faster},
    Step{"float-counters", Scope::entryPoint, "Passes/Optimising/FloatCounters.h",
         [](Work& work) { work.forgetMainIf(countInIntegers(work.main(), work.optimiser().analyses())); },
         "Lets loops that count in floats count in integers; before `unroll`, which needs the number of rounds.",
         Form::any, Use::faster},
    Step{"array-loops", Scope::entryPoint, "Passes/ControlFlow/ArrayLoops.h",
         [](Work& work) { work.forgetMainIf(boundArrayLoops(work.main(), work.optimiser().analyses())); },
         "Ends loops over a short array at its end; before `unroll`, which needs the number of rounds.",
         Form::any, Use::faster},
    Step{"unroll", Scope::entryPoint, "Passes/Optimising/Optimiser.h", unrolling,
         "Unrolls short loops; before `finish`, which removes what the rounds repeat.",
         Form::any, Use::faster},
    Step{"list-members", Scope::entryPoint, "Passes/Memory/ListMembers.h", lists,
         "Divides local lists of records into a list for each member; after `unroll`, which makes many indices constant, and before `short-arrays`.",
         Form::any, Use::faster},
    Step{"two-valued-tables", Scope::entryPoint, "Passes/Values/TwoValuedTables.h",
         [](Work& work) { work.forgetMainIf(replaceTwoValuedTables(work.main())); },
         "Turns tables with two values into bits of a number; after `unroll`, which makes many indices constant.",
         Form::any, Use::faster},
    Step{"short-arrays", Scope::entryPoint, "Passes/Memory/ShortArrays.h", shortArrays,
         "Turns short arrays at changing indices into choices of values; after `unroll` and `two-valued-tables`, which leave fewer of them, and before `finish`.",
         Form::any, Use::faster},
    Step{"finish", Scope::entryPoint, "Passes/Optimising/Optimiser.h",
         [](Work& work) { work.optimiser().finish(work.main()); },
         "Moves code out of loops, removes repeated and unused code; once, on code that no later step makes larger.",
         Form::any, Use::faster},
    Step{"narrow-access", Scope::entryPoint, "Passes/Memory/NarrowAccess.h",
         [](Work& work) { work.forgetMainIf(narrowAccess(work.main(), work.optimiser().analyses())); },
         "Reads and writes single lanes of vectors in buffers; after `finish`, which joins accesses.",
         Form::any, Use::faster},
    Step{"late-memory-calls", Scope::entryPoint, "Passes/Memory/MemoryCalls.h",
         [](Work& work) { work.forgetMainIf(expandMemoryCalls(work.main())); },
         "Repeats `memory-calls` for copies that LLVM's passes may have made since; before `pointers`, which knows loads and stores only.",
         Form::copies},
    Step{"argument-buffers", Scope::entryPoint, "Passes/Memory/ArgumentBuffers.h",
         [](Work& work) {
             work.forgetMainIf(
                 resolveArgumentBuffers(work.shader, work.target.followsAddresses));
         },
         "Gives the members of argument buffers their own handles and buffers; before `pointer-arrays`, which resolves arrays that hold them."},
    Step{"pointer-arrays", Scope::entryPoint, "Passes/Memory/PointerArrays.h", pointerArrays,
         "Turns indexed arrays of pointers into choices; before `pointers`, which resolves choices but no pointers in memory."},
    Step{"pointers", Scope::entryPoint, "Passes/Memory/Pointers.h",
         [](Work& work) { work.hasDeadCode |= resolvePointers(work.shader, work.target); },
         "Replaces pointers that are chosen, compared, converted or in memory by numbers; after all LLVM passes that combine pointers.",
         Form::pointers},
    Step{"handles", Scope::entryPoint, "Passes/Memory/Handles.h",
         [](Work& work) { work.hasDeadCode |= resolveHandles(work.shader); },
         "Gives each texture call its texture and sampler as constants; after `pointers`, which turns chosen arguments into chosen numbers.",
         Form::handles},
    Step{"atomics", Scope::entryPoint, "Passes/Memory/Atomics.h",
         [](Work& work) { work.hasDeadCode |= expandAtomics(work.main(), work.target); },
         "Turns atomic operations that the target lacks into loops; after `pointers`, which finds the buffer, and before loops are counted."},
    Step{"tidy", Scope::entryPoint, "Passes/Optimising/Optimiser.h", tidying,
         "Removes code that the three steps before it made unused; the last step that may join blocks.",
         Form::choices},
    Step{"flow", Scope::entryPoint, "Passes/ControlFlow/Flow.h",
         [](Work& work) { normaliseFlow(work.main(), work.optimiser()); },
         "Makes one return, no switches, loops with one entry and an exit; before loops are counted and structured.",
         Form::flow},
    Step{"wide-vectors", Scope::entryPoint, "Passes/Values/WideVectors.h",
         [](Work& work) { splitWideVectors(work.main()); },
         "Divides vectors of more than four lanes; before `odd-integers`, because their lanes may have odd widths.",
         Form::lanes},
    Step{"odd-integers", Scope::entryPoint, "Passes/Values/OddIntegers.h",
         [](Work& work) { promoteOddIntegers(work.main()); },
         "Widens integers to the next width that SPIR-V has; before `legalise`, which turns their bits into booleans.",
         Form::widths},
    Step{"legalise", Scope::entryPoint, "Passes/Values/Legalise.h",
         [](Work& work) { legalise(work.main()); },
         "Expands intrinsics that the writer does not support; after all LLVM passes that would combine them again.",
         Form::operations},
    Step{"word-memory", Scope::entryPoint, "Passes/Widths/WordMemory.h",
         [](Work& work) { work.forgetMainIf(useWordMemory(work.shader)); },
         "Reads and writes memory in words of 32 bits, for targets that lack other types; after `legalise`, which may make such types, and before `word-values`, which knows no memory.",
         Form::memory},
    Step{"word-values", Scope::entryPoint, "Passes/Widths/WordValues.h", wordValues,
         "Computes values of types that the target lacks in words and floats; after `word-memory`, and before addresses and control flow take their last forms.",
         Form::types},
    Step{"near-addresses", Scope::entryPoint, "Passes/Memory/NearAddresses.h",
         [](Work& work) { keepPointersNear(work.main()); },
         "Repeats the steps to an address before each access; before the control flow is structured, which would carry pointers between blocks.",
         Form::addresses},
    Step{"atomic-places", Scope::entryPoint, "Passes/Memory/AtomicPlaces.h",
         [](Work& work) { indexAtomics(work.main()); },
         "Turns byte addresses of atomic values into indices of values; after all LLVM passes that would turn them back."},
    Step{"flatten", Scope::entryPoint, "Passes/ControlFlow/Flatten.h",
         [](Work& work) { work.forgetMainIf(flattenBranches(work.shader)); },
         "Turns short branches into selections, and exits of a loop into one; after `near-addresses`, when the code is final, and before loops are counted and structured."},
    Step{"header-tests", Scope::entryPoint, "Passes/ControlFlow/HeaderTests.h",
         [](Work& work) { moveTestsToHeaders(work.main(), work.optimiser()); },
         "Moves the tests of loops from their ends to their starts; after `flow`, which makes loops countable, and before `loop-budget` changes the tests."},
    Step{"loop-budget", Scope::entryPoint, "Passes/ControlFlow/LoopBudget.h",
         [](Work& work) { budgetLoops(work.shader, work.optimiser()); },
         "Counts rounds of loops without a known end; after `flow`, which makes loops countable, and before their shape hides the number of rounds."},
    Step{"regions", Scope::entryPoint, "Passes/ControlFlow/Regions.h",
         [](Work& work) { makeRegions(work.main(), work.shader.structure, work.optimiser()); },
         "Nests the control flow in regions with one entry and one exit; after `loop-budget`, whose exits it nests as well.",
         Form::exits},
    Step{"loops", Scope::entryPoint, "Passes/ControlFlow/Loops.h",
         [](Work& work) { structureLoops(work.main(), work.shader.structure); },
         "Gives each loop its header, continue target and merge block; before `selections`, which then knows every loop's branches.",
         Form::loops},
    Step{"selections", Scope::entryPoint, "Passes/ControlFlow/Selections.h",
         [](Work& work) { structureSelections(work.main(), work.shader.structure); },
         "Gives every other branch its merge block; after `loops`.",
         Form::selections},
    Step{"vector-phis", Scope::entryPoint, "Passes/ControlFlow/VectorPhis.h", vectorPhis,
         "Splits phis of vectors into lanes; after the steps that make phis.",
         Form::phis},
    Step{"phis", Scope::entryPoint, "Passes/ControlFlow/Phis.h",
         [](Work& work) { mergePhis(work.main()); },
         "Merges two phis of the same value; after `vector-phis`, so that it compares lanes."},
    Step{"bit-choices", Scope::entryPoint, "Passes/Values/BitChoices.h",
         [](Work& work) { rewriteBitChoices(work.main()); },
         "Writes choices of bits as differences where they are selected against their operands; after `phis`, when all selections and phis are made."},
    Step{"extended-comparisons", Scope::entryPoint, "Passes/Values/ExtendedComparisons.h",
         [](Work& work) { rewriteExtendedComparisons(work.main()); },
         "Makes signed comparisons of sign-extended integers unsigned; after `phis`, when all selections and phis are made."},
    Step{"uniform-conditions", Scope::entryPoint, "Passes/ControlFlow/UniformConditions.h",
         [](Work& work) { hideUniformConditions(work.shader, work.target); },
         "Hides conditions on uniform values alone from drivers that compile for these values; after all steps that make conditions, which would see through it."},
    Step{"bindings", Scope::entryPoint, "Passes/Entry/Bindings.h",
         [](Work& work) { assignBindings(work.shader, work.target); },
         "Numbers the buffers and textures that are still used; last, when no step removes uses.",
         Form::bindings},
    Step{"spirv", Scope::entryPoint, "SpirvWriter.h",
         [](Work& work) { work.result = writeSpirv(work.shader); },
         "Writes the SPIR-V words, which SPIRV-Tools' validator checks.",
         Form::any, Use::needed, Language::spirv},
    Step{"wgsl", Scope::entryPoint, "WgslWriter.h",
         [](Work& work) { work.result = writeWgsl(work.shader); },
         "Writes the text, for targets of WGSL in place of `spirv`.",
         Form::any, Use::needed, Language::wgsl},
};
// clang-format on

std::span<const Step> steps() {
    return table;
}

const Step* stepNamed(std::string_view name) {
    const auto* found = std::ranges::find(table, name, &Step::name);
    return found == table.end() ? nullptr : found;
}

} // namespace tarnwick::msl
