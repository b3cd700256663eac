#include "tests/TarnwickMSL/CorpusProgram.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace tarnwick::corpus {

namespace {

gpu::Size size(const std::string& text) {
    gpu::Size size;
    char by = 'x';
    std::istringstream words(text);
    words >> size.width >> by >> size.height >> by >> size.depth;
    return {std::max(size.width, 1u), std::max(size.height, 1u), std::max(size.depth, 1u)};
}

void addNumbers(std::istringstream& words, std::vector<float>& numbers) {
    for (std::string word; words >> word;) {
        if (word == "|")
            continue;
        const std::size_t star = word.find('*');
        const std::size_t count = star == std::string::npos ? 1 : std::stoul(word);
        const std::string number = star == std::string::npos ? word : word.substr(star + 1);
        numbers.insert(numbers.end(), count, std::stof(number == "?" ? "nan" : number));
    }
}

Dispatch run(std::istringstream& words) {
    std::string kernel, grid = "1", threadgroup = "1";
    words >> kernel >> grid >> threadgroup;
    Dispatch given{kernel, size(grid), size(threadgroup), {}};
    if (gpu::Region region; words >> region.x >> region.y >> region.width >> region.height)
        given.stageIn = region;
    return given;
}

DrawCall draw(std::istringstream& words) {
    DrawCall call;
    std::string word;
    words >> word >> call.vertices;
    if (word == "patches")
        words >> call.controlPoints;
    call.type = word == "point"   ? gpu::PrimitiveType::point
                : word == "strip" ? gpu::PrimitiveType::triangleStrip
                                  : gpu::PrimitiveType::triangle;
    while (words >> word) {
        if (word == "depth")
            call.hasDepth = true;
        else if (word == "samples")
            call.hasSamples = true;
        else if (word == "twice")
            call.isTwice = true;
        else if (word == "sources")
            call.hasSources = true;
        else
            call.instances = static_cast<std::uint32_t>(std::stoul(word));
    }
    return call;
}

constexpr std::array<std::pair<std::string_view, gpu::TextureType>, 8> textureTypes{
    {{"1d", gpu::TextureType::type1D},
     {"1d_array", gpu::TextureType::type1DArray},
     {"2d", gpu::TextureType::type2D},
     {"2d_array", gpu::TextureType::type2DArray},
     {"3d", gpu::TextureType::type3D},
     {"cube", gpu::TextureType::typeCube},
     {"cube_array", gpu::TextureType::typeCubeArray},
     {"buffer", gpu::TextureType::typeTextureBuffer}}};

BoundTexture texture(std::istringstream& words) {
    BoundTexture texture;
    std::string shape, extent;
    words >> texture.index >> shape >> texture.component >> extent;
    for (const auto& [name, type] : textureTypes)
        if (shape == name)
            texture.descriptor.type = type;
    const gpu::Size given = size(extent);
    texture.descriptor.width = given.width;
    texture.descriptor.height = given.height;
    texture.descriptor.depth = given.depth;
    words >> texture.descriptor.arrayLength;
    if (words)
        words >> texture.descriptor.mipLevels;
    texture.descriptor.arrayLength = std::max(texture.descriptor.arrayLength, 1u);
    texture.descriptor.mipLevels = std::max(texture.descriptor.mipLevels, 1u);
    return texture;
}

void addAddress(gpu::SamplerDescriptor& descriptor, gpu::SamplerAddressMode mode) {
    descriptor.sAddressMode = descriptor.tAddressMode = descriptor.rAddressMode = mode;
}

BoundSampler sampler(std::istringstream& words) {
    BoundSampler sampler;
    gpu::SamplerDescriptor& how = sampler.descriptor;
    words >> sampler.index;
    for (std::string word; words >> word;)
        if (word == "linear")
            how.minFilter = how.magFilter = gpu::SamplerMinMagFilter::linear;
        else if (word == "mip_nearest")
            how.mipFilter = gpu::SamplerMipFilter::nearest;
        else if (word == "mip_linear")
            how.mipFilter = gpu::SamplerMipFilter::linear;
        else if (word == "repeat")
            addAddress(how, gpu::SamplerAddressMode::repeat);
        else if (word == "mirrored_repeat")
            addAddress(how, gpu::SamplerAddressMode::mirrorRepeat);
        else if (word == "clamp_to_zero")
            addAddress(how, gpu::SamplerAddressMode::clampToZero);
        else if (word == "less")
            how.compareFunction = gpu::CompareFunction::less;
        else if (word == "greater")
            how.compareFunction = gpu::CompareFunction::greater;
        else
            throw std::runtime_error("No @sampler of the corpus is " + word + ".");
    return sampler;
}

template <typename Value, std::size_t count>
Value named(const std::array<std::pair<std::string_view, Value>, count>& names,
            const std::string& word) {
    for (const auto& [name, value] : names)
        if (word == name)
            return value;
    throw std::runtime_error("The corpus has no name " + word + ".");
}

constexpr std::array<std::pair<std::string_view, gpu::VertexFormat>, 11> formats{
    {{"float", gpu::VertexFormat::float_},
     {"float2", gpu::VertexFormat::float2},
     {"float3", gpu::VertexFormat::float3},
     {"float4", gpu::VertexFormat::float4},
     {"half2", gpu::VertexFormat::half2},
     {"half4", gpu::VertexFormat::half4},
     {"short2", gpu::VertexFormat::short2},
     {"uchar4", gpu::VertexFormat::uchar4},
     {"uchar4Normalized", gpu::VertexFormat::uchar4Normalized},
     {"int", gpu::VertexFormat::int_},
     {"uint", gpu::VertexFormat::uint}}};

constexpr std::array<std::pair<std::string_view, gpu::StepFunction>, 9> steps{
    {{"constant", gpu::StepFunction::constant},
     {"vertex", gpu::StepFunction::perVertex},
     {"instance", gpu::StepFunction::perInstance},
     {"patch", gpu::StepFunction::perPatch},
     {"control_point", gpu::StepFunction::perPatchControlPoint},
     {"x", gpu::StepFunction::threadPositionInGridX},
     {"y", gpu::StepFunction::threadPositionInGridY},
     {"x_indexed", gpu::StepFunction::threadPositionInGridXIndexed},
     {"y_indexed", gpu::StepFunction::threadPositionInGridYIndexed}}};

void addAttribute(std::istringstream& words, gpu::VertexDescriptor& descriptor) {
    std::size_t index = 0;
    std::string format;
    words >> index >> format;
    gpu::AttributeDescriptor& attribute = descriptor.attributes.at(index);
    attribute.format = named(formats, format);
    words >> attribute.offset >> attribute.bufferIndex;
}

void addLayout(std::istringstream& words, gpu::VertexDescriptor& descriptor) {
    std::size_t index = 0;
    std::string step;
    words >> index;
    gpu::BufferLayoutDescriptor& layout = descriptor.layouts.at(index);
    words >> layout.stride >> step;
    layout.step = named(steps, step);
    if (std::uint32_t rate = 0; words >> rate)
        layout.stepRate = rate;
}

ConstantText constant(std::istringstream& words) {
    ConstantText constant;
    words >> constant.name;
    for (std::string word; words >> word;)
        constant.components.push_back(word == "true" ? "1" : word == "false" ? "0" : word);
    return constant;
}

Pixel pixel(std::istringstream& words) {
    Pixel pixel;
    std::string colon;
    words >> pixel.x >> pixel.y >> colon;
    if (colon != ":") {
        pixel.target = static_cast<std::uint32_t>(std::stoul(colon));
        words >> colon;
    }
    for (float& component : pixel.color)
        words >> component;
    if (!words || colon != ":" || pixel.x > 7 || pixel.y > 7)
        throw std::runtime_error("A @pixel has a column, a row, a colon and four components.");
    return pixel;
}

void takePromise(const std::string& line, Program& program) {
    std::istringstream words(line);
    std::string slashes, word;
    words >> slashes >> word;
    if (word == "@expects")
        addNumbers(words, program.expected);
    else if (word == "@within")
        words >> program.tolerance;
    else if (word == "@runs")
        program.runs.push_back(run(words));
    else if (word == "@draws")
        program.draws.push_back(draw(words));
    else if (word == "@texture")
        program.textures.push_back(texture(words));
    else if (word == "@target") {
        ColorTarget& made = program.targets.emplace_back();
        words >> made.index >> made.component;
    } else if (word == "@sampler")
        program.samplers.push_back(sampler(words));
    else if (word == "@attribute")
        addAttribute(words, program.attributes);
    else if (word == "@layout")
        addLayout(words, program.attributes);
    else if (word == "@constant")
        program.constants.push_back(constant(words));
    else if (word == "@refused")
        std::getline(words >> std::ws, program.refusal);
    else if (word == "@pixel")
        program.pixels.push_back(pixel(words));
    else if (word.starts_with('@'))
        throw std::runtime_error("No program of the corpus says " + word + ".");
}

Program read(const std::filesystem::path& path) {
    std::ifstream stream(path);
    Program program{.name = path.stem().string(),
                    .source = {std::istreambuf_iterator<char>(stream), {}}};
    std::istringstream lines(program.source);
    for (std::string line; std::getline(lines, line) && line.starts_with("//");)
        takePromise(line, program);
    if (!program.expected.empty() && program.runs.empty() && program.draws.empty())
        program.runs.push_back({.kernel = "check", .grid = {}, .threadgroup = {}});
    return program;
}

} // namespace

std::vector<Program> programsIn(const std::filesystem::path& folder) {
    std::vector<Program> programs;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".metal")
            programs.push_back(read(entry.path()));
    std::sort(programs.begin(), programs.end(),
              [](const Program& a, const Program& b) { return a.name < b.name; });
    return programs;
}

} // namespace tarnwick::corpus
