#include "TarnwickMSL/Translation/FrontEnd/Entries.h"

#include "TarnwickMSL/Translation/FrontEnd/ArgumentBuffers.h"
#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"
#include "TarnwickMSL/Translation/FrontEnd/BuiltIns.h"
#include "TarnwickMSL/Translation/FrontEnd/Declarations.h"
#include "TarnwickMSL/Translation/FrontEnd/MeshArguments.h"
#include "TarnwickMSL/Translation/FrontEnd/Messages.h"
#include "TarnwickMSL/Translation/FrontEnd/StageRecords.h"

#include <clang/AST/Attr.h>
#include <clang/AST/DeclTemplate.h>
#include <clang/AST/GlobalDecl.h>
#include <clang/AST/RecordLayout.h>
#include <clang/Basic/Diagnostic.h>
#include <clang/Basic/SourceManager.h>
#include <clang/CodeGen/CodeGenABITypes.h>
#include <clang/CodeGen/ModuleBuilder.h>
#include <llvm/IR/GlobalValue.h>
#include <llvm/IR/Type.h>
#include <llvm/Support/raw_ostream.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

namespace tarnwick::msl {
namespace {

using clang::QualType;

class EntryReader {
  public:
    explicit EntryReader(clang::ASTContext& context) : context(context) {}

    void readFunction(const clang::FunctionDecl& function);
    std::vector<Entry> entries;

  private:
    clang::ASTContext& context;

    void error(clang::SourceLocation at, const char* message, llvm::StringRef first = "",
               llvm::StringRef second = "") {
        reportError(context.getDiagnostics(), at, message, first, second);
    }

    void readPatch(const clang::FunctionDecl& function, EntrySignature& signature);
    void readCoverage(const clang::FunctionDecl& function, EntrySignature& signature);
    void readStageIn(const clang::ParmVarDecl& parameter, const EntrySignature& signature,
                     Argument& argument);
    void readArgument(const clang::ParmVarDecl& parameter, EntrySignature& signature);
    bool readResource(const clang::ParmVarDecl& parameter, Argument& argument);
    void numberMembers(const clang::FunctionDecl& function, EntrySignature& signature);
    bool readBuiltIn(const clang::ParmVarDecl& parameter, EntrySignature& signature,
                     Argument& argument);
    void readResult(const clang::FunctionDecl& function, EntrySignature& signature);
    void numberResources(EntrySignature& signature);
    void reportSharedIndices(const clang::FunctionDecl& function, const EntrySignature& signature);
};

// A position in a triangle has three coordinates, one in a quad two.
bool fits(PatchKind patch, const StageValue& value) {
    return value.attribute != "position_in_patch" ||
           value.width == (patch == PatchKind::quad ? 2u : 3u);
}

// Textures, samplers, buffers, threadgroup memory and acceleration structures.
bool EntryReader::readResource(const clang::ParmVarDecl& parameter, Argument& argument) {
    const QualType type = parameter.getType();
    if (type->isPointerType() || type->isReferenceType()) {
        argument.kind = ArgumentKind::buffer;
        argument.isReference = type->isReferenceType();
        const bool isThreadgroup = metalAttribute(parameter, "msl_threadgroup").has_value();
        argument.space = isThreadgroup                             ? AddressSpace::threadgroup
                         : metalAttribute(parameter, "msl_device") ? AddressSpace::device
                                                                   : AddressSpace::constant;
        argument.isCoherent = metalAttribute(parameter, "msl_coherent").has_value();
        if (isThreadgroup)
            argument.kind = ArgumentKind::threadgroup;
        else if (argument.space == AddressSpace::constant &&
                 !type->getPointeeType().isConstQualified()) {
            error(parameter.getLocation(),
                  "pointer and reference arguments of entry points must be in the device, "
                  "constant or threadgroup address space");
        }
        if (!isThreadgroup && isArgumentBuffer(type->getPointeeType()))
            argument.members = argumentMembers(context, type->getPointeeType());
        readPointee(context, type->getPointeeType(), argument);
        return true;
    }
    const auto* record = type->getAsCXXRecordDecl();
    if (!record)
        return false;
    if (record->getName() == "sampler" &&
        !llvm::isa<clang::ClassTemplateSpecializationDecl>(record)) {
        argument.kind = ArgumentKind::sampler;
        return true;
    }
    const auto* made = llvm::dyn_cast<clang::ClassTemplateSpecializationDecl>(record);
    if (!made)
        return false;
    if (made->getName() == "acceleration_structure") {
        argument.kind = ArgumentKind::accelerationStructure;
        return true;
    }
    if (made->getName() == "array") {
        const auto* element = made->getTemplateArgs()[0].getAsType()->getAsCXXRecordDecl();
        const auto* texture =
            llvm::dyn_cast_if_present<clang::ClassTemplateSpecializationDecl>(element);
        argument.count =
            static_cast<std::uint32_t>(made->getTemplateArgs()[1].getAsIntegral().getZExtValue());
        if (element && !texture && element->getName() == "sampler") {
            argument.kind = ArgumentKind::sampler;
            return true;
        }
        return texture && readTexture(context, *texture, argument);
    }
    return readTexture(context, *made, argument);
}

bool EntryReader::readBuiltIn(const clang::ParmVarDecl& parameter, EntrySignature& signature,
                              Argument& argument) {
    for (const MetalAttribute& attribute : metalAttributes(parameter)) {
        const BuiltInWord* word = builtInWord(attribute.word);
        if (!word)
            continue;
        StageValue value;
        value.name = parameter.getName().str();
        value.attribute = attribute.word;
        const bool hasShape = readShape(context, parameter.getType(), value);
        if (!word->isInputOf(signature.stage, signature.patch))
            error(parameter.getLocation(),
                  "attribute '%0' is not valid for an input of a %1 function", attribute.word,
                  stageName(signature.stage));
        else if (!hasShape || !word->takes(value) || !fits(signature.patch, value))
            error(parameter.getLocation(), "type %0 is not valid for attribute '%1'",
                  "'" + parameter.getType().getAsString() + "'", attribute.word);
        else if (attribute.word == "color" && attribute.index >= mostColors)
            error(parameter.getLocation(), "'%0' has an index beyond %1", parameter.getName(),
                  std::to_string(mostColors - 1));
        value.index = attribute.index;
        for (const MetalAttribute& other : metalAttributes(parameter))
            value.interpolation = interpolationNamed(other.word).value_or(value.interpolation);
        argument.kind = ArgumentKind::builtIn;
        argument.values.push_back(std::move(value));
        return true;
    }
    return false;
}

void EntryReader::readStageIn(const clang::ParmVarDecl& parameter, const EntrySignature& signature,
                              Argument& argument) {
    argument.kind = ArgumentKind::stageIn;
    argument.index = 0;
    if (signature.stage == Stage::object || signature.stage == Stage::mesh)
        return error(parameter.getLocation(),
                     "attribute '%0' is not valid for an input of a %1 function", "stage_in",
                     stageName(signature.stage));
    const auto* record = parameter.getType()->getAsCXXRecordDecl();
    if (!record)
        error(parameter.getLocation(), "invalid type %0 for a stage_in argument",
              "'" + parameter.getType().getAsString() + "'");
    else
        argument.values =
            stageValues(context, *record, {.stage = signature.stage, .patch = signature.patch});
}

void EntryReader::readArgument(const clang::ParmVarDecl& parameter, EntrySignature& signature) {
    Argument argument;
    argument.name = parameter.getName().str();
    argument.presence = presenceOf(parameter);
    argument.index = ~0u; // no index in the source: numberResources assigns one
    argument.hasRasterOrder = metalAttribute(parameter, "raster_order_group").has_value();
    for (const char* word : {"buffer", "texture", "sampler", "threadgroup"})
        if (auto attribute = metalAttribute(parameter, word); attribute && attribute->hasIndex)
            argument.index = attribute->index;
    if (metalAttribute(parameter, "stage_in")) {
        readStageIn(parameter, signature, argument);
    } else if (readBuiltIn(parameter, signature, argument) ||
               readMeshArgument(context, parameter, signature, argument)) {
        argument.index = 0;
    } else if (!readResource(parameter, argument)) {
        error(parameter.getLocation(), "invalid type %0 for input declaration in a %1 function",
              "'" + parameter.getType().getAsString() + "'", stageName(signature.stage));
    }
    signature.arguments.push_back(std::move(argument));
}

static bool hasIndex(ArgumentKind kind) {
    switch (kind) {
    case ArgumentKind::buffer:
    case ArgumentKind::texture:
    case ArgumentKind::sampler:
    case ArgumentKind::threadgroup:
    case ArgumentKind::accelerationStructure:
        return true;
    case ArgumentKind::stageIn:
    case ArgumentKind::builtIn:
    case ArgumentKind::payload:
    case ArgumentKind::meshGrid:
    case ArgumentKind::mesh:
        break;
    }
    return false;
}

// The number of indices that an encoder has for the kind.
static std::uint32_t mostOf(ArgumentKind kind) {
    return kind == ArgumentKind::sampler   ? mostSamplers
           : kind == ArgumentKind::texture ? mostTextures
                                           : mostBuffers;
}

// The kind whose indices the argument has.
static ArgumentKind tableOf(const Argument& argument) {
    return argument.kind == ArgumentKind::accelerationStructure ? ArgumentKind::buffer
                                                                : argument.kind;
}

// After those of arguments, and of what else a host's tables have.
static std::uint32_t firstOf(ArgumentKind kind) {
    return kind == ArgumentKind::buffer    ? firstMemberBuffer
           : kind == ArgumentKind::texture ? firstMemberTexture
                                           : mostOf(kind);
}

// The members of argument buffers follow the arguments that an encoder has indices for.
void EntryReader::numberMembers(const clang::FunctionDecl& function, EntrySignature& signature) {
    std::map<ArgumentKind, std::uint32_t> next;
    for (std::size_t i = 0; i < signature.arguments.size(); ++i) {
        for (Argument& member : signature.arguments[i].members)
            if (member.kind != ArgumentKind::builtIn)
                member.index = firstOf(member.kind) + next[member.kind]++;
        if (signature.arguments[i].members.size() > mostMembers)
            error(function.getParamDecl(static_cast<unsigned>(i))->getLocation(),
                  "'%0' has more than %1 textures, samplers and pointers",
                  signature.arguments[i].name, std::to_string(mostMembers));
    }
}

// Reports indices that two arguments of one kind share, and indices out of range.
void EntryReader::reportSharedIndices(const clang::FunctionDecl& function,
                                      const EntrySignature& signature) {
    std::map<std::pair<ArgumentKind, std::uint32_t>, llvm::StringRef> known;
    for (std::size_t i = 0; i < signature.arguments.size(); ++i) {
        const Argument& argument = signature.arguments[i];
        if (!hasIndex(argument.kind) || argument.presence == Presence::no)
            continue;
        if (argument.index + argument.count > mostOf(argument.kind))
            error(function.getParamDecl(static_cast<unsigned>(i))->getLocation(),
                  "'%0' has an index beyond %1", argument.name,
                  std::to_string(mostOf(argument.kind) - 1));
        for (std::uint32_t n = 0; n < std::min(argument.count, mostTextures); ++n)
            if (!known.try_emplace({tableOf(argument), argument.index + n}, argument.name).second &&
                argument.presence == Presence::yes)
                error(function.getParamDecl(static_cast<unsigned>(i))->getLocation(),
                      "'%0' and '%1' have the same index", argument.name,
                      known[{tableOf(argument), argument.index + n}]);
    }
}

// Assigns the lowest free index of its kind to each argument without one, in order.
void EntryReader::numberResources(EntrySignature& signature) {
    for (Argument& argument : signature.arguments) {
        if (argument.index != ~0u || argument.presence == Presence::no)
            continue;
        std::uint32_t free = 0;
        auto isTaken = [&](const Argument& other) {
            return tableOf(other) == tableOf(argument) && other.presence != Presence::no &&
                   other.index != ~0u && other.index <= free && free < other.index + other.count;
        };
        while (std::any_of(signature.arguments.begin(), signature.arguments.end(), isTaken))
            ++free;
        argument.index = free;
    }
}

void EntryReader::readResult(const clang::FunctionDecl& function, EntrySignature& signature) {
    const QualType type = function.getReturnType();
    if (type->isVoidType())
        return;
    if (signature.stage == Stage::kernel)
        return error(function.getLocation(), "kernel must have void return type");
    if (hasThreadgroups(signature.stage))
        return error(function.getLocation(), "%0 function must have void return type",
                     stageName(signature.stage));
    StageValue value;
    if (readShape(context, type, value)) {
        value.attribute = signature.stage == Stage::vertex ? "position" : "color";
        if (!builtInWord(value.attribute)->takes(value))
            error(function.getLocation(), "type %0 is not valid for attribute '%1'",
                  "'" + type.getAsString() + "'", value.attribute);
        signature.results.push_back(std::move(value));
        return;
    }
    const auto* record = type->getAsCXXRecordDecl();
    if (!record) {
        error(function.getLocation(), "invalid return type %0 for %1 function",
              "'" + type.getAsString() + "'", stageName(signature.stage));
        return;
    }
    signature.resultIsRecord = true;
    signature.results =
        stageValues(context, *record, {.stage = signature.stage, .border = Border::result});
    const bool hasPosition =
        std::any_of(signature.results.begin(), signature.results.end(),
                    [](const StageValue& v) { return v.attribute == "position"; });
    if (signature.stage == Stage::vertex && !hasPosition)
        error(function.getLocation(),
              "invalid return type %0 for vertex function: no member has the 'position' attribute",
              "'" + type.getAsString() + "'");
}

// [[patch(triangle, n)]] and [[patch(quad, n)]] (Metal Shading Language 3.1, 5.1.1.1).
void EntryReader::readPatch(const clang::FunctionDecl& function, EntrySignature& signature) {
    constexpr std::uint32_t mostControlPoints = 32;
    const auto patch = metalAttribute(function, "patch");
    if (!patch)
        return;
    if (signature.stage != Stage::vertex)
        error(function.getLocation(), "attribute 'patch' is valid for a vertex function only");
    if (patch->text != "triangle" && patch->text != "quad")
        error(function.getLocation(), "the kind of a patch is triangle or quad");
    if (patch->index > mostControlPoints)
        error(function.getLocation(), "a patch has at most %0 control points",
              std::to_string(mostControlPoints));
    signature.patch = patch->text == "quad" ? PatchKind::quad : PatchKind::triangle;
    signature.controlPoints = patch->index;
}

// [[sample_mask, post_depth_coverage]] (Metal Shading Language 3.1, 5.2.3.4), of an argument or of
// a member of the stage_in record.
void EntryReader::readCoverage(const clang::FunctionDecl& function, EntrySignature& signature) {
    const auto isAfterDepth = [](const clang::Decl* declaration) {
        return metalAttribute(*declaration, "post_depth_coverage").has_value();
    };
    for (const clang::ParmVarDecl* parameter : function.parameters()) {
        const auto* record = metalAttribute(*parameter, "stage_in")
                                 ? parameter->getType()->getAsCXXRecordDecl()
                                 : nullptr;
        if (!isAfterDepth(parameter) && !(record && llvm::any_of(record->fields(), isAfterDepth)))
            continue;
        signature.coversAfterDepth = true;
        if (!signature.earlyFragmentTests)
            error(
                parameter->getLocation(),
                "attribute 'post_depth_coverage' requires the attribute 'early_fragment_tests' of "
                "the function");
    }
}

void EntryReader::readFunction(const clang::FunctionDecl& function) {
    EntrySignature signature;
    bool isEntry = false;
    for (const MetalAttribute& attribute : metalAttributes(function)) {
        llvm::StringRef word = attribute.word;
        word.consume_front("msl_");
        if (word == "early_fragment_tests")
            signature.earlyFragmentTests = true;
        if (word == "max_total_threads_per_threadgroup")
            signature.mostThreads = attribute.index;
        if (word == "host_name")
            signature.name = attribute.text;
        if (const auto stage = stageNamed(word)) {
            isEntry = true;
            signature.stage = *stage;
        }
    }
    if (!isEntry || !function.isThisDeclarationADefinition() || function.isInvalidDecl())
        return;
    if (signature.name.empty())
        signature.name = function.getQualifiedNameAsString();
    for (const Entry& other : entries)
        if (other.signature.name == signature.name)
            error(function.getLocation(), "another entry point has the name '%0'", signature.name);
    const clang::PresumedLoc place =
        context.getSourceManager().getPresumedLoc(function.getLocation());
    signature.place = std::string(place.getFilename()) + ":" + std::to_string(place.getLine()) +
                      ":" + std::to_string(place.getColumn());
    readPatch(function, signature);
    readCoverage(function, signature);
    for (const clang::ParmVarDecl* parameter : function.parameters())
        readArgument(*parameter, signature);
    numberResources(signature);
    reportSharedIndices(function, signature);
    numberMembers(function, signature);
    readResult(function, signature);
    entries.push_back({&function, std::move(signature)});
}

} // namespace

std::vector<Entry> readEntries(clang::ASTContext& context,
                               const std::vector<clang::Decl*>& program) {
    EntryReader reader(context);
    eachDeclaration<clang::FunctionDecl>(
        program, [&](const clang::FunctionDecl& function) { reader.readFunction(function); });
    return std::move(reader.entries);
}

void completeEntries(std::vector<Entry>& entries, clang::CodeGenerator& generator) {
    for (Entry& entry : entries) {
        entry.signature.symbol = symbolOf(*entry.function, generator);
        for (std::size_t i = 0; i < entry.signature.arguments.size(); ++i) {
            Argument& argument = entry.signature.arguments[i];
            if (argument.kind != ArgumentKind::buffer &&
                argument.kind != ArgumentKind::threadgroup &&
                argument.kind != ArgumentKind::payload)
                continue;
            const QualType pointee =
                entry.function->getParamDecl(static_cast<unsigned>(i))->getType()->getPointeeType();
            argument.elementType = memoryText(pointee, generator);
            if (!argument.members.empty())
                completeMembers(entry.function->getASTContext(), pointee, argument.members,
                                generator);
        }
    }
}

} // namespace tarnwick::msl
