#include "TarnwickWeb/Base64.h"
#include "TarnwickWeb/Runtime.h"
#include "TarnwickWeb/WebPage.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <string>

namespace tarnwick {
namespace {

constexpr std::string_view hostile = "</title></script><script>alert(1)</script>\"' onload=x&amp;";

std::size_t count(std::string_view text, std::string_view part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

std::string_view between(std::string_view text, std::string_view begin, std::string_view end) {
    const std::size_t from = text.find(begin);
    if (from == text.npos)
        return {};
    text.remove_prefix(from + begin.size());
    return text.substr(0, text.find(end));
}

TEST(WebPage, takesTextsOfTheEpisodeForText) {
    const std::string document = nlohmann::json{{"title", hostile}}.dump();
    const std::string page = webPage({.title = std::string(hostile),
                                      .teaches = std::string(hostile),
                                      .document = document,
                                      .fallback = WebFallback{"a\"b.jpg", "a<b.mp4"}});
    EXPECT_EQ(page.find("<script>alert"), page.npos);
    EXPECT_EQ(count(page, "<script"), 2U);
    EXPECT_EQ(count(page, "</script"), 2U);
    EXPECT_EQ(count(page, "</title>"), 1U);
    EXPECT_EQ(page.find("a\"b"), page.npos);
    EXPECT_EQ(page.find("a<b"), page.npos);
    const std::string_view embedded = between(page, "id=\"episode\">", "</script>");
    EXPECT_EQ(nlohmann::json::parse(embedded)["title"], hostile);

    const std::array entries{WebGalleryEntry{.title = std::string(hostile),
                                             .teaches = std::string(hostile),
                                             .address = "a\"b",
                                             .still = "\" onerror=\"x"}};
    const std::string gallery = webGallery(entries);
    EXPECT_EQ(count(gallery, "<script"), 1U);
    EXPECT_EQ(count(gallery, "</script"), 1U);
    EXPECT_EQ(gallery.find("onerror=\"x"), gallery.npos);
    EXPECT_EQ(gallery.find("a\"b"), gallery.npos);
}

TEST(WebPage, permitsOnlyItsOwnScript) {
    const std::string page = webPage({.title = "A", .document = "{}"});
    const std::string_view policy =
        between(page, "http-equiv=\"Content-Security-Policy\" content=\"", "\">");
    EXPECT_TRUE(policy.starts_with("default-src &#39;none&#39;;")) << policy;
    EXPECT_EQ(count(policy, "script-src &#39;sha256-"), 1U);
    EXPECT_EQ(policy.find("unsafe"), policy.npos);
    EXPECT_EQ(between(page, "<script type=\"module\">", "</script>"), webRuntime());
    // The name of a namespace is no request.
    EXPECT_EQ(count(page, "://"), count(page, "\"http://www.w3.org/2000/svg\""));
}

TEST(WebRuntime, isOneModuleWithoutDynamicCode) {
    const std::string_view runtime = webRuntime();
    for (const std::string_view part :
         {"\nimport ", "\nexport ", "eval(", "new Function", "innerHTML", "</script", "<!--"})
        EXPECT_EQ(runtime.find(part), runtime.npos) << part;
}

TEST(WebAddress, escapesWhatAddressesDoNotHave) {
    EXPECT_EQ(webAddress("rose-window_2.html"), "rose-window_2.html");
    EXPECT_EQ(webAddress("a b#?%:/\xc3\xa9.html"), "a%20b%23%3F%25%3A%2F%C3%A9.html");
    EXPECT_EQ(dataAddress("image/jpeg", "foob"), "data:image/jpeg;base64,Zm9vYg==");
}

// RFC 4648, 10.
TEST(Base64, hasTheFormOfTheStandard) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(base64("\xff\xfb\x00"), "//s=");
}

} // namespace
} // namespace tarnwick
