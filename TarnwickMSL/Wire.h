// What passes between `compile` and its worker process: requests and answers as bytes, each sent as
// a 32-bit length and as many bytes. Both ends are of one build, so numbers keep their machine
// form.
#pragma once

#include "TarnwickMSL/Compile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick::msl {

struct Request {
    std::uint32_t limitMilliseconds = 0; // the worker ends itself when it is past this
    Target target{};
    std::string moreWarningsIn;
    std::string source;
};

// The byte that a worker sends as soon as it has read a request: from then on a closed connection
// means that this program ended it.
inline constexpr char requestIsRead = 'r';

std::string toBytes(const Request& request);
std::string toBytes(const Compilation& compilation);

// Nothing where the bytes are cut short or hold what cannot be.
std::optional<Request> requestFrom(std::string_view bytes);
std::optional<Compilation> compilationFrom(std::string_view bytes);

} // namespace tarnwick::msl
