// The functions of include/tarnwick/msl.h that read results.
#include "TarnwickMSL/Capabilities.h"
#include "TarnwickMSL/SamplerBits.h"
#include "embedding/Library.h"

#include <algorithm>
#include <cstring>
#include <utility>

using namespace tarnwick;

tarnwick_msl_result::tarnwick_msl_result(msl::Compilation made) : compilation(std::move(made)) {
    for (const msl::EntryPoint& entry : compilation.entryPoints)
        capabilities.push_back(msl::capabilitiesOf(entry.words));
}

void tarnwick_msl_result::keepOnly(const std::vector<std::string>& names) {
    if (names.empty() || compilation.failed)
        return;
    const auto isThere = [&](const std::string& name) {
        return std::ranges::find(compilation.entryPoints, name, &msl::EntryPoint::name) !=
               compilation.entryPoints.end();
    };
    for (const std::string& name : names) {
        if (isThere(name))
            continue;
        compilation.failed = true;
        const std::string text = "the program has no entry point '" + name + "'";
        compilation.messages += "error: " + text + "\n";
        compilation.diagnostics.push_back({.file = {}, .text = text});
    }
    msl::Compilation kept = std::move(compilation);
    compilation = kept;
    compilation.entryPoints.clear();
    compilation.listings.clear();
    std::vector<std::vector<std::uint32_t>> all = std::exchange(capabilities, {});
    for (std::size_t i = 0; i < kept.entryPoints.size() && !kept.failed; ++i) {
        if (std::ranges::count(names, kept.entryPoints[i].name) == 0)
            continue;
        compilation.entryPoints.push_back(kept.entryPoints[i]);
        capabilities.push_back(all[i]);
        if (i < kept.listings.size())
            compilation.listings.push_back(kept.listings[i]);
    }
}

namespace {

template <class List> auto at(const List& list, size_t index) {
    return index < list.size() ? &list[index] : nullptr;
}

const msl::EntryPoint* entryOf(const tarnwick_msl_result* result, size_t index) {
    return result ? at(result->compilation.entryPoints, index) : nullptr;
}

const msl::ReflectedEntry* reflectedOf(const tarnwick_msl_result* result, size_t index) {
    const msl::EntryPoint* entry = entryOf(result, index);
    if (!entry)
        return nullptr;
    const auto& entries = result->compilation.reflection.entries;
    const auto found = std::ranges::find(entries, entry->name, &msl::ReflectedEntry::name);
    return found == entries.end() ? nullptr : &*found;
}

// Copies as much as the caller's record has. Members that this library does not know become zero.
template <class Record> int give(const Record& made, Record* to) {
    if (!to || to->struct_size < sizeof to->struct_size)
        return 0;
    const size_t size = to->struct_size, known = std::min(size, sizeof made);
    auto* const bytes = reinterpret_cast<unsigned char*>(to);
    std::memcpy(bytes + sizeof size, reinterpret_cast<const unsigned char*>(&made) + sizeof size,
                known - sizeof size);
    std::memset(bytes + known, 0, size - known);
    return 1;
}

uint32_t propertiesOf(const msl::EntryPoint& entry) {
    return (entry.usesLoopBudget ? TARNWICK_MSL_USES_LOOP_BUDGET : 0) |
           (entry.needsStandardSamples ? TARNWICK_MSL_NEEDS_STANDARD_SAMPLES : 0) |
           (entry.writesPointSize ? TARNWICK_MSL_WRITES_POINT_SIZE : 0) |
           (entry.storesByAddress ? TARNWICK_MSL_STORES_BY_ADDRESS : 0) |
           (entry.isShapedByConstants ? TARNWICK_MSL_SHAPED_BY_CONSTANTS : 0) |
           (entry.needsEightLanes ? TARNWICK_MSL_NEEDS_EIGHT_LANES : 0);
}

msl::ArgumentTable tableOf(msl::ResourceKind kind) {
    switch (kind) {
    case msl::ResourceKind::sampledTexture:
    case msl::ResourceKind::storageTexture:
        return msl::ArgumentTable::texture;
    case msl::ResourceKind::sampler:
        return msl::ArgumentTable::sampler;
    case msl::ResourceKind::accelerationStructure:
        return msl::ArgumentTable::accelerationStructure;
    case msl::ResourceKind::uniformBuffer:
    case msl::ResourceKind::storageBuffer:
    case msl::ResourceKind::constantSampler:
    case msl::ResourceKind::colorInput:
    case msl::ResourceKind::loopReport:
    case msl::ResourceKind::bufferAddresses:
    case msl::ResourceKind::gridSize:
    case msl::ResourceKind::viewportSize:
        break;
    }
    return msl::ArgumentTable::buffer;
}

bool isOfArgument(msl::ResourceKind kind) {
    return kind != msl::ResourceKind::constantSampler && kind != msl::ResourceKind::colorInput &&
           kind < msl::ResourceKind::loopReport;
}

const char* nameOf(const msl::ReflectedEntry* entry, const msl::Resource& resource) {
    if (entry && isOfArgument(resource.kind))
        for (const msl::ReflectedArgument& argument : entry->arguments)
            if (argument.table == tableOf(resource.kind) && argument.index <= resource.index &&
                resource.index < argument.index + argument.count)
                return argument.name.c_str();
    return "";
}

// The enumerations of the C interface have the values of those of the compiler.
template <class To, class From> To valueOf(From from) {
    return static_cast<To>(from);
}
static_assert(static_cast<int>(msl::Stage::mesh) == TARNWICK_MSL_MESH);
static_assert(static_cast<int>(msl::Scalar::uint64) == TARNWICK_MSL_ULONG);
static_assert(static_cast<int>(msl::PatchKind::quad) == TARNWICK_MSL_QUAD_PATCH);
static_assert(static_cast<int>(msl::ResourceKind::viewportSize) == TARNWICK_MSL_VIEWPORT_SIZE);
static_assert(static_cast<int>(msl::TextureShape::cubeArray) == TARNWICK_MSL_TEXTURE_CUBE_ARRAY);
static_assert(static_cast<int>(msl::TextureComponent::ulong_) == TARNWICK_MSL_ULONG_COMPONENT);
static_assert(static_cast<int>(msl::ArgumentTable::accelerationStructure) ==
              TARNWICK_MSL_ACCELERATION_STRUCTURE_TABLE);
static_assert(static_cast<int>(msl::Access::sample) == TARNWICK_MSL_SAMPLE);
static_assert(static_cast<int>(msl::MemberKind::sampler) == TARNWICK_MSL_MEMBER_SAMPLER);
static_assert(static_cast<int>(msl::DiagnosticKind::note) == TARNWICK_MSL_NOTE);
static_assert(msl::noRecord == TARNWICK_MSL_NO_RECORD);
static_assert(msl::loopBudgetConstant == TARNWICK_MSL_LOOP_BUDGET_CONSTANT);
static_assert(msl::threadgroupSizeConstants[0] == TARNWICK_MSL_WIDTH_CONSTANT);
static_assert(msl::viewCountConstant == TARNWICK_MSL_VIEWS_CONSTANT);
static_assert(msl::sampleCountConstant == TARNWICK_MSL_SAMPLES_CONSTANT);
static_assert(msl::threadgroupLengthConstant(3) == TARNWICK_MSL_THREADGROUP_CONSTANT(3));
static_assert(msl::functionConstantComponent(2, 1) == TARNWICK_MSL_FUNCTION_CONSTANT(2, 1));
static_assert(msl::functionConstantPresence(2) == TARNWICK_MSL_FUNCTION_CONSTANT_PRESENCE(2));
static_assert(msl::kernelPushConstantBytes == TARNWICK_MSL_KERNEL_PUSH_CONSTANT_BYTES);

} // namespace

const char* tarnwick_msl_result_messages(const tarnwick_msl_result* result) {
    return result ? result->compilation.messages.c_str() : nullptr;
}

int tarnwick_msl_result_diagnostic(const tarnwick_msl_result* result, size_t index,
                                   tarnwick_msl_diagnostic* diagnostic) {
    const msl::Diagnostic* found = result ? at(result->compilation.diagnostics, index) : nullptr;
    return found && give({.struct_size = 0,
                          .severity = valueOf<tarnwick_msl_severity>(found->kind),
                          .file = found->file.c_str(),
                          .line = found->line,
                          .column = found->column,
                          .length = found->length,
                          .message = found->text.c_str()},
                         diagnostic);
}

const char* tarnwick_msl_result_wgsl(const tarnwick_msl_result* result, size_t entry) {
    const msl::EntryPoint* found = entryOf(result, entry);
    return found && !found->text.empty() ? found->text.c_str() : nullptr;
}

int tarnwick_msl_result_override(const tarnwick_msl_result* result, size_t entry, size_t index,
                                 uint32_t* number) {
    const msl::EntryPoint* found = entryOf(result, entry);
    const msl::Override* constant = found ? at(found->overrides, index) : nullptr;
    if (!constant || !number)
        return 0;
    *number = constant->id;
    return 1;
}

const char* tarnwick_msl_result_format(const tarnwick_msl_result* result, size_t entry,
                                       size_t binding) {
    const msl::EntryPoint* found = entryOf(result, entry);
    const msl::Resource* resource = found ? at(found->resources, binding) : nullptr;
    return resource && !resource->format.empty() ? resource->format.c_str() : nullptr;
}

const char* tarnwick_msl_result_feature(const tarnwick_msl_result* result, size_t entry,
                                        size_t index) {
    const msl::EntryPoint* found = entryOf(result, entry);
    const std::string* feature = found ? at(found->features, index) : nullptr;
    return feature ? feature->c_str() : nullptr;
}

const char* tarnwick_msl_result_file(const tarnwick_msl_result* result, size_t index) {
    const std::string* found = result ? at(result->compilation.files, index) : nullptr;
    return found ? found->c_str() : nullptr;
}

int tarnwick_msl_result_entry_point(const tarnwick_msl_result* result, size_t index,
                                    tarnwick_msl_entry_point* entry) {
    const msl::EntryPoint* found = entryOf(result, index);
    if (!found)
        return 0;
    const auto& capabilities = result->capabilities[index];
    const std::string* listing = at(result->compilation.listings, index);
    return give({.struct_size = 0,
                 .name = found->name.c_str(),
                 .stage = valueOf<tarnwick_msl_stage>(found->stage),
                 .words = found->words.data(),
                 .word_count = found->words.size(),
                 .capabilities = capabilities.data(),
                 .capability_count = capabilities.size(),
                 .properties = propertiesOf(*found),
                 .color_attachments = found->colorAttachments,
                 .threadgroup_bytes = found->threadgroupBytes,
                 .most_threads = found->mostThreads,
                 .threadgroup_arguments = found->threadgroupPointers.data(),
                 .threadgroup_argument_count = found->threadgroupPointers.size(),
                 .patch = valueOf<tarnwick_msl_patch>(found->patch),
                 .control_points = found->controlPoints,
                 .listing = listing ? listing->c_str() : nullptr},
                entry);
}

int tarnwick_msl_result_binding(const tarnwick_msl_result* result, size_t entry, size_t index,
                                tarnwick_msl_binding* binding) {
    const msl::EntryPoint* of = entryOf(result, entry);
    const msl::Resource* found = of ? at(of->resources, index) : nullptr;
    return found && give({.struct_size = 0,
                          .kind = valueOf<tarnwick_msl_binding_kind>(found->kind),
                          .set = 0,
                          .binding = found->binding,
                          .index = found->index,
                          .name = nameOf(reflectedOf(result, entry), *found),
                          .bytes = found->size,
                          .is_written = found->isWritten,
                          .shape = valueOf<tarnwick_msl_texture_shape>(found->shape),
                          .component = valueOf<tarnwick_msl_component>(found->component),
                          .is_depth = found->isDepth,
                          .level = found->level,
                          .is_atomic = found->isAtomic,
                          .compares = (found->samplerState & msl::samplerComparesBit) != 0},
                         binding);
}

int tarnwick_msl_result_sampler(const tarnwick_msl_result* result, size_t entry, size_t binding,
                                tarnwick_msl_sampler* sampler) {
    const msl::EntryPoint* of = entryOf(result, entry);
    const msl::Resource* found = of ? at(of->resources, binding) : nullptr;
    if (!found || found->kind != msl::ResourceKind::constantSampler)
        return 0;
    const msl::SamplerState state = msl::unpackSampler(found->samplerState);
    return give({.struct_size = 0,
                 .coord = valueOf<uint32_t>(state.coord),
                 .address = {valueOf<uint32_t>(state.s), valueOf<uint32_t>(state.t),
                             valueOf<uint32_t>(state.r)},
                 .mag_filter = valueOf<uint32_t>(state.mag),
                 .min_filter = valueOf<uint32_t>(state.min),
                 .mip_filter = valueOf<uint32_t>(state.mip),
                 .border_color = valueOf<uint32_t>(state.border),
                 .compares = state.compares,
                 .compare = valueOf<uint32_t>(state.compare),
                 .max_anisotropy = state.maxAnisotropy,
                 .lod_min = state.lodMin,
                 .lod_max = state.lodMax},
                sampler);
}

int tarnwick_msl_result_argument(const tarnwick_msl_result* result, size_t entry, size_t index,
                                 tarnwick_msl_argument* argument) {
    const msl::ReflectedEntry* of = reflectedOf(result, entry);
    const msl::ReflectedArgument* found = of ? at(of->arguments, index) : nullptr;
    return found && give({.struct_size = 0,
                          .name = found->name.c_str(),
                          .table = valueOf<tarnwick_msl_table>(found->table),
                          .index = found->index,
                          .count = found->count,
                          .type = found->type.name.c_str(),
                          .bytes = found->type.bytes,
                          .alignment = found->type.alignment,
                          .record = found->type.record,
                          .access = valueOf<tarnwick_msl_access>(found->access),
                          .is_constant = found->isConstant,
                          .is_reference = found->isReference},
                         argument);
}

int tarnwick_msl_result_argument_member(const tarnwick_msl_result* result, size_t entry,
                                        size_t index, tarnwick_msl_argument_member* member) {
    const msl::EntryPoint* of = entryOf(result, entry);
    const msl::ArgumentMember* found = of ? at(of->members, index) : nullptr;
    return found && give({.struct_size = 0,
                          .kind = valueOf<tarnwick_msl_member_kind>(found->kind),
                          .buffer = found->buffer,
                          .id = found->id,
                          .offset = found->offset,
                          .bytes = found->bytes,
                          .index = found->index,
                          .stride = found->stride},
                         member);
}

int tarnwick_msl_result_attribute(const tarnwick_msl_result* result, size_t entry, size_t index,
                                  tarnwick_msl_attribute* attribute) {
    const msl::EntryPoint* of = entryOf(result, entry);
    const msl::StageAttribute* found = of ? at(of->attributes, index) : nullptr;
    return found && give({.struct_size = 0,
                          .name = found->name.c_str(),
                          .index = found->index,
                          .scalar = valueOf<tarnwick_msl_scalar>(found->scalar),
                          .width = found->width,
                          .is_of_control_point = found->isOfControlPoint,
                          .fetch = found->fetch},
                         attribute);
}

int tarnwick_msl_result_constant(const tarnwick_msl_result* result, size_t entry, size_t index,
                                 tarnwick_msl_constant* constant) {
    const msl::EntryPoint* of = entryOf(result, entry);
    const msl::FunctionConstant* found = of ? at(of->constants, index) : nullptr;
    return found && give({.struct_size = 0,
                          .name = found->name.c_str(),
                          .index = found->index,
                          .scalar = valueOf<tarnwick_msl_scalar>(found->scalar),
                          .width = found->width,
                          .is_required = found->isRequired},
                         constant);
}

int tarnwick_msl_result_record(const tarnwick_msl_result* result, size_t index,
                               tarnwick_msl_record* record) {
    const msl::Record* found = result ? at(result->compilation.reflection.records, index) : nullptr;
    return found && give({.struct_size = 0,
                          .name = found->name.c_str(),
                          .bytes = found->bytes,
                          .alignment = found->alignment},
                         record);
}

int tarnwick_msl_result_record_member(const tarnwick_msl_result* result, size_t record,
                                      size_t index, tarnwick_msl_record_member* member) {
    const msl::Record* of = result ? at(result->compilation.reflection.records, record) : nullptr;
    const msl::RecordMember* found = of ? at(of->members, index) : nullptr;
    return found && give({.struct_size = 0,
                          .name = found->name.c_str(),
                          .type = found->type.name.c_str(),
                          .offset = found->offset,
                          .bytes = found->type.bytes,
                          .count = found->count,
                          .stride = found->stride,
                          .columns = found->type.columns,
                          .record = found->type.record,
                          .is_pointer = found->isPointer},
                         member);
}
