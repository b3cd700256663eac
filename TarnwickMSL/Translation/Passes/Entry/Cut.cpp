#include "TarnwickMSL/Translation/Passes/Entry/Cut.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/Constants.h>
#include <llvm/IR/DebugInfo.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Module.h>
#include <llvm/Transforms/Utils/ValueMapper.h>

namespace tarnwick::msl {

using namespace llvm;

// Copies a global when the first use of it is met.
class Reached final : public ValueMaterializer {
  public:
    virtual ~Reached() = default;
    Reached(Module& module, ValueToValueMapTy& map) : module_(module), map_(map) {}

    Value* materialize(Value* value) override {
        if (auto* function = dyn_cast<Function>(value))
            return declaration(*function);
        if (auto* variable = dyn_cast<GlobalVariable>(value))
            return copy(*variable);
        return nullptr;
    }

  private:
    Value* declaration(const Function& from) {
        auto* made = Function::Create(from.getFunctionType(), GlobalValue::ExternalLinkage,
                                      from.getName(), module_);
        made->setAttributes(from.getAttributes());
        made->setCallingConv(from.getCallingConv());
        return made;
    }

    Value* copy(const GlobalVariable& from) {
        auto* made = new GlobalVariable(module_, from.getValueType(), from.isConstant(),
                                        GlobalValue::InternalLinkage, nullptr, from.getName(),
                                        nullptr, GlobalValue::NotThreadLocal, 0u);
        made->setAlignment(from.getAlign());
        made->setSection(from.getSection());
        map_[&from] = made;
        made->setInitializer(from.hasInitializer()
                                 ? MapValue(from.getInitializer(), map_, RF_None, nullptr, this)
                                 : UndefValue::get(from.getValueType()));
        return made;
    }

    Module& module_;
    ValueToValueMapTy& map_;
};

// LLVM requires every compile unit of a debug location in this list.
static void listUnits(Module& module) {
    DebugInfoFinder finder;
    finder.processModule(module);
    NamedMDNode* units = module.getOrInsertNamedMetadata("llvm.dbg.cu");
    for (DICompileUnit* unit : finder.compile_units())
        units->addOperand(unit);
    module.addModuleFlag(Module::Warning, "Debug Info Version", DEBUG_METADATA_VERSION);
}

static void copyGlobals(Function& function) {
    ValueToValueMapTy map;
    Reached reached(*function.getParent(), map);
    for (Instruction& instruction : instructions(function))
        for (Use& use : instruction.operands())
            if (isa<Constant>(use) && !isa<ConstantData>(use))
                use.set(MapValue(use.get(), map, RF_None, nullptr, &reached));
}

// Moving is far faster than cloning, and no later step reads the program's function.
static std::unique_ptr<Module> moved(Function& function) {
    const Module& from = *function.getParent();
    auto module = std::make_unique<Module>(function.getName(), from.getContext());
    module->setDataLayout(from.getDataLayout());
    module->setTargetTriple(from.getTargetTriple());
    function.removeFromParent();
    module->getFunctionList().push_back(&function);
    function.setLinkage(GlobalValue::InternalLinkage);
    copyGlobals(function);
    if (function.getSubprogram())
        listUnits(*module);
    return module;
}

static bool isShapedByConstants(const EntrySignature& entry) {
    auto isOpen = [](const auto& part) { return part.presence == Presence::open; };
    return any_of(entry.results, isOpen) || any_of(entry.arguments, [&](const auto& argument) {
               return isOpen(argument) || any_of(argument.values, isOpen);
           });
}

ShaderModule cut(Module& program, const EntrySignature& entry) {
    Function* function = program.getFunction(entry.symbol);
    if (!function || function->isDeclaration())
        throw TranslationError("The function '" + entry.name + "' is declared but not defined.");
    if (!function->use_empty())
        throw CompilerFault("The entry point '" + entry.name + "' is used by other code.");
    ShaderModule shader;
    shader.module = moved(*function);
    shader.name = entry.name;
    shader.stage = entry.stage;
    shader.earlyFragmentTests = entry.earlyFragmentTests;
    shader.coversAfterDepth = entry.coversAfterDepth;
    shader.mostThreads = entry.mostThreads;
    shader.patch = entry.patch;
    shader.controlPoints = entry.controlPoints;
    shader.topology = entry.topology;
    shader.mostVertices = entry.mostVertices;
    shader.mostPrimitives = entry.mostPrimitives;
    shader.isShapedByConstants = isShapedByConstants(entry);
    return shader;
}

} // namespace tarnwick::msl
