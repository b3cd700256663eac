// The variables of each root of memory: one, or several that show one buffer in several ways.

#include "TarnwickMSL/Translation/Reading/Views.h"
#include "TarnwickMSL/Translation/Spirv/Memory.h"
#include "TarnwickMSL/Translation/Spirv/Stage.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Demangle/Demangle.h>

namespace tarnwick::msl::spirv {

using namespace llvm;

// The smallest maxUniformBufferRange (Vulkan 1.3, table 53) of desktop devices.
static constexpr std::uint64_t uniformBytes = 65536;
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
    known = std::make_unique<Root>();
    Root& made = *known;
    if (auto* variable = dyn_cast<AllocaInst>(value)) {
        made.storage = spv::StorageClass::Function;
        makeLocal(made, *variable, variable->getAllocatedType());
        return made;
    }
    auto& global = *cast<GlobalVariable>(value);
    made.interface = interfaceOf(global);
    bool isShared = made.interface ? made.interface->kind == InterfaceKind::workgroup
                                   : isWritten(global, body_.types.dataLayout());
    if (isShared)
        makeWorkgroup(made, global);
    else if (made.interface && made.interface->kind == InterfaceKind::payload)
        makePayload(made, global);
    else if (!made.interface)
        makeTable(made, global);
    else if (made.interface->kind == InterfaceKind::input ||
             made.interface->kind == InterfaceKind::output)
        makeStage(made, global);
    else
        makeBuffer(made, global);
    return made;
}

static Id contentType(Body& body, const View& view) {
    Id element = body.types.inMemory(view.element, Layout::plain);
    return view.isArray ? body.types.array(element, static_cast<std::uint32_t>(view.count))
                        : element;
}

void Memory::makeLocal(Root& made, const Value& value, Type* type) {
    localBytes_ += body_.types.dataLayout().getTypeAllocSize(type).getFixedValue();
    if (localBytes_ > mostLocalBytes)
        throw TranslationError("The local variables take more than " +
                               std::to_string(mostLocalBytes) +
                               " bytes, the maximum for a thread.");
    View view = fittingView(value, type, false, body_.types.dataLayout());
    made.variables.push_back({view, body_.local(contentType(body_, view))});
}

// A table's bytes as elements of another type.
static SmallVector<std::uint32_t, 16> foldedTable(Body& body, const GlobalVariable& global,
                                                  const View& view) {
    SmallVector<std::uint32_t, 16> parts;
    for (std::uint64_t part = 0; part < view.count; ++part)
        parts.push_back(
            body.constants.of(elementOf(global, view.element, part, body.types.dataLayout())));
    return parts;
}

void Memory::makeTable(Root& made, const GlobalVariable& global) {
    if (!global.hasInitializer())
        throw TranslationError("The variable '" + demangle(global.getName()) +
                               "' is declared but not defined.");
    made.storage = spv::StorageClass::Private;
    View view = fittingView(global, global.getValueType(), false, body_.types.dataLayout());
    Id type = contentType(body_, view);
    Id value = view.isArray ? body_.constants.composite(type, foldedTable(body_, global, view))
                            : body_.constants.of(global.getInitializer());
    made.variables.push_back({view, body_.module.variable(made.storage, type, value)});
}

// The array that a [[threadgroup(n)]] pointer points to. The pipeline sets its length.
Memory::Variable Memory::workgroupArray(Root& made, const View& view) {
    std::uint32_t index = made.interface->index;
    auto stride =
        static_cast<std::uint32_t>(body_.types.dataLayout().getTypeAllocSize(view.element));
    auto sharers = static_cast<std::uint32_t>(
        llvm::count_if(shader_.interface, [](const InterfaceVariable& variable) {
            return variable.kind == InterfaceKind::workgroup && !variable.isReference;
        }));
    threadgroupPointers_.push_back(index);
    Id bytes = body_.constants.specialisation(threadgroupLengthConstant(index),
                                              defaultThreadgroupBytes / sharers);
    Id length = body_.module.declare(
        spv::Op::OpSpecConstantOp, body_.types.of(body_.i32()),
        {static_cast<std::uint32_t>(spv::Op::OpUDiv), bytes, body_.constants.word(stride)});
    Id element = body_.types.inMemory(view.element, Layout::plain);
    Id array = body_.module.type(spv::Op::OpTypeArray, {element, length});
    return {view, body_.module.variable(made.storage, array), false, length};
}

void Memory::makeWorkgroup(Root& made, const GlobalVariable& global) {
    if (!hasThreadgroups(shader_.stage))
        throw TranslationError("Threadgroup memory is available in a kernel, an object or a mesh "
                               "function only.");
    made.storage = spv::StorageClass::Workgroup;
    const DataLayout& layout = body_.types.dataLayout();
    Type* type = global.getValueType();
    std::uint64_t size = layout.getTypeAllocSize(type).getFixedValue();
    if (made.interface && !made.interface->isReference && size) {
        View declared{.element = type, .isArray = true, .count = 0, .layout = Layout::plain};
        View view = fittingView(global, declared, size, true, layout);
        view.count = 0;
        made.variables.push_back(workgroupArray(made, view));
        return;
    }
    View view = fittingView(global, type, true, layout);
    threadgroupBytes_ +=
        static_cast<std::uint32_t>(std::min<std::uint64_t>(size, UINT32_MAX - threadgroupBytes_));
    Id content = contentType(body_, view);
    Id zero = global.getSection() == "threadgroup.zero" ? body_.constants.nullOf(content) : Id{};
    made.variables.push_back({view, body_.module.variable(made.storage, content, zero)});
}

// An object function and a mesh function see the payload as the same type.
void Memory::makePayload(Root& made, const GlobalVariable& global) {
    made.storage = spv::StorageClass::TaskPayloadWorkgroupEXT;
    const DataLayout& layout = body_.types.dataLayout();
    const View declared{
        .element = global.getValueType(), .isArray = false, .count = 0, .layout = Layout::plain};
    const std::vector<Use> uses = usesOf(global, layout);
    const View view =
        all_of(uses, [&](const Use& use) { return fits(declared, use, true, layout); })
            ? declared
            : fittingView(global, global.getValueType(), true, layout);
    if (view.isArray)
        throw TranslationError("The payload is accessed in smaller parts than its members.");
    if (shader_.stage == Stage::mesh && isWritten(global, layout))
        throw TranslationError("A mesh function cannot write the payload.");
    made.variables.push_back({view, body_.module.variable(made.storage, contentType(body_, view))});
}

void Memory::makeStage(Root& made, const GlobalVariable& global) {
    const InterfaceVariable& interface = *made.interface;
    bool isInput = interface.kind == InterfaceKind::input;
    made.storage = isInput ? spv::StorageClass::Input : spv::StorageClass::Output;
    made.isComputed = isInput && isComputedBuiltIn(interface.builtIn);
    if (made.isComputed)
        return;
    StageVariable variable = declareStageVariable(body_, interface, global.getValueType());
    View view{.element = variable.type, .isArray = false, .count = 0, .layout = Layout::plain};
    made.variables.push_back({view, variable.id});
    if (isInput)
        return;
    if (shader_.stage == Stage::fragment && interface.builtIn.empty())
        colors_ |= 1u << interface.location;
    writesPointSize_ |= interface.builtIn == "point_size";
}

static ResourceKind resourceKind(InterfaceKind kind) {
    if (kind == InterfaceKind::uniformBuffer)
        return ResourceKind::uniformBuffer;
    if (kind == InterfaceKind::bufferAddresses)
        return ResourceKind::bufferAddresses;
    return kind == InterfaceKind::loopReport ? ResourceKind::loopReport
                                             : ResourceKind::storageBuffer;
}

void Memory::makeBuffer(Root& made, const GlobalVariable& global) {
    const InterfaceVariable& interface = *made.interface;
    bool isPush = interface.kind == InterfaceKind::pushConstant;
    bool isReport = interface.kind == InterfaceKind::loopReport;
    made.storage = isPush ? spv::StorageClass::PushConstant
                   : interface.kind == InterfaceKind::uniformBuffer ||
                           interface.kind == InterfaceKind::bufferAddresses
                       ? spv::StorageClass::Uniform
                       : spv::StorageClass::StorageBuffer;
    bool isOne = isPush || isReport || interface.isReference;
    if (!isPush) {
        Resource resource{.kind = resourceKind(interface.kind),
                          .index = interface.index,
                          .binding = interface.binding};
        if (interface.isReference)
            resource.size = static_cast<std::uint32_t>(interface.elementBytes);
        made.resource = resources_.size();
        resources_.push_back(resource);
    }
    View view{.element = global.getValueType(), .isArray = !isOne, .count = 0};
    view.layout = Layout::explicit_;
    addBlock(made, view);
}

// Whether the type has scalars of that size in explicit layout, which leaves padding out.
static bool holds(const Types& types, Type* type, unsigned bits) {
    if (auto* record = dyn_cast<StructType>(type)) {
        for (unsigned index = 0; index < record->getNumElements(); ++index)
            if (types.member(record, index, Layout::explicit_) &&
                holds(types, record->getElementType(index), bits))
                return true;
        return false;
    }
    if (type->isArrayTy())
        return holds(types, type->getArrayElementType(), bits);
    return type->getScalarSizeInBits() == bits;
}

void Memory::requireStorage(spv::StorageClass storage, Type* type) {
    bool isUniform = storage == spv::StorageClass::Uniform;
    if (holds(body_.types, type, 8))
        body_.module.require(isUniform ? spv::Capability::UniformAndStorageBuffer8BitAccess
                                       : spv::Capability::StorageBuffer8BitAccess);
    if (holds(body_.types, type, 16))
        body_.module.require(isUniform ? spv::Capability::UniformAndStorageBuffer16BitAccess
                                       : spv::Capability::StorageBuffer16BitAccess);
}

Id Memory::blockContent(const Root& root, const View& view) {
    Id element = body_.types.inMemory(view.element, Layout::explicit_);
    if (!view.isArray)
        return element;
    auto stride =
        static_cast<std::uint32_t>(body_.types.dataLayout().getTypeAllocSize(view.element));
    Id array = 0;
    if (root.storage == spv::StorageClass::StorageBuffer) {
        array = body_.module.type(spv::Op::OpTypeRuntimeArray, {element});
    } else {
        Id length = body_.constants.word(static_cast<std::uint32_t>(view.count));
        array = body_.module.type(spv::Op::OpTypeArray, {element, length});
    }
    body_.module.decorate(array, spv::Decoration::ArrayStride, {stride});
    return array;
}

Memory::Variable& Memory::addBlock(Root& root, View view) {
    std::uint64_t stride =
        std::max<std::uint64_t>(1, body_.types.dataLayout().getTypeAllocSize(view.element));
    bool isOpen = root.storage == spv::StorageClass::StorageBuffer;
    if (view.isArray && !isOpen) {
        std::uint64_t bytes =
            root.interface->isReference ? root.interface->elementBytes : uniformBytes;
        view.count = std::max<std::uint64_t>(1, bytes / stride);
    }
    requireStorage(root.storage, view.element);
    Id block = body_.module.block(blockContent(root, view));
    Id id = body_.module.variable(root.storage, block);
    if (root.storage != spv::StorageClass::PushConstant)
        body_.module.bind(id, root.interface->binding);
    root.variables.push_back({view, id, true});
    return root.variables.back();
}

Id Memory::computed(const Root& from, const Value* pointer, Type* type) {
    Place place = placeOf(pointer, body_.types.dataLayout());
    Id whole = computedBuiltIn(body_, from.interface->builtIn, [this] { return gridSize(); });
    Type* given = cast<GlobalVariable>(place.root)->getValueType();
    if (type == given)
        return whole;
    if (!type->isIntegerTy() || type->getScalarSizeInBits() > 32 || !place.terms.empty())
        throw CompilerFault("A built-in value is read as another type.");
    auto lane = static_cast<std::uint32_t>(place.offset / 4);
    Id word = given->isVectorTy()
                  ? body_.emit(spv::Op::OpCompositeExtract, body_.i32(), {whole, lane})
                  : whole;
    if (std::uint64_t bits = place.offset % 4 * 8)
        word = body_.emit(spv::Op::OpShiftRightLogical, body_.i32(),
                          {word, body_.constants.word(static_cast<std::uint32_t>(bits))});
    return body_.resized(type, body_.i32(), word, false);
}

void Memory::finish() {
    for (const auto& [value, root] : roots_) {
        bool isStorage = root->storage == spv::StorageClass::StorageBuffer;
        for (const Variable& variable : root->variables) {
            // The same memory may be reached by address.
            if (isStorage && !resources_[root->resource].isWritten && !storesByAddress_)
                body_.module.decorate(variable.id, spv::Decoration::NonWritable);
            if (isStorage && root->interface->isCoherent)
                body_.module.decorate(variable.id, spv::Decoration::Coherent);
            if (root->variables.size() > 1 || (isStorage && usesAddresses_))
                body_.module.decorate(variable.id, spv::Decoration::Aliased);
        }
    }
}

} // namespace tarnwick::msl::spirv
