#include "TarnwickMSL/Translation/FrontEnd/MeshArguments.h"

#include "TarnwickMSL/Translation/FrontEnd/ArgumentBuffers.h"
#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"
#include "TarnwickMSL/Translation/FrontEnd/BuiltIns.h"
#include "TarnwickMSL/Translation/FrontEnd/StageRecords.h"

#include <clang/AST/ASTContext.h>
#include <clang/AST/DeclTemplate.h>
#include <clang/Basic/Diagnostic.h>

#include <algorithm>
#include <string>

namespace tarnwick::msl {
namespace {

using clang::QualType;

// The maxima of Metal's devices. Every Vulkan device with VK_EXT_mesh_shader has as many vertices;
// some have 256 primitives.
constexpr std::uint32_t mostVertices = 256, mostPrimitives = 512;

class MeshReader {
  public:
    MeshReader(clang::ASTContext& context, const clang::ParmVarDecl& parameter,
               EntrySignature& signature)
        : context(context), parameter(parameter), signature(signature) {}

    bool read(Argument& argument);

  private:
    clang::ASTContext& context;
    const clang::ParmVarDecl& parameter;
    EntrySignature& signature;

    void error(const char* message, const std::string& first = "", const std::string& second = "") {
        clang::DiagnosticsEngine& diagnostics = context.getDiagnostics();
        const unsigned id =
            diagnostics.getDiagnosticIDs()->getCustomDiagID(clang::DiagnosticIDs::Error, message);
        diagnostics.Report(parameter.getLocation(), id) << first << second;
    }
    void readPayload(Argument& argument);
    void readMesh(const clang::TemplateArgumentList& arguments);
    void addValues(QualType type, bool isOfPrimitive);
    void reportTwins();
};

void MeshReader::readPayload(Argument& argument) {
    const QualType type = parameter.getType();
    argument.kind = ArgumentKind::payload;
    argument.isReference = type->isReferenceType();
    if (signature.stage != Stage::object && signature.stage != Stage::mesh)
        return error("attribute 'payload' is valid for an argument of an object or mesh function "
                     "only");
    if (!type->isPointerType() && !type->isReferenceType())
        return error("invalid type %0 for a payload: it is a pointer or a reference",
                     "'" + type.getAsString() + "'");
    readPointee(context, type->getPointeeType(), argument);
    if (argument.elementBytes > mostPayloadBytes)
        error("the payload takes %0 bytes; the maximum is %1",
              std::to_string(argument.elementBytes), std::to_string(mostPayloadBytes));
}

// Two values that have the same name or the same attribute, one of vertices, one of primitives.
void MeshReader::reportTwins() {
    for (const StageValue& value : signature.results)
        for (const StageValue& other : signature.results)
            if (value.isOfPrimitive && !other.isOfPrimitive && value.name == other.name &&
                value.attribute == other.attribute)
                error("'%0' is a value of vertices and of primitives", value.name);
}

void MeshReader::addValues(QualType type, bool isOfPrimitive) {
    const auto* record = type->getAsCXXRecordDecl();
    if (!record)
        return error("invalid type %0 for the %1 of a mesh", "'" + type.getAsString() + "'",
                     isOfPrimitive ? "primitives" : "vertices");
    for (StageValue& value : stageValues(
             context, *record,
             {.stage = Stage::mesh, .border = Border::result, .isOfPrimitive = isOfPrimitive})) {
        value.isOfPrimitive = isOfPrimitive;
        signature.results.push_back(std::move(value));
    }
}

// mesh<V, P, NV, NP, topology>
void MeshReader::readMesh(const clang::TemplateArgumentList& arguments) {
    if (signature.stage != Stage::mesh)
        return error("a mesh is an argument of a mesh function only");
    if (signature.topology != Topology::none)
        return error("a mesh function has one mesh");
    const auto number = [&](unsigned i) {
        return static_cast<std::uint32_t>(arguments[i].getAsIntegral().getZExtValue());
    };
    signature.mostVertices = number(2);
    signature.mostPrimitives = number(3);
    // enum class topology { point, line, triangle }
    signature.topology =
        static_cast<Topology>(static_cast<std::uint32_t>(Topology::point) + number(4));
    const auto isWithin = [](std::uint32_t given, std::uint32_t most) {
        return given > 0 && given <= most;
    };
    if (!isWithin(signature.mostVertices, mostVertices))
        error("a mesh has 1 to %0 vertices", std::to_string(mostVertices));
    if (!isWithin(signature.mostPrimitives, mostPrimitives))
        error("a mesh has 1 to %0 primitives", std::to_string(mostPrimitives));
    addValues(arguments[0].getAsType(), false);
    if (std::ranges::none_of(signature.results,
                             [](const StageValue& value) { return value.attribute == "position"; }))
        error("no member of the vertices of a mesh has the 'position' attribute");
    if (!arguments[1].getAsType()->isVoidType())
        addValues(arguments[1].getAsType(), true);
    reportTwins();
}

bool MeshReader::read(Argument& argument) {
    if (metalAttribute(parameter, "msl_object_data") || metalAttribute(parameter, "payload")) {
        readPayload(argument);
        return true;
    }
    const auto* record = parameter.getType().getNonReferenceType()->getAsCXXRecordDecl();
    const auto* space =
        record ? llvm::dyn_cast<clang::NamespaceDecl>(record->getDeclContext()) : nullptr;
    if (!space || space->getName() != "metal")
        return false;
    if (record->getName() == "mesh_grid_properties") {
        argument.kind = ArgumentKind::meshGrid;
        if (signature.stage != Stage::object)
            error("mesh_grid_properties is an argument of an object function only");
        return true;
    }
    const auto* made = llvm::dyn_cast<clang::ClassTemplateSpecializationDecl>(record);
    if (!made || made->getName() != "msl_mesh")
        return false;
    argument.kind = ArgumentKind::mesh;
    readMesh(made->getTemplateArgs());
    return true;
}

} // namespace

bool readMeshArgument(clang::ASTContext& context, const clang::ParmVarDecl& parameter,
                      EntrySignature& signature, Argument& argument) {
    return MeshReader(context, parameter, signature).read(argument);
}

} // namespace tarnwick::msl
