#include "TarnwickCore/SwiftUIExport.h"

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Episode/ReservedWords.h"
#include "TarnwickCore/Episode/ShaderPieces.h"
#include "TarnwickCore/Service/ServiceHosts.h"
#include "TarnwickCore/SwiftUI/SwiftUIPieces.h"
#include "TarnwickCore/SwiftUI/SwiftUIView.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Pattern.h"
#include "TarnwickCore/Text/UTF8.h"

#include <initializer_list>

namespace tarnwick {
namespace {

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

std::string onOneLine(std::string_view title) {
    std::string line;
    for (const std::string_view part : linesOf(title))
        line.append(line.empty() ? "" : " ").append(part);
    return line;
}

// `name` with its first letter in lower case.
std::string functionNamed(std::string_view name) {
    std::string function(name);
    if (function.front() >= 'A' && function.front() <= 'Z')
        function.front() = static_cast<char>(function.front() - 'A' + 'a');
    return isReservedFunction(function) ? function + "Shader" : function;
}

// A colour effect has no constant address space.
std::string inThreadSpace(std::string_view source) {
    static const Pattern reference(R"(\bconstant\s+(Uniforms|Params)\s*&)");
    std::string text;
    std::size_t copied = 0;
    for (const auto& groups : reference.allMatches(source)) {
        const auto start = static_cast<std::size_t>(groups[0].data() - source.data());
        text.append(source, copied, start - copied);
        text.append("thread const ").append(groups[1]).append("&");
        copied = start + groups[0].size();
    }
    text.append(source.substr(copied));
    return text.ends_with('\n') ? text : text + '\n';
}

std::string argumentsFor(const std::vector<ParamDecl>& params) {
    std::string list;
    for (const ParamDecl& param : params)
        list += ", float p_" + param.name;
    return list;
}

std::string valuesFor(const std::vector<ParamDecl>& params) {
    if (params.empty())
        return "    p.unused = 0.0;";
    std::string lines;
    for (const ParamDecl& param : params)
        lines += (lines.empty() ? "    p." : "\n    p.") + param.name + " = p_" + param.name + ";";
    return lines;
}

std::string metalFile(const SwiftUIView& view, std::string_view source) {
    const std::string space = "tw_" + view.function;
    return joined({"// ",
                   view.title,
                   ", from Tarnwick (",
                   siteHost,
                   "), as a SwiftUI colour effect: ",
                   view.name,
                   pieces::metalInclusions,
                   space,
                   " {\n\n",
                   pieces::records,
                   ShaderAssembler::paramsBody(view.params),
                   "\n};\n\n",
                   inThreadSpace(source),
                   pieces::metalNamespaceEnd,
                   space,
                   pieces::metalStitchable,
                   view.function,
                   pieces::metalArguments,
                   argumentsFor(view.params),
                   ") {\n    ",
                   space,
                   pieces::metalUniforms,
                   space,
                   "::Params p;\n",
                   valuesFor(view.params),
                   pieces::metalCall,
                   space,
                   pieces::metalEnd});
}

std::string manifestFor(std::string_view name) {
    std::string text;
    for (const std::string_view piece : pieces::manifest)
        text.append(text.empty() ? "" : name).append(piece);
    return text;
}

} // namespace

SwiftUIExport::Problem SwiftUIExport::Problem::ofKind(ShaderKind kind) {
    return {Reason::kind, kind,
            joined({"A ", rawValue(kind),
                    " shader keeps state between frames or draws geometry, which a SwiftUI colour "
                    "effect can't. Copy as SwiftUI works with fragment shaders."})};
}

SwiftUIExport::Problem SwiftUIExport::Problem::ofInputs() {
    return {Reason::inputs, ShaderKind::fragment,
            "This shader reads Inputs (audio, images, the camera or the previous frame), which a "
            "SwiftUI colour effect doesn't have."};
}

SwiftUIExport::Output SwiftUIExport::make(std::string_view source, std::string_view title) {
    const Episode episode = Episode::of(wellFormedUTF8(source));
    if (episode.kind != ShaderKind::fragment)
        throw Problem::ofKind(episode.kind);
    if (episode.shader.usesInputs)
        throw Problem::ofInputs();
    const std::string name = typeName(title);
    const SwiftUIView view{.title = onOneLine(wellFormedUTF8(title)),
                           .name = name,
                           .function = functionNamed(name),
                           .params = episode.params()};
    return {.name = view.name,
            .function = view.function,
            .metal = metalFile(view, episode.text),
            .swift = view.text(SwiftUIView::Place::anyTarget),
            .packageSwift = view.text(SwiftUIView::Place::package),
            .packageManifest = manifestFor(view.name)};
}

} // namespace tarnwick
