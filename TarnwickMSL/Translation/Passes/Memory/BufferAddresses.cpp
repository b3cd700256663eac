#include "TarnwickMSL/Translation/Passes/Memory/BufferAddresses.h"

#include <llvm/IR/IRBuilder.h>

#include <algorithm>

namespace tarnwick::msl {

using namespace llvm;

static constexpr const char* tableName = "msl.addresses";

bool BufferAddresses::has(const Value* root) const {
    auto* global = dyn_cast<GlobalVariable>(root);
    return global && any_of(shader_.interface, [&](const InterfaceVariable& variable) {
               return variable.global == global->getName() &&
                      (variable.kind == InterfaceKind::storageBuffer ||
                       variable.kind == InterfaceKind::uniformBuffer);
           });
}

// Entries: the indices of buffers.
std::uint64_t BufferAddresses::size() const {
    std::uint64_t count = mostBuffers;
    for (const ArgumentMember& member : shader_.members)
        if (member.kind == MemberKind::buffer)
            count = std::max<std::uint64_t>(count, member.index + 1);
    return count;
}

GlobalVariable* BufferAddresses::table() {
    Module& module = *shader_.module;
    if (GlobalVariable* known = module.getNamedGlobal(tableName))
        return known;
    Type* type = ArrayType::get(Type::getInt64Ty(module.getContext()), size());
    shader_.interface.push_back({.kind = InterfaceKind::bufferAddresses,
                                 .global = tableName,
                                 .builtIn = {},
                                 .elementBytes = module.getDataLayout().getTypeAllocSize(type),
                                 .isReference = true});
    return new GlobalVariable(module, type, false, GlobalValue::ExternalLinkage, nullptr, tableName,
                              nullptr, GlobalValue::NotThreadLocal, 0u);
}

Value* BufferAddresses::of(Value* root) {
    Value*& known = known_[root];
    if (known)
        return known;
    GlobalVariable* addresses = table();
    auto variable = find_if(shader_.interface, [&](const InterfaceVariable& each) {
        return each.global == root->getName();
    });
    BasicBlock& entry = shader_.main->getEntryBlock();
    IRBuilder<> atStart(&entry, entry.getFirstNonPHIOrDbgOrAlloca());
    Value* place = atStart.CreateConstInBoundsGEP2_32(addresses->getValueType(), addresses, 0,
                                                      variable->index);
    known = atStart.CreateLoad(atStart.getInt64Ty(), place);
    return known;
}

} // namespace tarnwick::msl
