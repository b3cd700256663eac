#include "TarnwickMSL/Translation/FrontEnd/Attributes.h"

#include <clang/AST/Attr.h>
#include <clang/AST/Decl.h>
#include <clang/AST/Expr.h>
#include <clang/Sema/ParsedAttr.h>
#include <clang/Sema/Sema.h>

#include <array>
#include <tuple>

namespace tarnwick::msl {
namespace {

using clang::ParsedAttr;
using clang::ParsedAttrInfo;
using Spelling = ParsedAttrInfo::Spelling;

constexpr llvm::StringRef prefix = "msl:";

constexpr std::array words = {
    // arguments of entry points and members of their records
    "buffer", "texture", "sampler", "threadgroup", "stage_in", "user", "color", "depth", "position",
    "point_size", "clip_distance", "flat", "center_perspective", "center_no_perspective",
    "centroid_perspective", "centroid_no_perspective", "sample_perspective",
    "sample_no_perspective", "invariant", "shared", "id", "index", "attribute", "function_constant",

    // built-in values
    "vertex_id", "instance_id", "base_vertex", "base_instance", "point_coord", "front_facing",
    "sample_id", "sample_mask", "primitive_id", "viewport_array_index", "render_target_array_index",
    "position_in_patch", "patch_id", "thread_position_in_grid", "thread_position_in_threadgroup",
    "thread_index_in_threadgroup", "threadgroup_position_in_grid", "threads_per_grid",
    "threads_per_threadgroup", "threadgroups_per_grid", "thread_index_in_simdgroup",
    "simdgroup_index_in_threadgroup", "threads_per_simdgroup", "simdgroups_per_threadgroup",
    "dispatch_threads_per_threadgroup", "thread_execution_width", "thread_index_in_quadgroup",
    "quadgroup_index_in_threadgroup", "quadgroups_per_threadgroup",
    "dispatch_simdgroups_per_threadgroup", "dispatch_quadgroups_per_threadgroup", "grid_size",
    "grid_origin", "amplification_id", "amplification_count", "barycentric_coord", "stencil",
    "raster_order_group", "post_depth_coverage", "primitive_culled", "payload",
    // functions
    "vertex", "fragment", "kernel", "early_fragment_tests", "max_total_threads_per_threadgroup",
    "host_name", "patch", "visible", "stitchable", "object", "mesh",
    "max_total_threadgroups_per_mesh_grid"};

// The spellings that Clang's parser accepts: Metal's words in double brackets, and the words of the
// token pass (msl_vertex ...) in GNU's form.
template <std::size_t... I> constexpr auto spellings(std::index_sequence<I...>) {
    return std::array{Spelling{ParsedAttr::AS_CXX11, words[I]}...,
                      Spelling{ParsedAttr::AS_GNU, "host_name"},
                      Spelling{ParsedAttr::AS_GNU, "msl_vertex"},
                      Spelling{ParsedAttr::AS_GNU, "msl_fragment"},
                      Spelling{ParsedAttr::AS_GNU, "msl_kernel"},
                      Spelling{ParsedAttr::AS_GNU, "msl_coherent"},
                      Spelling{ParsedAttr::AS_GNU, "msl_device"},
                      Spelling{ParsedAttr::AS_GNU, "msl_object_data"},
                      Spelling{ParsedAttr::AS_GNU, "msl_threadgroup"}};
}
constexpr auto allSpellings = spellings(std::make_index_sequence<words.size()>());

void reportError(clang::Sema& sema, clang::SourceLocation at, const char* message,
                 llvm::StringRef word) {
    clang::DiagnosticsEngine& diagnostics = sema.getDiagnostics();
    const unsigned id =
        diagnostics.getDiagnosticIDs()->getCustomDiagID(clang::DiagnosticIDs::Error, message);
    sema.Diag(at, id) << word;
}

// Returns a function constant without a value on which the expression depends, or null.
const clang::VarDecl* openConstant(const clang::Stmt* expression, unsigned depth = 0) {
    constexpr unsigned deepest = 64; // constants of constants
    if (!expression || depth > deepest)
        return nullptr;
    if (const auto* use = llvm::dyn_cast<clang::DeclRefExpr>(expression))
        if (const auto* variable = llvm::dyn_cast<clang::VarDecl>(use->getDecl())) {
            if (metalAttribute(*variable, "function_constant") && !variable->hasInit())
                return variable;
            if (const auto* found = openConstant(variable->getInit(), depth + 1))
                return found;
        }
    for (const clang::Stmt* part : expression->children())
        if (const auto* found = openConstant(part, depth))
            return found;
    return nullptr;
}

class MetalAttributeInfo : public ParsedAttrInfo {
  public:
    MetalAttributeInfo() {
        OptArgs = 2;
        Spellings = allSpellings;
    }

    AttrHandling handleDeclAttribute(clang::Sema& sema, clang::Decl* declaration,
                                     const ParsedAttr& attribute) const override {
        std::string tag = (prefix + attribute.getAttrName()->getName()).str();
        const bool isCondition = llvm::isa<clang::ParmVarDecl, clang::FieldDecl>(declaration) &&
                                 attribute.getAttrName()->isStr("function_constant");
        if (isCondition)
            appendCondition(sema, attribute, tag);
        for (unsigned i = 0; i < attribute.getNumArgs() && !isCondition; ++i)
            if (!appendArgument(sema, attribute, i, tag))
                return AttributeNotApplied;
        declaration->addAttr(
            clang::BTFDeclTagAttr::CreateImplicit(sema.Context, tag, attribute.getRange()));
        return AttributeApplied;
    }

  private:
    // Appends ":0", ":1", or ":open" if the condition depends on a constant without a value.
    static void appendCondition(clang::Sema& sema, const ParsedAttr& attribute, std::string& tag) {
        const clang::Expr* condition = attribute.getNumArgs() > 0 && attribute.isArgExpr(0)
                                           ? attribute.getArgAsExpr(0)
                                           : nullptr;
        bool value = false;
        if (openConstant(condition))
            tag += ":open";
        else if (condition && !condition->isValueDependent() &&
                 condition->EvaluateAsBooleanCondition(value, sema.Context))
            tag += value ? ":1" : ":0";
        else
            reportError(sema, attribute.getLoc(), "'%0' attribute requires a bool constant",
                        attribute.getAttrName()->getName());
    }

    // Appends ":4" or ":name" to the tag; ",4" for a second argument.
    static bool appendArgument(clang::Sema& sema, const ParsedAttr& attribute, unsigned i,
                               std::string& tag) {
        llvm::StringRef word = attribute.getAttrName()->getName();
        tag += i == 0 ? ":" : ",";
        if (attribute.isArgIdent(i)) {
            tag += attribute.getArgAsIdent(i)->Ident->getName();
            return true;
        }
        const clang::Expr* argument = attribute.getArgAsExpr(i)->IgnoreParenImpCasts();
        if (const auto* text = llvm::dyn_cast<clang::StringLiteral>(argument)) {
            tag += text->getString();
            return true;
        }
        clang::Expr::EvalResult value;
        if (const clang::VarDecl* constant = openConstant(argument)) {
            reportError(sema, argument->getBeginLoc(),
                        "the function constant '%0' requires a value when the program is "
                        "compiled, because the index of an argument depends on it",
                        constant->getName());
            return false;
        }
        if (argument->isValueDependent() || !argument->EvaluateAsInt(value, sema.Context)) {
            reportError(sema, argument->getBeginLoc(),
                        "'%0' attribute requires an integer constant", word);
            return false;
        }
        if (value.Val.getInt().isNegative() || value.Val.getInt().getActiveBits() > 16) {
            reportError(sema, argument->getBeginLoc(), "'%0' attribute parameter is out of bounds",
                        word);
            return false;
        }
        tag += llvm::toString(value.Val.getInt(), 10);
        return true;
    }
};

} // namespace

std::span<const char* const> attributeWords() {
    return words;
}

void registerAttributes() {
    static clang::ParsedAttrInfoRegistry::Add<MetalAttributeInfo> registration(
        "metal", "attributes of the Metal Shading Language");
}

std::vector<MetalAttribute> metalAttributes(const clang::Decl& declaration) {
    std::vector<MetalAttribute> found;
    for (const auto* tag : declaration.specific_attrs<clang::BTFDeclTagAttr>()) {
        llvm::StringRef text = tag->getBTFDeclTag();
        if (!text.consume_front(prefix))
            continue;
        auto [word, argument] = text.split(':');
        MetalAttribute attribute{.word = word.str(), .index = 0, .hasIndex = false, .text = ""};
        llvm::StringRef number = argument;
        if (word == "patch") // the one attribute with two arguments
            std::tie(argument, number) = argument.split(',');
        attribute.hasIndex = !number.empty() && !number.getAsInteger(10, attribute.index);
        if (!attribute.hasIndex || argument != number)
            attribute.text = argument.str();
        found.push_back(std::move(attribute));
    }
    return found;
}

std::optional<MetalAttribute> metalAttribute(const clang::Decl& declaration,
                                             const std::string& word) {
    for (MetalAttribute& attribute : metalAttributes(declaration))
        if (attribute.word == word)
            return std::move(attribute);
    return std::nullopt;
}

Presence presenceOf(const clang::Decl& declaration) {
    const auto condition = metalAttribute(declaration, "function_constant");
    if (condition && !condition->hasIndex)
        return Presence::open;
    return condition && condition->index == 0 ? Presence::no : Presence::yes;
}

} // namespace tarnwick::msl
