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
    return {kernel, size(grid), size(threadgroup)};
}

DrawCall draw(std::istringstream& words) {
    DrawCall call;
    std::string word;
    words >> word >> call.vertices;
    call.type = word == "point"   ? gpu::PrimitiveType::point
                : word == "strip" ? gpu::PrimitiveType::triangleStrip
                                  : gpu::PrimitiveType::triangle;
    while (words >> word) {
        if (word == "depth")
            call.hasDepth = true;
        else if (word == "samples")
            call.hasSamples = true;
        else
            call.instances = static_cast<std::uint32_t>(std::stoul(word));
    }
    return call;
}

Pixel pixel(std::istringstream& words) {
    Pixel pixel;
    std::string colon;
    words >> pixel.x >> pixel.y >> colon;
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
