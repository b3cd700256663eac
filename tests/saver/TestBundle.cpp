#include "tests/saver/TestBundle.h"

#include <fstream>

namespace tarnwick {

namespace fs = std::filesystem;

TestBundle::TestBundle(std::string_view shader, std::string_view settings) {
    fs::create_directory(folder_ / "Shader");
    const auto write = [&](const char* name, std::string_view text) {
        if (!text.empty())
            std::ofstream(folder_ / "Shader" / name, std::ios::binary) << text;
    };
    write("shader.metal", shader);
    write("saver.json", settings);
}

} // namespace tarnwick
