// How a request that fails is looked at.
#pragma once

#include "TarnwickPlatform/Net/URLSession.h"

#include <optional>

namespace tarnwick {

// What `answer` fails with; absent when there is an answer.
inline std::optional<NetError> failure(std::future<Answer> answer) {
    try {
        answer.get();
        return std::nullopt;
    } catch (const NetError& error) {
        return error;
    }
}

inline std::optional<NetError::Kind> kindOf(std::future<Answer> answer) {
    const auto error = failure(std::move(answer));
    return error ? std::optional(error->kind()) : std::nullopt;
}

} // namespace tarnwick
