// The variable of each root of memory.

#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/AtomicSigns.h"
#include "TarnwickMSL/Translation/Wgsl/Memory.h"
#include "TarnwickMSL/Translation/Wgsl/Stage.h"

#include <llvm/Demangle/Demangle.h>

#include <cmath>

namespace tarnwick::msl::wgsl {

using namespace llvm;
using reading::Use;

// maxUniformBufferBindingSize of every device (WebGPU, 3.6.2 "Limits").
static constexpr std::uint64_t mostUniformBytes = 65536;

static std::uint64_t bytesOf(const DataLayout& layout, Type* type) {
    return layout.getTypeAllocSize(type).getFixedValue();
}

const InterfaceVariable* Memory::interfaceOf(const GlobalVariable& global) const {
    for (const InterfaceVariable& variable : shader_.interface)
        if (global.getName() == variable.global)
            return &variable;
    return nullptr;
}

Memory::Root& Memory::root(const Value* value) {
    std::unique_ptr<Root>& known = roots_[value];
    if (known)
        return *known;
    auto* global = dyn_cast<GlobalVariable>(value);
    if (!global)
        throw CompilerFault("A local variable is not declared at the start of the function.");
    known = std::make_unique<Root>();
    Root& made = *known;
    made.interface = interfaceOf(*global);
    if (!made.interface) {
        if (isWritten(*global, body_.layout))
            makeWorkgroup(made, *global);
        else
            makeTable(made, *global);
        return made;
    }
    switch (made.interface->kind) {
    case InterfaceKind::workgroup:
        makeWorkgroup(made, *global);
        break;
    case InterfaceKind::input:
    case InterfaceKind::output:
        makeStage(made, *global);
        break;
    case InterfaceKind::payload:
        throw TranslationError("WGSL has no object and mesh functions.");
    case InterfaceKind::bufferAddresses:
        throw TranslationError("WGSL has no pointers in buffers.");
    case InterfaceKind::uniformBuffer:
    case InterfaceKind::storageBuffer:
    case InterfaceKind::pushConstant:
    case InterfaceKind::loopReport:
        makeBuffer(made, *global);
        break;
    }
    return made;
}

std::string Memory::contentType(const Root& root) {
    std::string element = body_.type(root.view.element, root.sign);
    if (root.isAtomic)
        element = "atomic<" + element + ">";
    if (!root.view.isArray)
        return element;
    const std::string length = !root.length.empty() ? root.length
                               : root.view.count    ? std::to_string(root.view.count)
                                                    : "";
    return "array<" + element + (length.empty() ? "" : ", " + length) + ">";
}

bool Memory::writesPointSize() const {
    return any_of(shader_.interface, [&](const InterfaceVariable& variable) {
        return variable.builtIn == "point_size" && shader_.module->getNamedGlobal(variable.global);
    });
}

// Before the code, which returns them. A vertex function must give a position.
void Memory::declareOutputs() {
    if (writesPointSize()) {
        const std::uint32_t binding = takeBinding_();
        pointSize_ = declarePoint(body_, binding);
        resources_.push_back(
            {.kind = ResourceKind::viewportSize, .binding = binding, .size = 2 * sizeof(float)});
    }
    bool hasPosition = shader_.stage != Stage::vertex;
    for (const InterfaceVariable& variable : shader_.interface) {
        const GlobalVariable* global = shader_.module->getNamedGlobal(variable.global);
        if (variable.kind != InterfaceKind::output || !global)
            continue;
        root(global);
        hasPosition |= variable.builtIn == "position";
    }
    if (!hasPosition)
        body_.addOutput("@builtin(position) position: vec4f");
}

void Memory::declareLocals() {
    for (const Instruction& instruction : shader_.main->getEntryBlock()) {
        auto* local = dyn_cast<AllocaInst>(&instruction);
        if (!local)
            continue;
        Type* type = local->getAllocatedType();
        localBytes_ += bytesOf(body_.layout, type);
        if (localBytes_ > mostLocalBytes)
            throw TranslationError("The local variables take more than " +
                                   std::to_string(mostLocalBytes) +
                                   " bytes, the maximum for a thread.");
        auto made = std::make_unique<Root>();
        made->view = fittingView(*local, type, false, body_.layout);
        made->name = body_.names.make(plainName(local->getName().str()));
        body_.line("var " + made->name + ": " + contentType(*made) + ";");
        roots_[local] = std::move(made);
    }
}

// Whether all floats of the table are numbers. Others cannot be written (WGSL, 8.3).
static bool isFinite(const Constant& value) {
    if (auto* number = dyn_cast<ConstantFP>(&value))
        return number->getValueAPF().isFinite();
    if (!value.getType()->isAggregateType() && !value.getType()->isVectorTy())
        return true;
    for (unsigned index = 0; const Constant* part = value.getAggregateElement(index); ++index)
        if (!isFinite(*part))
            return false;
    return true;
}

void Memory::makeTable(Root& made, const GlobalVariable& global) {
    if (!global.hasInitializer())
        throw TranslationError("The variable '" + demangle(global.getName()) +
                               "' is declared but not defined.");
    made.kind = Kind::constant;
    const Constant& value = *global.getInitializer();
    made.view = fittingView(global, global.getValueType(), false, body_.layout);
    if (!isFinite(value))
        made.view = {
            .element = body_.i32(),
            .isArray = true,
            .count = std::max<std::uint64_t>(1, bytesOf(body_.layout, global.getValueType()) / 4)};
    std::string text;
    if (made.view.isArray) {
        for (std::uint64_t part = 0; part < made.view.count; ++part)
            text += (part ? ", " : "") +
                    body_.constant(elementOf(global, made.view.element, part, body_.layout)).text;
        text = contentType(made) + "(" + text + ")";
    } else {
        text = body_.constant(&value).text;
    }
    const std::string name = demangle(global.getName().str());
    made.name = body_.names.make(plainName(name.substr(name.rfind(':') + 1)));
    body_.declare("var<private> " + made.name + ": " + contentType(made) + " = " + text + ";\n");
}

// An atomic value of WGSL has a sign, and all accesses to it are atomic. So memory with atomic
// values is an array of atomic words.
void Memory::noteAtomics(Root& made, const std::vector<Use>& uses, const Value& value) {
    if (none_of(uses, [](const Use& use) { return use.isAtomic; }))
        return;
    made.isAtomic = true;
    made.sign = signOfAtomics(*shader_.main, value);
    const std::uint64_t bytes = made.view.count
                                    ? made.view.count * bytesOf(body_.layout, made.view.element)
                                : made.view.isArray ? 0
                                                    : bytesOf(body_.layout, made.view.element);
    const bool isOpen = made.view.isArray && !made.view.count;
    made.view = {.element = body_.i32(),
                 .isArray = true,
                 .count = isOpen ? 0 : std::max<std::uint64_t>(1, (bytes + 3) / 4),
                 .layout = made.view.layout};
}

void Memory::makeWorkgroup(Root& made, const GlobalVariable& global) {
    if (shader_.stage != Stage::kernel)
        throw TranslationError("Threadgroup memory is available in a kernel only.");
    made.isShared = true;
    const std::vector<Use> uses = usesOf(global, body_.layout);
    Type* type = global.getValueType();
    const std::uint64_t size = bytesOf(body_.layout, type);
    const std::string given = demangle(global.getName().str());
    const bool isArgument = made.interface != nullptr;
    const bool isOpen = isArgument && !made.interface->isReference && size;
    if (isOpen) {
        const View declared{.element = type, .isArray = true, .count = 0, .layout = Layout::plain};
        made.view = fittingView(global, declared, size, true, body_.layout);
        made.view.count = 0;
    } else {
        made.view = fittingView(global, type, true, body_.layout);
        threadgroupBytes_ += static_cast<std::uint32_t>(
            std::min<std::uint64_t>(size, UINT32_MAX - threadgroupBytes_));
    }
    made.view.isPacked = false;
    noteAtomics(made, uses, global);
    made.name = body_.names.make(isArgument && !made.interface->name.empty()
                                     ? made.interface->name
                                     : plainName(given.substr(given.rfind(':') + 1)));
    if (isOpen) {
        const std::uint32_t index = made.interface->index;
        const auto sharers = static_cast<std::uint32_t>(
            count_if(shader_.interface, [](const InterfaceVariable& variable) {
                return variable.kind == InterfaceKind::workgroup && !variable.isReference;
            }));
        threadgroupPointers_.push_back(index);
        const Expression bytes =
            body_.overridden(threadgroupLengthConstant(index), "bytesOf_" + made.name, "u32",
                             std::to_string(defaultThreadgroupBytes / sharers) + "u");
        made.length = "max(" + bytes.text + " / " +
                      std::to_string(bytesOf(body_.layout, made.view.element)) + "u, 1u)";
    }
    body_.declare("var<workgroup> " + made.name + ": " + contentType(made) + ";\n");
}

void Memory::makeStage(Root& made, const GlobalVariable& global) {
    const InterfaceVariable& interface = *made.interface;
    const bool isInput = interface.kind == InterfaceKind::input;
    Type* type = global.getValueType();
    made.view = {.element = type};
    made.kind = isInput ? Kind::constant : Kind::variable;
    if (isInput && isComputedBuiltIn(interface.builtIn)) {
        made.kind = Kind::computed;
        return;
    }
    if (interface.builtIn == "point_size") {
        made.name = pointSize_;
        return;
    }
    const StageValue value = declareStageValue(body_, interface, type);
    made.name = value.text;
    made.sign = value.sign;
    if (!isInput && shader_.stage == Stage::fragment && interface.builtIn.empty())
        colors_ |= 1u << interface.location;
}

static std::string wordBuffer(std::string_view name, std::uint32_t binding, std::string_view space,
                              std::string_view type) {
    return "@group(0) @binding(" + std::to_string(binding) + ") var<" + std::string(space) + "> " +
           std::string(name) + ": " + std::string(type) + ";\n";
}

// A uniform buffer is an array of vectors of four words, because WGSL aligns the elements of its
// arrays to 16 bytes. Every use must reach its lanes for certain.
bool Memory::makeUniform(Root& made, const GlobalVariable& global, const std::vector<Use>& uses) {
    const InterfaceVariable& interface = *made.interface;
    const bool isGrid = interface.kind == InterfaceKind::pushConstant;
    if (!isGrid && (interface.kind != InterfaceKind::uniformBuffer || !interface.isReference))
        return false;
    const std::uint64_t bytes =
        isGrid ? kernelPushConstantBytes : bytesOf(body_.layout, global.getValueType());
    const bool isReal = all_of(uses, [](const Use& use) { return use.type->isFPOrFPVectorTy(); });
    Type* lane = isReal ? body_.f32() : body_.i32();
    made.view = {.element = FixedVectorType::get(lane, 4),
                 .isArray = true,
                 .count = std::max<std::uint64_t>(1, (bytes + 15) / 16),
                 .layout = Layout::explicit_};
    return bytes <= mostUniformBytes && all_of(uses, [&](const Use& use) {
               const auto found = access(made.view, use.place, use.type, body_.layout);
               return found && isCertain(*found);
           });
}

void Memory::makeBuffer(Root& made, const GlobalVariable& global) {
    const InterfaceVariable& interface = *made.interface;
    const bool isReport = interface.kind == InterfaceKind::loopReport;
    const bool isGrid = interface.kind == InterfaceKind::pushConstant;
    if (isReport && shader_.stage == Stage::vertex) { // which may write no buffers
        made.kind = Kind::ignored;
        return;
    }
    const std::vector<Use> uses = usesOf(global, body_.layout);
    const bool isWritten = any_of(uses, [](const Use& use) { return use.isWrite; });
    made.isShared = true;
    made.isReport = isReport;
    if (isWritten && shader_.stage == Stage::vertex)
        throw TranslationError("WGSL has no vertex functions that write to buffers.");
    made.name =
        body_.names.make(isGrid                   ? "grid"
                         : isReport               ? "loopReport"
                         : interface.name.empty() ? "buffer" + std::to_string(interface.index)
                                                  : interface.name);
    const bool isUniform = makeUniform(made, global, uses);
    made.kind = isWritten ? Kind::buffer : Kind::constant;
    if (!isUniform) {
        made.view = commonView(uses, 4, global.getContext(), body_.layout);
        made.view.count = 0;
        made.view.layout = Layout::explicit_;
        const bool fitsAll = all_of(uses, [&](const Use& use) {
            const auto found = access(made.view, use.place, use.type, body_.layout);
            return found && suits(*found, use, true) && isCertain(*found);
        });
        if (!fitsAll)
            made.view.element = body_.i32();
        noteAtomics(made, uses, global);
    }
    made.resource = resources_.size();
    Resource resource{.kind = isGrid      ? ResourceKind::gridSize
                              : isReport  ? ResourceKind::loopReport
                              : isUniform ? ResourceKind::uniformBuffer
                                          : ResourceKind::storageBuffer,
                      .index = interface.index,
                      .binding = interface.binding,
                      .isWritten = isWritten};
    if (isUniform)
        resource.size = static_cast<std::uint32_t>(made.view.count * 16);
    else if (interface.isReference)
        resource.size = static_cast<std::uint32_t>(interface.elementBytes);
    resources_.push_back(resource);
    const std::string_view space = isUniform   ? "uniform"
                                   : isWritten ? "storage, read_write"
                                               : "storage, read";
    body_.declare(wordBuffer(made.name, interface.binding, space, contentType(made)));
}

} // namespace tarnwick::msl::wgsl
