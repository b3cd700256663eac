#include "TarnwickCore/Service/ServiceError.h"

#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Lines.h"
#include "TarnwickCore/Text/OutsideJSON.h"

namespace tarnwick {
namespace {

constexpr std::size_t longestMessage = 300; // characters

// The content of a refusal. A NUL ends the text, because it ends what().
struct Refusal {
    std::string error;
    bool needsHandle = false;
};

std::string onOneLine(std::string_view words) {
    std::string line;
    for (const std::string_view part : linesOf(words))
        line += part;
    return line;
}

std::string cleaned(std::string_view words) {
    const std::string line = onOneLine(words);
    if (line.size() <= longestMessage)
        return line;
    std::string message;
    std::size_t count = 0;
    for (const std::string& character : charactersOf(line)) {
        if (count++ == longestMessage)
            break;
        message += character;
    }
    return message;
}

Refusal refusalOf(std::string_view body) {
    const auto document = objectOf(body);
    if (!document)
        return {};
    const nlohmann::json& error = memberOf(*document, "error");
    const nlohmann::json& needsHandle = memberOf(*document, "needsHandle");
    if (!(error.is_null() || error.is_string()) ||
        !(needsHandle.is_null() || needsHandle.is_boolean()))
        return {};
    return {.error = cleaned(textOf(*document, "error").value_or("").c_str()),
            .needsHandle = needsHandle.is_boolean() && needsHandle.get<bool>()};
}

} // namespace

ServiceError::ServiceError(Kind kind, const std::string& message, int status)
    : std::runtime_error(message), kind_(kind), status_(status) {}

ServiceError ServiceError::badAnswer() {
    return {Kind::badAnswer, "Tarnweb sent an answer the app could not read."};
}

ServiceError ServiceError::of(int status, std::string_view body) {
    const Refusal refusal = refusalOf(body);
    const auto words = [&](const std::string& otherwise) {
        return refusal.error.empty() ? otherwise : refusal.error;
    };
    if (status == 401)
        return {Kind::signedOut, words("You are signed out. Sign in again.")};
    if (status == 409 && refusal.needsHandle)
        return {Kind::needsHandle, words("Choose a handle first.")};
    if (status == 429)
        return {Kind::tooMany, words("Too many requests. Try again later.")};
    return {Kind::server, words("Tarnweb answered " + std::to_string(status) + "."), status};
}

bool ServiceError::operator==(const ServiceError& other) const {
    return kind_ == other.kind_ && status_ == other.status_ &&
           std::string_view(what()) == other.what();
}

} // namespace tarnwick
