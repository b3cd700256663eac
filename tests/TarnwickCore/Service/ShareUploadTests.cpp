#include "TarnwickCore/Service/Multipart.h"
#include "TarnwickCore/Service/ShareUpload.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <regex>

namespace tarnwick {
namespace {

ShareUpload sound() {
    return {.title = " Glow\n",
            .loop = std::string("\0\0\0\x08"
                                "ftyp",
                                8),
            .thumb = "\xFF\xD8\xFF"};
}

std::string repeated(const char* character, int count) {
    std::string text;
    while (count-- > 0)
        text += character;
    return text;
}

TEST(ShareUpload, listsItsProblemsInOrder) {
    const std::string title = "The title must be 1 to 80 characters.",
                      description = "The description must be at most 500 characters.",
                      source = "The source is over 200 KB.", loop = "The loop video is over 20 MB.",
                      thumb = "The thumbnail is over 1 MB.", mp4 = "The loop is not an MP4 file.",
                      jpeg = "The thumbnail is not a JPEG.", all = "The upload is over 25 MB.";
    struct Row {
        std::function<void(ShareUpload&)> change;
        std::vector<std::string> problems;
    };
    const char* flag = "\U0001F1E8\U0001F1ED"; // one character of two code points
    const std::vector<Row> rows{
        {[](ShareUpload&) {}, {}},
        {[](ShareUpload& it) { it.title = " \u00A0\n"; }, {title}},
        {[&](ShareUpload& it) { it.title = " " + repeated(flag, 80); }, {}},
        {[&](ShareUpload& it) { it.title = repeated(flag, 81); }, {title}},
        {[&](ShareUpload& it) { it.description = repeated(flag, 500); }, {}},
        {[](ShareUpload& it) { it.description = repeated("a", 500) + " "; }, {description}},
        {[](ShareUpload& it) { it.source = repeated("é", 100'000); }, {}},
        {[](ShareUpload& it) { it.source = repeated("é", 100'000) + "a"; }, {source}},
        {[](ShareUpload& it) { it.loop.resize(20'000'000); }, {}},
        {[](ShareUpload& it) { it.loop.resize(25'000'001); }, {loop, all}},
        {[](ShareUpload& it) { it.thumb.resize(1'000'001); }, {thumb}},
        {[](ShareUpload& it) { it.loop.resize(7); }, {mp4}},
        {[](ShareUpload& it) { it.thumb = "\xFF\xD8\xFE"; }, {jpeg}},
        {[](ShareUpload& it) { it = {}; }, {title, mp4, jpeg}},
        {[](ShareUpload& it) {
             it.params = {{"a", 0, -INFINITY, 1, ""}, {"b", NAN, 0, 1, ""}};
         },
         {"The parameter a has a number that is not finite.",
          "The parameter b has a number that is not finite."}},
    };
    for (std::size_t row = 0; row < rows.size(); ++row) {
        ShareUpload it = sound();
        rows[row].change(it);
        EXPECT_EQ(it.problems(), rows[row].problems) << "row " << row;
    }
}

TEST(ShareUpload, writesItsMembersAsSortedJSON) {
    ShareUpload upload = sound();
    EXPECT_EQ(upload.metaJSON(),
              R"({"description":"","forkedFrom":null,"kind":"fragment",)"
              R"("licence":"cc-by-nc-sa-4.0","params":[],"title":"Glow","visibility":"public"})");
    upload.description = "a \"b\"/\n\xFF";
    upload.licence = Licence::allRightsReserved;
    upload.visibility = Visibility::private_;
    upload.source = "// @particles 10\n// @forked-from episode-07/glow\n";
    upload.params = {{"speed", 0.1F, -1, 3e20F, "how fast"}, {"a", 16777216, 1e-7F, 2.5F, ""}};
    EXPECT_EQ(upload.metaJSON(),
              "{\"description\":\"a \\\"b\\\"/\\n\uFFFD\",\"forkedFrom\":\"episode-07/glow\","
              "\"kind\":\"particles\",\"licence\":\"arr\",\"params\":["
              R"({"default":0.1,"detail":"how fast","max":3e+20,"min":-1,"name":"speed"},)"
              R"({"default":16777216,"detail":"","max":2.5,"min":1e-07,"name":"a"}],)"
              R"("title":"Glow","visibility":"private"})");
    upload.params[0].max = INFINITY;
    EXPECT_THROW(upload.metaJSON(), ShareUploadError);
}

TEST(Multipart, laysOutItsPartsByteForByte) {
    Multipart form{.boundary = "B"};
    EXPECT_EQ(form.body(), "--B--\r\n");
    form.add("meta", std::nullopt, "application/json", "{}");
    form.add("note", "", "text/plain", "x");
    form.add("loop", "loop.mp4", "video/mp4", std::string("\r\n\0--", 5));
    EXPECT_EQ(form.body(),
              "--B\r\nContent-Disposition: form-data; name=\"meta\"\r\n"
              "Content-Type: application/json\r\n\r\n{}\r\n"
              "--B\r\nContent-Disposition: form-data; name=\"note\"; filename=\"\"\r\n"
              "Content-Type: text/plain\r\n\r\nx\r\n"
              "--B\r\nContent-Disposition: form-data; name=\"loop\"; filename=\"loop.mp4\"\r\n"
              "Content-Type: video/mp4\r\n\r\n" +
                  std::string("\r\n\0--", 5) + "\r\n--B--\r\n");
    EXPECT_EQ(form.contentType(), "multipart/form-data; boundary=B");
}

TEST(Multipart, makesAnotherBoundaryEachTime) {
    const std::string boundary = Multipart::makeBoundary();
    EXPECT_NE(boundary, Multipart::makeBoundary());
    EXPECT_TRUE(std::regex_match(boundary,
                                 std::regex("Tarnwick-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")));
}

} // namespace
} // namespace tarnwick
