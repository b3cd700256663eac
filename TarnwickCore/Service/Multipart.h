// The body of a form with files (RFC 7578).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Multipart {
    struct Part {
        std::string header; // lines that end with CR LF, and an empty line
        std::string data;   // any bytes

        bool operator==(const Part&) const = default;
    };

    std::string boundary; // must not occur in a part
    std::vector<Part> parts;

    bool operator==(const Multipart&) const = default;

    // "Tarnwick-" and a random UUID (RFC 9562, version 4) in capitals; different in each call.
    static std::string makeBoundary();

    // Appends a part. The three texts are written unchanged and must hold no quotation marks and no
    // line breaks. An empty file name is written, an absent one is not.
    void add(std::string_view name, std::optional<std::string_view> fileName,
             std::string_view contentType, std::string data);

    std::string contentType() const; // of the body, for the header of the request
    std::string body() const;
};

} // namespace tarnwick
