#include "tests/TarnwickMSL/FrontEnd/Parsing.h"

#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

namespace tarnwick::msl {

Outcome parsedWhole(const std::string& program) {
    static const StandardLibrary library = StandardLibrary::build();
    llvm::LLVMContext context;
    Parsed found = parse(program, library, context);
    return {std::move(found.entries), std::move(found.messages), found.failed};
}

Outcome parsed(const std::string& program) {
    return parsedWhole(
        "#include <metal_stdlib>\nusing namespace metal;\n#line 1 \"shader.metal\"\n" + program);
}

std::vector<std::pair<std::string, std::string>> corpus() {
    std::vector<std::pair<std::string, std::string>> programs;
    for (const auto& entry : std::filesystem::directory_iterator(TARNWICK_CORPUS)) {
        std::ifstream file(entry.path());
        programs.emplace_back(entry.path().stem(),
                              std::string{std::istreambuf_iterator<char>(file), {}});
    }
    std::ranges::sort(programs);
    return programs;
}

std::string codeAlone(std::string text) {
    static const std::regex other(R"(//[^\n]*|/\*[^]*?\*/|"[^"\n]*"|(^|\n)\s*#(\\\n|[^\n])*)");
    std::string code = text;
    for (std::sregex_iterator match(text.begin(), text.end(), other), end; match != end; ++match)
        std::replace_if(
            code.begin() + match->position(), code.begin() + match->position() + match->length(),
            [](char c) { return c != '\n'; }, ' ');
    return code;
}

std::string lineAndColumn(const std::string& text, std::size_t offset) {
    const auto place = text.begin() + static_cast<std::ptrdiff_t>(offset);
    const std::size_t start = offset == 0 ? std::string::npos : text.rfind('\n', offset - 1);
    return std::to_string(std::count(text.begin(), place, '\n') + 1) + ":" +
           std::to_string(start == std::string::npos ? offset + 1 : offset - start);
}

} // namespace tarnwick::msl
