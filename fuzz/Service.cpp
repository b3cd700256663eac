// What goes to the sharing service and comes from it: forms, uploads, answers, refusals.
#include "TarnwickCore/Service/APIClient.h"
#include "TarnwickCore/Service/Multipart.h"
#include "TarnwickCore/Service/ServiceError.h"
#include "TarnwickCore/Service/ServiceRecords.h"
#include "TarnwickCore/Service/ShareUpload.h"
#include "TarnwickCore/Text/OutsideJSON.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

// A plain reader of RFC 7578 bodies; absent for anything else.
std::optional<std::vector<Multipart::Part>> partsOf(std::string_view body,
                                                    const std::string& boundary) {
    std::vector<Multipart::Part> parts;
    const std::string between = "\r\n--" + boundary, first = "--" + boundary;
    if (!body.starts_with(first))
        return std::nullopt;
    body.remove_prefix(first.size());
    while (body != "--\r\n") {
        if (!body.starts_with("\r\n"))
            return std::nullopt;
        body.remove_prefix(2);
        const std::size_t header = body.find("\r\n\r\n"), end = body.find(between);
        if (header == body.npos || end == body.npos || end < header + 4)
            return std::nullopt;
        parts.push_back({std::string(body.substr(0, header + 4)),
                         std::string(body.substr(header + 4, end - header - 4))});
        body.remove_prefix(end + between.size());
    }
    return parts;
}

void writeForm(Choices& input) {
    Multipart form{.boundary = "Tarnwick-0"};
    while (form.parts.size() < 4 && input.flag()) {
        const std::string data = input.text();
        if (data.find(form.boundary) == std::string::npos)
            form.add("part", input.flag() ? std::optional("file") : std::nullopt, "video/mp4",
                     data);
    }
    const auto parts = partsOf(form.body(), form.boundary);
    law(parts == form.parts, "the parts of a form are its data");
}

void upload(Choices& input) {
    ShareUpload upload{.title = input.text(), .description = input.text()};
    upload.loop = input.text();
    upload.thumb = input.text();
    upload.source = input.rest();
    upload.params = ParamParser::parse(upload.source);
    const std::vector<std::string> problems = upload.problems();
    law(problems == upload.problems(), "an upload has the same problems each time");
    try {
        law(objectOf(upload.metaJSON()).has_value(), "the data of an upload are a JSON object");
    } catch (const ShareUploadError&) {
        law(!problems.empty(), "data that cannot be sent are a problem");
    }
}

void readAnswer(std::string_view text) {
    const Date now = dateAt(1.7e9);
    if (const auto start = LinkStart::decode(text, now)) {
        law(start->interval >= 1 && start->interval <= 60, "an interval is in its range");
        law(start->url.scheme() == "https" || start->url.scheme() == "http",
            "a page is of the web");
    }
    if (const auto shared = Shared::decode(text))
        law(shared->url.scheme() == "https" || shared->url.scheme() == "http",
            "a page is of the web");
    Me::decode(text);
    if (Approved::decode(text))
        law(objectOf(text).has_value(), "an answer is a JSON object");
    for (const int status : {200, 202, 410, 500})
        try {
            APIClient::readPoll(status, text);
        } catch (const ServiceError& failure) {
            law(status != 202 && status != 410, "a poll without a body cannot fail");
        }
    for (const int status : {400, 401, 403, 409, 410, 429, 500}) {
        const ServiceError failure = ServiceError::of(status, text);
        const std::string_view words = failure.what();
        law(!words.empty() && words.find('\n') == std::string_view::npos, "an error has one line");
        law((failure.status() != 0) == (failure.kind() == ServiceError::Kind::server),
            "only an error of the server has a status");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    readAnswer(textOf(bytes, size));
    Choices input(bytes, size);
    if (input.flag())
        writeForm(input);
    else
        upload(input);
    return 0;
}
