#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickServe/SiteBuilder.h"
#include "tests/Waiting.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <mutex>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

// A text with "error" does not compile. The document has the text, and the value of a parameter.
EpisodeOutcome compiledForTests(const Episode& episode, const Settings& settings) {
    if (episode.text.find("error") != std::string::npos)
        return {.failure = episode.path + " does not compile.",
                .findings = {{.severity = "error",
                              .message = "<b>bad</b>",
                              .line = 2,
                              .column = 3,
                              .excerpt = "    2 | error\n",
                              .hint = "Mend it."}}};
    const auto value = settings.values.find("red");
    return {.document = json{{"text", episode.text},
                             {"red", value == settings.values.end() ? -1 : value->second}}
                            .dump()};
}

struct Built {
    TemporaryFolder folder;
    SiteNews news;
    std::unique_ptr<SiteBuilder> builder;
    std::mutex mutex;
    std::vector<std::string> order; // of compilations

    void start(const fs::path& place) {
        builder = std::make_unique<SiteBuilder>(SitePlace::of(place), compiledForTests, news,
                                                [this](const EpisodeReport& report) {
                                                    const std::scoped_lock lock(mutex);
                                                    order.push_back(report.name);
                                                });
    }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(folder.path() / name) << text;
    }
    // As many editors save: no reader sees a part.
    void save(const std::string& name, const std::string& text) const {
        write(name + ".new", text);
        fs::rename(folder.path() / (name + ".new"), folder.path() / name);
    }
    json resource(const std::string& path) const {
        const auto site = news.newest();
        const auto found = site->resources.find(path);
        return found == site->resources.end() ? json() : json::parse(*found->second.bytes);
    }
    bool becomes(const std::string& path, const json& pointer, const json& value) const {
        return eventually([&] {
            const json now = resource(path);
            return now.is_object() && now.value(pointer.get<std::string>(), json()) == value;
        });
    }
};

TEST(SiteBuilder, keepsTheLastPictureWhileATextHasErrors) {
    Built built;
    built.write("rose.metal", "one");
    built.start(built.folder.path() / "rose.metal");
    ASSERT_TRUE(built.becomes("d/rose.metal", "text", "one"));
    EXPECT_EQ(built.resource("s/rose.metal")["state"], "drawn");
    const json drawn = built.resource("s/rose.metal")["document"];

    built.save("rose.metal", "error");
    ASSERT_TRUE(built.becomes("s/rose.metal", "state", "faulty"));
    const json state = built.resource("s/rose.metal");
    EXPECT_EQ(state["failure"], "rose.metal does not compile.");
    EXPECT_EQ(state["document"], drawn);
    EXPECT_EQ(state["findings"], json::parse(R"([{"severity":"error","place":"rose.metal:2:3",
        "message":"<b>bad</b>","excerpt":"    2 | error\n","hint":"Mend it."}])"));
    EXPECT_EQ(built.resource("d/rose.metal")["text"], "one");

    fs::remove(built.folder.path() / "rose.metal"); // stays: editors remove and write
    built.write("rose.metal", "two");
    ASSERT_TRUE(built.becomes("d/rose.metal", "text", "two"));
    EXPECT_TRUE(built.becomes("s/rose.metal", "state", "drawn"));
    EXPECT_NE(built.resource("s/rose.metal")["document"], drawn);
    built.save("rose.metal", "one"); // the same text, so a page has its picture already
    ASSERT_TRUE(built.becomes("d/rose.metal", "text", "one"));
    EXPECT_EQ(built.resource("s/rose.metal")["document"], drawn);
    const auto site = built.news.newest();
    EXPECT_NE(site->resources.at("").bytes->find("data-episode=\"rose.metal\""), std::string::npos);
}

TEST(SiteBuilder, followsTheFolder) {
    Built built;
    built.write("a.metal", "a");
    fs::create_symlink("/etc/passwd", built.folder.path() / "link.metal");
    built.start(built.folder.path());
    ASSERT_TRUE(built.becomes("d/a.metal", "text", "a"));
    ASSERT_TRUE(built.becomes("s/link.metal", "state", "faulty"));
    EXPECT_EQ(built.resource("s/link.metal")["failure"],
              "link.metal cannot be shown: it is a link to a file outside the folder.");
    EXPECT_TRUE(built.resource("d/link.metal").is_null());

    built.save("b.metal", "// @episode 2 The \"other\"\nb");
    EXPECT_TRUE(built.becomes("s/b.metal", "title", "The \"other\""));
    fs::remove(built.folder.path() / "a.metal");
    EXPECT_TRUE(eventually([&] { return built.resource("site.json")["episodes"].size() == 2; }));
    EXPECT_TRUE(built.resource("s/a.metal").is_null());
    EXPECT_TRUE(built.resource("d/a.metal").is_null());
}

TEST(SiteBuilder, readsTheSettingsBesideAnEpisode) {
    Built built;
    built.write("rose.metal", "// @param red 0.5 0 1\n");
    built.start(built.folder.path() / "rose.metal");
    ASSERT_TRUE(built.becomes("d/rose.metal", "red", -1));
    built.save("rose.json", R"({"name":"x","values":{"red":0.25,"blue":1},"keys":{"tracks":{}}})");
    ASSERT_TRUE(built.becomes("d/rose.metal", "red", 0.25));
    const json warning = built.resource("s/rose.metal")["findings"][0];
    EXPECT_EQ(warning["place"], "rose.json");
    EXPECT_NE(warning["message"].get<std::string>().find("blue"), std::string::npos);
    built.save("rose.json", "{");
    EXPECT_TRUE(built.becomes("d/rose.metal", "red", -1));
    EXPECT_EQ(built.resource("s/rose.metal")["state"], "drawn");
}

TEST(SiteBuilder, compilesWhatWasSavedLastFirst) {
    Built built;
    for (const auto& [name, age] : {std::pair("a", 1), {"b", 3}, {"c", 2}}) {
        const std::string file = std::string(name) + ".metal";
        built.write(file, name);
        fs::last_write_time(built.folder.path() / file,
                            fs::file_time_type::clock::now() - std::chrono::hours(age));
    }
    built.start(built.folder.path());
    EXPECT_TRUE(eventually([&] {
        const std::scoped_lock lock(built.mutex);
        return built.order == std::vector<std::string>{"a.metal", "c.metal", "b.metal"};
    }));
}

TEST(SiteBuilder, writesNamesAndTextsWithoutMarkup) {
    Built built;
    const std::string name = "\"><script>&\xff.metal";
    built.write(name, "// @episode 1 </script><b>\n");
    built.start(built.folder.path());
    ASSERT_TRUE(built.becomes("s/" + name, "title", "</script><b>"));
    const auto site = built.news.newest();
    const std::string& page = *site->resources.at("e/" + name).bytes;
    EXPECT_NE(page.find("data-episode=\"%22%3E%3Cscript%3E%26%FF.metal\""), std::string::npos);
    EXPECT_EQ(page.find("<b>"), std::string::npos);
    EXPECT_EQ(built.resource("site.json")["episodes"][0]["address"],
              "%22%3E%3Cscript%3E%26%FF.metal");
}

} // namespace
} // namespace tarnwick
