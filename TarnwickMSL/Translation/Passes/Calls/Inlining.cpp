// Bodies are cleaned before they are copied into several callers: copies of raw ones took two
// thirds of all time. The body of a function with one call is moved; it is cleaned with its caller,
// or before, if loops of its own unroll and the caller is no entry point: an entry point is cleaned
// and unrolled as main, and doing the same before to the function that is most of it took a tenth
// of all time. Bodies that are copied can be kept for the next compilation (KeptFunctions.h), so
// the last of their calls gets a copy, too.
#include "TarnwickMSL/Translation/Passes/Calls/Inlining.h"

#include "TarnwickMSL/Translation/KeptFunctions.h"
#include "TarnwickMSL/Translation/Passes/Calls/BodyMove.h"
#include "TarnwickMSL/Translation/Passes/Calls/FunctionPointers.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"
#include "TarnwickMSL/Translation/Passes/Optimising/FloatCounters.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/DenseSet.h>
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
        SmallVector<Function*, 8> called;
        for (Instruction& instruction : instructions(function))
            if (auto* call = dyn_cast<CallBase>(&instruction))
                follow(*call, called);
        visits_[&function] = Visit::done;
        path_.pop_back();
        functions.push_back(&function);
        callees[&function] = std::move(called);
    }
    Visit state(Function& function) { return visits_[&function]; }

    std::vector<Function*> functions;
    DenseMap<const Function*, SmallVector<Function*, 8>> callees;

  private:
    void follow(CallBase& call, SmallVectorImpl<Function*>& called) {
        Function* callee = call.getCalledFunction();
        if (!callee)
            throw CompilerFault("A call through a pointer is left.");
        if (callee->isDeclaration())
            return;
        if (!is_contained(called, callee))
            called.push_back(callee);
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

static void copyBody(CallBase& call) {
    if (mayCopyBlock(call)) {
        copyBlock(call);
        return;
    }
    InlineFunctionInfo info;
    if (InlineResult result = InlineFunction(call, info, false, nullptr, false);
        !result.isSuccess())
        throw CompilerFault(std::string("A call cannot be inlined: ") + result.getFailureReason());
}

void inlineCall(CallBase& call) {
    if (mayMoveBody(call))
        moveBody(call);
    else
        copyBody(call);
}

namespace {

enum class State : std::uint8_t { raw, clean, unrolls };

// Cleans functions and inlines their callees, which it has taken before.
class Inlining {
  public:
    Inlining(const Order& order, Optimiser& optimiser) : order_(order), optimiser_(optimiser) {}

    void makeSmall(Function& function, bool isRoot);
    // The function is clean, and stays when it has been copied into its callers.
    void keep(Function& function) { kept_.insert(&function); }
    bool isKept(const Function& function) const { return kept_.contains(&function); }

  private:
    const Order& order_;
    Optimiser& optimiser_;
    DenseSet<const Function*> kept_, generated_;

    State prepareLoops(Function& function);
    bool inlineCallees(Function& function);
    void cleanAfterInlining(Function& function, State state, bool isRepeated, bool hadCalls);
    void decideWhetherToKeep(Function& function, State state, bool isRepeated);
};

} // namespace

// Brings the loops of the function into the form that can be unrolled.
State Inlining::prepareLoops(Function& function) {
    if (function.size() == 1)
        return State::raw;
    optimiser_.cleanLightly(function);
    if (countInIntegers(function, optimiser_.analyses()))
        optimiser_.forget(function);
    return optimiser_.hasShortLoops(function) ? State::unrolls : State::clean;
}

bool Inlining::inlineCallees(Function& function) {
    std::vector<CallBase*> calls;
    for (Instruction& instruction : instructions(function))
        if (auto* call = dyn_cast<CallBase>(&instruction);
            call && !call->getCalledFunction()->isDeclaration())
            calls.push_back(call);
    for (CallBase* call : calls) {
        if (isKept(*call->getCalledFunction())) {
            copyBody(*call);
            continue;
        }
        if (mayMoveBody(*call))
            optimiser_.forget(*call->getCalledFunction());
        inlineCall(*call);
    }
    return !calls.empty();
}

void Inlining::cleanAfterInlining(Function& function, State state, bool isRepeated, bool hadCalls) {
    const bool unrolls = state == State::unrolls;
    if ((unrolls || isRepeated) && state != State::raw && !hadCalls)
        optimiser_.combine(function); // it has been cleaned just now
    else if (unrolls || isRepeated)
        optimiser_.clean(function);
    if (unrolls)
        optimiser_.unrollLoops(function);
    if (unrolls && isRepeated)
        optimiser_.clean(function);
}

// A function with one caller is worth a copy if its loops were unrolled. If a function with several
// callers cannot be kept, its code is generated again, and so is that of all functions that contain
// it.
void Inlining::decideWhetherToKeep(Function& function, State state, bool isRepeated) {
    const auto callees = order_.callees.find(&function);
    const bool containsOthers = any_of(
        callees->second, [&](const Function* callee) { return generated_.contains(callee); });
    if ((isRepeated || state == State::unrolls) && !containsOthers && mayBeKept(function))
        keep(function);
    else if (isRepeated || containsOthers)
        generated_.insert(&function);
}

// The root that has the only call of the function, if there is such a root.
static Function* onlyRoot(Function& function) {
    auto* call = function.hasOneUse() ? dyn_cast<CallBase>(*function.user_begin()) : nullptr;
    return call && !call->getFunction()->hasLocalLinkage() ? call->getFunction() : nullptr;
}

void Inlining::makeSmall(Function& function, bool isRoot) {
    const State state = prepareLoops(function);
    const bool isRepeated = function.getNumUses() > 1;
    Function* root = onlyRoot(function);
    const bool hadCalls = inlineCallees(function);
    if (hadCalls)
        optimiser_.forget(function);
    if (root && state == State::unrolls)
        root->addFnAttr(unrollsMark);
    if (isRoot || root) // it is cleaned, and its loops are unrolled, as part of main
        return;
    cleanAfterInlining(function, state, isRepeated, hadCalls);
    decideWhetherToKeep(function, state, isRepeated);
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

// Calls from functions that no root reaches do not count.
static void dropUnreached(Module& module, Order& order, KeptFunctions* kept) {
    std::vector<Function*> others;
    for (Function& function : module) {
        if (function.isDeclaration() || order.state(function) != Visit::none)
            continue;
        if (kept && kept->has(function))
            others.push_back(&function);
        else
            function.deleteBody();
    }
    for (Function* function : others)
        kept->takeBack(*function);
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

// Notes the functions, callers first, and moves those that are kept out of the module.
static void take(KeptFunctions& kept, const Order& order, const Inlining& inlining,
                 Optimiser& optimiser) {
    for (Function* function : reverse(order.functions)) {
        KeptFunctions::Node node{.callees = {}, .isKept = inlining.isKept(*function)};
        for (const Function* callee : order.callees.find(function)->second)
            node.callees.push_back(callee->getName().str());
        if (node.isKept)
            optimiser.forget(*function);
        if (kept.has(*function))
            kept.takeBack(*function);
        else
            kept.take(*function, std::move(node));
    }
}

void inlineInto(Function& function, Optimiser& optimiser) {
    Order order;
    order.visit(function);
    Inlining inlining(order, optimiser);
    for (Function* callee : order.functions)
        inlining.makeSmall(*callee, false);
    optimiser.clean(function);
}

void inlineEverything(Module& module, const std::vector<Function*>& roots, Optimiser& optimiser,
                      KeptFunctions* kept) {
    if (kept)
        kept->moveTo(module);
    Order order;
    DenseMap<Function*, bool> isRoot;
    for (Function* root : roots) {
        isRoot[root] = true;
        if (order.state(*root) == Visit::none)
            order.visit(*root);
    }
    dropUnreached(module, order, kept);
    markCopies(order.functions, isRoot);
    Inlining inlining(order, optimiser);
    for (Function* function : order.functions)
        if (kept && kept->has(*function))
            inlining.keep(*function);
        else
            inlining.makeSmall(*function, isRoot.contains(function));
    if (kept)
        take(*kept, order, inlining, optimiser);
    dropBodies(module, isRoot, optimiser);
}

} // namespace tarnwick::msl
