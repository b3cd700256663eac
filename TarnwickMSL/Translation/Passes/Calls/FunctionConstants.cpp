#include "TarnwickMSL/Translation/Passes/Calls/FunctionConstants.h"

#include "TarnwickMSL/Translation/Passes/Calls/GlobalConstructors.h"
#include "TarnwickMSL/Translation/Passes/Calls/MemoryTypes.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/IR/Constants.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/ReplaceConstant.h>

namespace tarnwick::msl {

using namespace llvm;

static constexpr StringLiteral section = "function_constant";
static constexpr StringLiteral presenceQuery = "msl.function_constant_defined.1";

bool isLateConstant(const GlobalVariable& variable) {
    return variable.getSection() == section;
}

void makeLateConstant(GlobalVariable& variable) {
    variable.setLinkage(GlobalValue::InternalLinkage);
    variable.setConstant(false);
    if (!variable.hasInitializer())
        variable.setInitializer(Constant::getNullValue(variable.getValueType()));
    variable.setSection(section);
}

// The specialisation constant of that number, a call that the writer replaces.
static Value* specialisation(IRBuilder<>& builder, Module& program, Type* type,
                             std::uint32_t number) {
    std::string name = "msl.function_constant.";
    raw_string_ostream(name) << *type;
    FunctionCallee callee = program.getOrInsertFunction(name, type, builder.getInt32Ty());
    return builder.CreateCall(callee, builder.getInt32(number));
}

static void setValue(IRBuilder<>& builder, GlobalVariable& variable,
                     const ConstantSignature& constant) {
    Module& program = *variable.getParent();
    Type* type = constant.scalar == Scalar::bool_
                     ? builder.getInt1Ty()
                     : scalarType(builder.getContext(), constant.scalar);
    for (std::uint32_t component = 0; component < constant.width; ++component) {
        Value* value = specialisation(builder, program, type,
                                      functionConstantComponent(constant.index, component));
        if (type->isIntegerTy(1)) // a byte in memory
            value = builder.CreateZExt(value, builder.getInt8Ty());
        std::uint64_t bytes = program.getDataLayout().getTypeStoreSize(value->getType());
        builder.CreateStore(value, builder.CreateConstInBoundsGEP1_64(
                                       builder.getInt8Ty(), &variable, component * bytes));
    }
}

static void answerQueries(Module& program, const std::vector<ConstantSignature>& constants) {
    Function* query = program.getFunction(presenceQuery);
    if (!query)
        return;
    for (User* user : make_early_inc_range(query->users())) {
        auto* call = dyn_cast<CallInst>(user);
        if (!call)
            continue;
        at(*call, [&] {
            const auto* asked = call->getArgOperand(0)->stripPointerCasts();
            auto found = find_if(constants, [&](const ConstantSignature& constant) {
                return asked->getName() == constant.symbol;
            });
            if (found == constants.end())
                throw TranslationError(
                    "is_function_constant_defined requires the name of a function constant.");
            IRBuilder<> builder(call);
            call->replaceAllUsesWith(specialisation(builder, program, call->getType(),
                                                    functionConstantPresence(found->index)));
            call->eraseFromParent();
        });
    }
    if (query->use_empty())
        query->eraseFromParent();
}

void defineFunctionConstants(Module& program, const std::vector<ConstantSignature>& constants) {
    answerQueries(program, constants);
    Function* initialiser = nullptr;
    for (const ConstantSignature& constant : constants) {
        GlobalVariable* variable = program.getNamedGlobal(constant.symbol);
        if (!variable)
            continue;
        makeLateConstant(*variable);
        LLVMContext& context = program.getContext();
        if (!initialiser) {
            initialiser =
                Function::Create(FunctionType::get(Type::getVoidTy(context), false),
                                 GlobalValue::InternalLinkage, "msl.function_constants", program);
            initialiser->setDoesNotThrow();
            ReturnInst::Create(context, BasicBlock::Create(context, "entry", initialiser));
        }
        IRBuilder<> builder(initialiser->getEntryBlock().getTerminator());
        setValue(builder, *variable, constant);
    }
    if (!initialiser)
        return;
    std::vector<Function*> all = constructors(program);
    all.insert(all.begin(), initialiser);
    setConstructors(program, all);
}

// What the initialisers leave out is as the module has it.
static AllocaInst* localOf(const GlobalVariable& variable, Function& root) {
    BasicBlock& entry = root.getEntryBlock();
    IRBuilder<> builder(&entry, entry.getFirstNonPHIOrDbgOrAlloca());
    auto* local = builder.CreateAlloca(variable.getValueType(), nullptr, variable.getName());
    const DataLayout& layout = variable.getParent()->getDataLayout();
    local->setAlignment(variable.getPointerAlignment(layout));
    Constant* initial = const_cast<Constant*>(variable.getInitializer());
    if (!initial->isNullValue())
        builder.CreateStore(initial, local);
    else if (variable.getValueType()->isAggregateType())
        builder.CreateMemSet(local, builder.getInt8(0),
                             layout.getTypeAllocSize(variable.getValueType()), local->getAlign());
    else
        builder.CreateStore(initial, local);
    return local;
}

static bool isUsedIn(const GlobalVariable& variable, const Function& function) {
    return any_of(variable.users(), [&](const User* user) {
        auto* instruction = dyn_cast<Instruction>(user);
        return instruction && instruction->getFunction() == &function;
    });
}

void makeConstantsLocal(Module& program, ArrayRef<Function*> roots) {
    for (GlobalVariable& variable : make_early_inc_range(program.globals())) {
        if (!isLateConstant(variable))
            continue;
        convertUsersOfConstantsToInstructions({&variable});
        for (Function* root : roots) {
            if (!isUsedIn(variable, *root))
                continue;
            AllocaInst* local = localOf(variable, *root);
            variable.replaceUsesWithIf(local, [&](const Use& use) {
                auto* instruction = dyn_cast<Instruction>(use.getUser());
                return instruction && instruction->getFunction() == root;
            });
        }
    }
}

} // namespace tarnwick::msl
