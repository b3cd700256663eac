// Bodies are cleaned before they are copied into several callers: copies of raw ones took two
// thirds of all time. The body of a function with one call is moved; it is cleaned with its caller,
// or before, if loops of its own unroll.
#include "TarnwickMSL/Translation/Passes/Calls/Inlining.h"

#include "TarnwickMSL/Translation/Passes/Calls/BodyMove.h"
#include "TarnwickMSL/Translation/Passes/Calls/FunctionPointers.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"
#include "TarnwickMSL/Translation/Passes/Optimising/FloatCounters.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/InstrTypes.h>
#include <llvm/IR/Module.h>
#include <llvm/Transforms/Utils/Cloning.h>

namespace tarnwick::msl {

using namespace llvm;

enum class Visit : std::uint8_t { none, open, done };

// The functions with bodies that the roots reach, callees before callers.
class Order {
  public:
    void visit(Function& function) {
        visits_[&function] = Visit::open;
        path_.push_back(&function);
        for (Instruction& instruction : instructions(function))
            if (auto* call = dyn_cast<CallBase>(&instruction))
                follow(*call);
        visits_[&function] = Visit::done;
        path_.pop_back();
        functions.push_back(&function);
    }
    Visit state(Function& function) { return visits_[&function]; }

    std::vector<Function*> functions;

  private:
    void follow(CallBase& call) {
        Function* callee = call.getCalledFunction();
        if (!callee)
            throw CompilerFault("A call through a pointer is left.");
        if (callee->isDeclaration())
            return;
        if (state(*callee) == Visit::open)
            at(call, [&] { refuse(*callee); });
        if (state(*callee) == Visit::none)
            visit(*callee);
    }

    // The call of an open function closes a cycle.
    [[noreturn]] void refuse(Function& callee) const {
        const auto cycle = make_range(find(path_, &callee), path_.end());
        const bool isByNumber = any_of(cycle, [](const Function* function) {
            return function->getName().starts_with(callByNumber);
        });
        throw TranslationError(
            isByNumber ? "This function may call itself through a pointer to a function."
                       : "Recursion is not supported in a shader.");
    }

    DenseMap<Function*, Visit> visits_;
    std::vector<Function*> path_; // the open functions
};

void inlineCall(CallBase& call) {
    if (mayMoveBody(call)) {
        moveBody(call);
        return;
    }
    InlineFunctionInfo info;
    if (InlineResult result = InlineFunction(call, info, false, nullptr, false);
        !result.isSuccess())
        throw CompilerFault(std::string("A call cannot be inlined: ") + result.getFailureReason());
}

static bool inlineCallees(Function& function, Optimiser& optimiser) {
    std::vector<CallBase*> calls;
    for (Instruction& instruction : instructions(function))
        if (auto* call = dyn_cast<CallBase>(&instruction);
            call && !call->getCalledFunction()->isDeclaration())
            calls.push_back(call);
    for (CallBase* call : calls) {
        if (mayMoveBody(*call))
            optimiser.forget(*call->getCalledFunction());
        inlineCall(*call);
    }
    return !calls.empty();
}

enum class State : std::uint8_t { raw, clean, unrolls };

// Brings the loops of the function into the form that can be unrolled.
static State prepareLoops(Function& function, Optimiser& optimiser) {
    if (function.size() == 1)
        return State::raw;
    optimiser.cleanLightly(function);
    if (countInIntegers(function, optimiser.analyses()))
        optimiser.forget(function);
    return optimiser.hasShortLoops(function) ? State::unrolls : State::clean;
}

static void makeSmall(Function& function, bool isRoot, Optimiser& optimiser) {
    const State state = prepareLoops(function, optimiser);
    const bool hadCalls = inlineCallees(function, optimiser);
    if (hadCalls)
        optimiser.forget(function);
    if (isRoot) // it is cleaned as part of its main
        return;
    const bool unrolls = state == State::unrolls, isRepeated = function.getNumUses() > 1;
    if ((unrolls || isRepeated) && state != State::raw && !hadCalls)
        optimiser.combine(function); // it has been cleaned just now
    else if (unrolls || isRepeated)
        optimiser.clean(function);
    if (unrolls)
        optimiser.unrollLoops(function);
    if (unrolls && isRepeated)
        optimiser.clean(function);
}

// Marks each function with the number of its copies that inlining makes. The roots are in the order
// as well, callers after their callees.
static void markCopies(ArrayRef<Function*> order, const DenseMap<Function*, bool>& roots) {
    DenseMap<const Function*, double> copies;
    for (Function* function : reverse(order)) {
        if (roots.contains(function))
            copies[function] = 1;
        const double own = std::min(copies[function], 1e6);
        if (own > 1)
            function->addFnAttr(copiesMark, std::to_string(own));
        for (Instruction& instruction : instructions(*function))
            if (auto* call = dyn_cast<CallBase>(&instruction))
                copies[call->getCalledFunction()] += own;
    }
}

static void dropBodies(Module& module, const DenseMap<Function*, bool>& roots,
                       Optimiser& optimiser) {
    for (Function& function : module) {
        if (function.isDeclaration() || roots.contains(&function))
            continue;
        optimiser.forget(function);
        function.dropAllReferences();
    }
    for (Function& function : make_early_inc_range(module))
        if (function.isDeclaration() && function.use_empty())
            function.eraseFromParent();
}

void inlineInto(Function& function, Optimiser& optimiser) {
    Order order;
    order.visit(function);
    for (Function* callee : order.functions)
        makeSmall(*callee, false, optimiser);
    optimiser.clean(function);
}

void inlineEverything(Module& module, const std::vector<Function*>& roots, Optimiser& optimiser) {
    Order order;
    DenseMap<Function*, bool> isRoot;
    for (Function* root : roots) {
        isRoot[root] = true;
        if (order.state(*root) == Visit::none)
            order.visit(*root);
    }
    markCopies(order.functions, isRoot);
    for (Function* function : order.functions)
        makeSmall(*function, isRoot.contains(function), optimiser);
    dropBodies(module, isRoot, optimiser);
}

} // namespace tarnwick::msl
