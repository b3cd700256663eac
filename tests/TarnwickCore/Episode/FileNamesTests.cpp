#include "TarnwickCore/Episode/FileNames.h"

#include <gtest/gtest.h>

#include <set>

using namespace tarnwick;

TEST(FileNames, areSafe) {
    struct Row {
        std::string name, file;
    };
    const std::string accented = "e\u0301"; // one character, two code points
    std::string many, eighty;
    for (int count = 0; count < 100; ++count) {
        many += accented;
        if (count < 80)
            eighty += accented;
    }
    for (const Row& row : std::initializer_list<Row>{
             {"../My Shader!.txt", "My Shader-.metal"},
             {"...", "shader.metal"},
             {"", "shader.metal"},
             {"/", "shader.metal"},
             {"folder/waves.metal/", "waves.metal"},
             {" a_b-c.d.e ", "a_b-c.d.metal"},
             {"..hidden.txt", "hidden.metal"},
             {" .hidden.txt", "hidden.metal"},
             {"\u6ce2 7\u00bd\u0663", "\u6ce2 7\u00bd\u0663.metal"},
             {"sun\U0001f468\u200d\U0001f469\u200d\U0001f467\r\nset", "sun--set.metal"},
             {"\xff?", "--.metal"},
             {many, eighty + ".metal"},
             {std::string(79, 'x') + "  y", std::string(79, 'x') + ".metal"}})
        EXPECT_EQ(FileNames::safe(row.name), row.file) << row.name;
}

TEST(FileNames, countUpToTheFirstFreeName) {
    std::set<std::filesystem::path> taken{"a/Waves.metal", "a/Waves 2.metal", "a/v1.2.txt"};
    auto exists = [&](const std::filesystem::path& file) { return taken.contains(file); };
    EXPECT_EQ(FileNames::unique("Waves.metal", "a", exists), "a/Waves 3.metal");
    EXPECT_EQ(FileNames::unique("Waves", "a", exists), "a/Waves 3.metal");
    EXPECT_EQ(FileNames::unique("Waves.metal", "b", exists), "b/Waves.metal");
    EXPECT_EQ(FileNames::unique("v1.2.txt", "a", exists), "a/v1.2 2.txt");
}
