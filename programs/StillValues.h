// The values of an episode's parameters, as the command line gives them.
#pragma once

#include "TarnwickCore/KeyframeTracks.h"
#include "TarnwickCore/Params.h"

#include <optional>
#include <span>
#include <string_view>

namespace tarnwick {

// Each of `settings` is "NAME=VALUE". Throws CommandError on a name that is not declared or a value
// that is no finite number.
ParamValues settingsOf(std::span<const std::string_view> settings,
                       std::span<const ParamDecl> params, std::string_view episodePath);

// The keys in the file `path`, fitted to the declarations. Throws CommandError.
KeyframeTracks keysOf(std::string_view path, std::span<const ParamDecl> params);

} // namespace tarnwick
