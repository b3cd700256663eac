#include "TarnwickCore/ShaderAssembler.h"

#include "TarnwickCore/Episode/ShaderPieces.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/Pattern.h"

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <span>

namespace tarnwick {
namespace {

using Lines = std::span<const std::string_view>;

bool holds(std::string_view text, std::string_view word) {
    return text.find(word) != std::string_view::npos;
}

// An expression for lines, and a word that every matching line has. Searching for the word first
// avoids running the expression on nearly all lines.
struct LinePattern {
    std::string_view word;
    Pattern pattern;

    bool matchesAny(Lines lines) const {
        return std::any_of(lines.begin(), lines.end(), [this](std::string_view line) {
            return holds(line, word) && pattern.matchesIn(line);
        });
    }
};

// The expressions exist as long as the process.
const LinePattern& particlesDirective() {
    static const LinePattern directive{"@particles", Pattern(R"(^\s*//\s*@particles\s+(\d+)\s*$)")};
    return directive;
}

const LinePattern& gridDirective() {
    static const LinePattern directive{"@grid", Pattern(R"(^\s*//\s*@grid\s+(\d+)\s*$)")};
    return directive;
}

bool definesSound(Lines lines) {
    static const LinePattern definition{"sound", Pattern(R"(^\s*float2\s+sound\s*\()")};
    return definition.matchesAny(lines);
}

bool definesFade(Lines lines) {
    static const LinePattern definition{"fade", Pattern(R"(^\s*float4\s+fade\s*\()")};
    return definition.matchesAny(lines);
}

bool definesBackground(Lines lines) {
    static const LinePattern definition{"background", Pattern(R"(^\s*float4\s+background\s*\()")};
    return definition.matchesAny(lines);
}

// The number in the first line with the directive, at most `cap`.
std::int64_t directiveNumber(const LinePattern& directive, Lines lines, std::int64_t cap) {
    for (const std::string_view line : lines) {
        if (!holds(line, directive.word))
            continue;
        const auto groups = directive.pattern.firstMatch(line);
        if (!groups)
            continue;
        // Digits of other scripts match as well, but are not a number here.
        const std::string_view digits = (*groups)[1];
        const bool isAscii = digits.find_first_not_of("0123456789") == std::string_view::npos;
        constexpr std::int64_t beyondAnyCap = std::numeric_limits<std::int64_t>::max();
        return isAscii ? std::min(cap, integerOf(digits).value_or(beyondAnyCap)) : 0;
    }
    return 0;
}

bool usesInputs(Lines lines) {
    static const Pattern pattern(R"(float4\s+shade\s*\([^)]*\bInputs\b)");
    if (std::none_of(lines.begin(), lines.end(),
                     [](std::string_view line) { return holds(line, "Inputs"); }))
        return false;
    std::string code;
    for (const std::string_view line : lines)
        code.append(line.substr(0, line.find("//"))).push_back('\n');
    // A match never spans a closing parenthesis. So the text is divided there, and only parts with
    // all three words need the expression.
    for (std::size_t start = 0; start < code.size();) {
        const std::size_t end = std::min(code.find(')', start), code.size());
        const std::string_view stretch = std::string_view(code).substr(start, end - start);
        if (holds(stretch, "Inputs") && holds(stretch, "shade") && pattern.matchesIn(stretch))
            return true;
        start = end + 1;
    }
    return false;
}

void append(std::string& text, std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts)
        text += part;
}

std::string inputsTail() {
    std::string tail;
    append(tail, {pieces::fragmentOpening, ShaderAssembler::fragmentName, pieces::fragmentInputs,
                  std::to_string(ShaderAssembler::audioBuffer), pieces::fragmentSpectrum,
                  std::to_string(ShaderAssembler::spectrumTexture)});
    constexpr std::array<std::string_view, 5> names{"c0", "c1", "c2", "c3", "last"};
    std::uint32_t index = ShaderAssembler::spectrumTexture + 1;
    static_assert(ShaderAssembler::spectrumTexture + names.size() ==
                  ShaderAssembler::previousTexture);
    for (const std::string_view name : names)
        append(tail, {")]],\n                                texture2d<float> ", name,
                      " [[texture(", std::to_string(index++)});
    tail += pieces::fragmentInputsClosing;
    return tail;
}

void appendFragmentTail(std::string& text, bool usesInputs) {
    if (usesInputs) {
        static const std::string tail = inputsTail();
        text += tail;
        return;
    }
    append(text, {pieces::fragmentOpening, ShaderAssembler::fragmentName, pieces::fragmentPlain});
}

void appendGridTail(std::string& text, bool hasBackground) {
    append(text, {pieces::gridOpening, ShaderAssembler::meshVertexName, pieces::gridVertex,
                  ShaderAssembler::meshFragmentName, pieces::gridFragment});
    if (hasBackground)
        append(text,
               {pieces::nextFragment, ShaderAssembler::backgroundName, pieces::gridBackground});
    append(text, {pieces::nextFragment, ShaderAssembler::fragmentName, pieces::gridPicture});
}

void appendParticleTail(std::string& text, bool hasFade) {
    append(text,
           {pieces::particleOpening, ShaderAssembler::particleSizeName, pieces::particleSize,
            ShaderAssembler::spawnName, pieces::particleSpawn, ShaderAssembler::updateName,
            pieces::particleUpdate, ShaderAssembler::fadeName, pieces::particleFade,
            hasFade ? pieces::fadeByEpisode : pieces::fadeToNothing, pieces::dotRecord,
            ShaderAssembler::dotVertexName, pieces::dotVertex, ShaderAssembler::dotFragmentName,
            pieces::dotFragment, ShaderAssembler::fragmentName, pieces::particlePicture});
}

// The description of the episode, without the text of the program.
AssembledShader described(Lines lines) {
    AssembledShader shader;
    shader.params = ParamParser::parse(lines);
    shader.hasSound = definesSound(lines);
    shader.grid = directiveNumber(gridDirective(), lines, ShaderAssembler::maxGrid);
    if (shader.isMesh()) {
        shader.hasBackground = definesBackground(lines);
        return shader;
    }
    shader.particles = directiveNumber(particlesDirective(), lines, ShaderAssembler::maxParticles);
    if (shader.isParticles())
        shader.hasFade = definesFade(lines);
    else
        shader.usesInputs = usesInputs(lines);
    return shader;
}

std::string programText(std::string_view episode, const AssembledShader& shader) {
    std::string text;
    text.reserve(episode.size() + 8192);
    append(text,
           {pieces::headerOpening, pieces::records, ShaderAssembler::paramsBody(shader.params),
            pieces::headerVertex, ShaderAssembler::vertexName, pieces::headerClosing});
    if (shader.isParticles())
        text += pieces::trailsStruct;
    if (shader.usesInputs)
        text += pieces::inputsStruct;
    append(text, {"\n#line 1 \"", ShaderAssembler::fileName, "\"\n", episode});
    if (!episode.ends_with('\n'))
        text += '\n';
    if (shader.isMesh())
        appendGridTail(text, shader.hasBackground);
    else if (shader.isParticles())
        appendParticleTail(text, shader.hasFade);
    else
        appendFragmentTail(text, shader.usesInputs);
    if (shader.hasSound)
        append(text, {pieces::soundOpening, ShaderAssembler::soundName, pieces::soundKernel});
    return text;
}

} // namespace

AssembledShader ShaderAssembler::assemble(std::string_view source) {
    AssembledShader shader = described(linesOf(source));
    shader.source = programText(source, shader);
    return shader;
}

std::string ShaderAssembler::paramsBody(std::span<const ParamDecl> params) {
    if (params.empty())
        return "    float unused;";
    std::string body;
    for (const ParamDecl& param : params)
        append(body, {body.empty() ? "" : "\n", "    float ", param.name, ";"});
    return body;
}

std::int64_t ShaderAssembler::particleCount(std::string_view source) {
    return directiveNumber(particlesDirective(), linesOf(source), maxParticles);
}

std::int64_t ShaderAssembler::gridSize(std::string_view source) {
    return directiveNumber(gridDirective(), linesOf(source), maxGrid);
}

bool ShaderAssembler::definesSound(std::string_view source) {
    return tarnwick::definesSound(linesOf(source));
}

bool ShaderAssembler::usesInputs(std::string_view source) {
    return tarnwick::usesInputs(linesOf(source));
}

} // namespace tarnwick
