#include "TarnwickCore/Service/LatestRelease.h"
#include "tests/Thrown.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

std::string document(const std::string& build, const std::string& url = "https://a.example/b") {
    return R"({"version":"1.2","build":)" + build + R"(,"url":")" + url + R"("})";
}

LatestRelease release(const std::string& build, const std::string& url = "https://a.example/b") {
    return LatestRelease::decode(document(build, url));
}

TEST(LatestRelease, isReadFromItsDocument) {
    EXPECT_EQ(LatestRelease::feed(), "https://media.tarnweb.example/app/latest.json");
    const LatestRelease plain{.version = "1.2", .build = 42, .url = "https://a.example/b"};
    for (const char* build : {"42", "\"42\"", "\"+42\"", "\"0042\"", "42.0"})
        EXPECT_EQ(release(build), plain) << build;
    EXPECT_EQ(release("\"-9223372036854775808\"").build, INT64_MIN);
    EXPECT_EQ(release("-9223372036854775808").build, INT64_MIN);
    EXPECT_EQ(release("9223372036854775807").build, INT64_MAX);
    const LatestRelease whole = LatestRelease::decode(
        R"({"version":"","build":1,"url":"x","sha256":"0a","notes":"é","other":[]})");
    EXPECT_EQ(whole.sha256, "0a");
    EXPECT_EQ(whole.notes, "é");
    EXPECT_EQ(
        LatestRelease::decode(R"({"version":"","build":1,"url":"x","sha256":null,"notes":null})")
            .sha256,
        std::nullopt);
}

TEST(LatestRelease, namesTheErrorInItsDocument) {
    std::vector<std::pair<std::string, const char*>> rows{
        {"", "it is not a JSON object"},
        {"{\"version\":\"\xFF\"}", "it is not a JSON object"},
        {std::string(200'000, '['), "it is not a JSON object"},
        {R"({"build":1,"url":"https://a.example/"})", "version is not text"},
        {R"({"version":"1","url":"https://a.example/"})", "build is not a number"},
        {R"({"version":"1","build":1})", "url is not text"},
        {document("1", ""), "url is not a URL"},
        {document("1", "https:b"), "url is not a URL"},
        {R"({"version":"1","build":1,"url":"x","sha256":1})", "sha256 is not text"},
        {R"({"version":"1","build":1,"url":"x","notes":{}})", "notes is not text"},
    };
    for (const char* build :
         {"\"4.2\"", "\" 42\"", "\"42 \"", "\"\"", "\"+\"", "\"-+4\"", "\"0x1\"", "4.2",
          "9223372036854775808", "\"9223372036854775808\"", "1e300", "null", "true", "[42]"})
        rows.emplace_back(document(build), "build is not a number");
    for (const auto& [text, description] : rows)
        EXPECT_EQ(thrownBy<LatestReleaseError>([&] { LatestRelease::decode(text); }),
                  "The release document cannot be read: " + std::string(description) + ".")
            << text.substr(0, 80);
}

TEST(LatestRelease, isNewerThanEarlierBuilds) {
    const LatestRelease newest = release("42");
    for (const char* current : {"41", "+41", "-1", "0"})
        EXPECT_TRUE(newest.isNewer(current)) << current;
    for (const char* current : {"42", "43", "abc", "", " 41", "4.1", "99999999999999999999"})
        EXPECT_FALSE(newest.isNewer(current)) << current;
    EXPECT_FALSE(release("9223372036854775807").isNewer("abc"));
    for (const char* url : {"http://a.example/b", "HTTPS://a.example/b", "a.example/b",
                            "//a.example/b", "https-x://a.example/b"})
        EXPECT_FALSE(release("42", url).isNewer("1")) << url;
}

} // namespace
} // namespace tarnwick
