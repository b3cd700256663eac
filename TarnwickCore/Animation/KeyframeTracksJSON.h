// Keyframe tracks as a part of other documents.
#pragma once

#include "TarnwickCore/Animation/KeyframeTracks.h"

#include <nlohmann/json.hpp>

#include <string>

namespace tarnwick {

// `where` names `document` in the sentence of the error. Throws DocumentError.
KeyframeTracks keyframeTracksOf(const nlohmann::json& document, const std::string& where);

// Throws DocumentError on numbers that JSON has no form for.
nlohmann::ordered_json documentOf(const KeyframeTracks& tracks);

} // namespace tarnwick
