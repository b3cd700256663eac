// Bodies are simplified before they go into their callers: raw ones took two thirds of all time.
// A function with one call site is only cleaned lightly, for its caller is cleaned again anyway;
// the full cleaning runs where its result is used twice or where loops of its own unroll.
#include "TarnwickMSL/Translation/Passes/Calls/Inlining.h"

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
    InlineFunctionInfo info;
    if (InlineResult result = InlineFunction(call, info, false, nullptr, false);
        !result.isSuccess())
        throw CompilerFault(std::string("A call cannot be inlined: ") + result.getFailureReason());
}

static bool inlineCallees(Function& function) {
    std::vector<CallBase*> calls;
    for (Instruction& instruction : instructions(function))
        if (auto* call = dyn_cast<CallBase>(&instruction);
            call && !call->getCalledFunction()->isDeclaration())
            calls.push_back(call);
    for (CallBase* call : calls)
        inlineCall(*call);
    return !calls.empty();
}

static void makeSmall(Function& function, bool isRoot, Optimiser& optimiser) {
    optimiser.cleanLightly(function);
    if (countInIntegers(function, optimiser.analyses()))
        optimiser.forget(function);
    bool unrolls = optimiser.hasShortLoops(function);
    if (inlineCallees(function))
        optimiser.forget(function);
    if (isRoot) // it is cleaned as part of its main
        return;
    if (unrolls || function.getNumUses() > 1)
        optimiser.clean(function);
    if (unrolls)
        optimiser.unrollLoops(function);
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
