#include "TarnwickMSL/Translation/KeptFunctions.h"

#include <llvm/IR/Constants.h>
#include <llvm/IR/DerivedTypes.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>

#include <utility>

namespace tarnwick::msl {

using namespace llvm;

static bool hasRecord(const Type& type) {
    if (const auto* record = dyn_cast<StructType>(&type); record && !record->isLiteral())
        return true;
    return any_of(type.subtypes(), [](const Type* part) { return hasRecord(*part); });
}

static bool namesModule(const Value& operand) {
    if (hasRecord(*operand.getType()))
        return true;
    return isa<Constant>(operand) && !isa<ConstantData>(operand) && !isa<Function>(operand);
}

static bool mayBeKept(const Instruction& instruction) {
    if (hasRecord(*instruction.getType()) || instruction.getDebugLoc())
        return false;
    if (const auto* local = dyn_cast<AllocaInst>(&instruction))
        return !hasRecord(*local->getAllocatedType());
    if (const auto* step = dyn_cast<GetElementPtrInst>(&instruction))
        if (hasRecord(*step->getSourceElementType()))
            return false;
    return none_of(instruction.operands(), [](const Use& use) { return namesModule(*use); });
}

bool mayBeKept(const Function& function) {
    if (hasRecord(*function.getFunctionType()))
        return false;
    for (const llvm::Argument& argument : function.args())
        if (argument.hasPointeeInMemoryValueAttr())
            return false;
    return all_of(instructions(function),
                  [](const Instruction& instruction) { return mayBeKept(instruction); });
}

// Moves a function to another module, where it calls that module's built-in functions.
static void move(Function& function, Module& to) {
    function.removeFromParent();
    to.getFunctionList().push_back(&function);
    for (Instruction& instruction : instructions(function))
        for (Use& use : instruction.operands())
            if (auto* called = dyn_cast<Function>(use.get())) {
                Function* there = to.getFunction(called->getName());
                if (!there) {
                    there = Function::Create(called->getFunctionType(), called->getLinkage(),
                                             called->getName(), to);
                    there->copyAttributesFrom(called);
                }
                use.set(there);
            }
}

KeptFunctions::KeptFunctions() = default;
KeptFunctions::~KeptFunctions() = default;

void KeptFunctions::clear() {
    if (module_)
        old_.push_back(std::move(module_));
    nodes_.clear();
    results_.clear();
}

Symbols KeptFunctions::withCallers(Symbols functions) const {
    for (bool isGrowing = true; std::exchange(isGrowing, false);)
        for (const auto& [symbol, node] : nodes_)
            if (!functions.contains(symbol) && any_of(node.callees, [&](const auto& callee) {
                    return functions.contains(callee);
                }))
                isGrowing = functions.insert(symbol).second;
    return functions;
}

// Adds the function and those that it calls, unless they are kept.
void KeptFunctions::addGenerated(const std::string& symbol, Symbols& generated) const {
    const auto found = nodes_.find(symbol);
    if (found == nodes_.end() || found->second.isKept || !generated.insert(symbol).second)
        return;
    for (const std::string& callee : found->second.callees)
        addGenerated(callee, generated);
}

void KeptFunctions::forget(const std::string& symbol) {
    results_.erase(symbol);
    if (const auto found = nodes_.find(symbol); found != nodes_.end())
        found->second.isKept = false;
    if (Function* function = module_ ? module_->getFunction(symbol) : nullptr)
        function->eraseFromParent();
}

// The step `inline` treats a function by the number of its callers, so these are all generated, or
// none is: an entry point that shares a function with one that changes must be translated, too.
Symbols KeptFunctions::follow(const Symbols& changed) {
    Symbols generated;
    for (const std::string& symbol : withCallers(changed)) {
        forget(symbol);
        addGenerated(symbol, generated);
    }
    for (bool isGrowing = true; std::exchange(isGrowing, false);)
        for (auto entry = results_.begin(); entry != results_.end();) {
            const std::string symbol = (entry++)->first;
            Symbols reached;
            addGenerated(symbol, reached);
            if (none_of(reached, [&](const auto& one) { return generated.contains(one); }))
                continue;
            generated.merge(reached);
            results_.erase(symbol);
            isGrowing = true;
        }
    Symbols omitted;
    for (const auto& [symbol, node] : nodes_)
        if (!generated.contains(symbol))
            omitted.insert(symbol);
    return omitted;
}

void KeptFunctions::moveTo(Module& module) {
    if (!module_)
        return;
    for (Function& function : make_early_inc_range(*module_)) {
        Function* declared =
            function.isDeclaration() ? nullptr : module.getFunction(function.getName());
        if (!declared)
            continue;
        declared->deleteBody(); // a member function has one
        declared->replaceAllUsesWith(&function);
        declared->eraseFromParent();
        move(function, module);
    }
}

bool KeptFunctions::has(const Function& function) const {
    const auto found = nodes_.find(function.getName().str());
    return found != nodes_.end() && found->second.isKept;
}

void KeptFunctions::takeBack(Function& function) {
    move(function, *module_);
}

void KeptFunctions::take(Function& function, Node node) {
    std::string symbol = function.getName().str();
    if (node.isKept) {
        if (!module_)
            module_ = std::make_unique<Module>("kept", function.getContext());
        move(function, *module_);
    }
    nodes_.insert_or_assign(std::move(symbol), std::move(node));
}

const EntryPoint* KeptFunctions::result(const std::string& symbol) const {
    const auto found = results_.find(symbol);
    return found == results_.end() ? nullptr : &found->second;
}

void KeptFunctions::setResult(const std::string& symbol, const EntryPoint& result) {
    results_.insert_or_assign(symbol, result);
}

} // namespace tarnwick::msl
