#include "tests/saver/TestBundle.h"

#include <cstdlib>
#include <fstream>

namespace tarnwick {

namespace fs = std::filesystem;

TestBundle::TestBundle(std::string_view shader, std::string_view settings) {
    std::string pattern = (fs::temp_directory_path() / "saver-test-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    fs::create_directory(folder_ / "Shader");
    const auto write = [&](const char* name, std::string_view text) {
        if (!text.empty())
            std::ofstream(folder_ / "Shader" / name, std::ios::binary) << text;
    };
    write("shader.metal", shader);
    write("saver.json", settings);
}

TestBundle::~TestBundle() {
    fs::remove_all(folder_);
}

} // namespace tarnwick
