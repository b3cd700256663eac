// Keyframe tracks as a part of JSON documents.
#pragma once

#include "TarnwickCore/Animation/KeyframeTracks.h"

#include <nlohmann/json.hpp>

#include <string>

namespace tarnwick {

// Reads tracks. `where` names `document` in the error. Throws DocumentError.
KeyframeTracks keyframeTracksOf(const nlohmann::json& document, const std::string& where);

// Throws DocumentError on a number that is not finite.
nlohmann::ordered_json documentOf(const KeyframeTracks& tracks);

} // namespace tarnwick
