#include "programs/Doctor/CodecChecks.h"

#include "TarnwickPlatform/Codecs/VideoCodec.h"
#include "TarnwickPlatform/Movie/AvailableCodecs.h"
#include "TarnwickPlatform/Text/Fonts.h"

#include <map>
#include <string_view>

namespace tarnwick {
namespace {

constexpr const char* codecPackage = "libavcodec59";

Check codecCheck(std::string_view kind, const std::string& name, bool isThere,
                 const std::string& use) {
    return {.result = isThere ? CheckResult::works : CheckResult::fails,
            .subject = std::string(kind),
            .name = name,
            .text = (isThere ? "For " : "Missing: required for ") + use + ".",
            .package = isThere ? "" : codecPackage};
}

} // namespace

Checks codecChecks() {
    std::map<std::string, std::string> uses; // of encoders: the codecs
    for (const VideoCodecRow& row : videoCodecRows) {
        std::string& use = uses[row.encoder];
        use += (use.empty() ? "" : ", ") + std::string(row.name);
    }
    Checks checks;
    for (const auto& [encoder, use] : uses)
        checks.push_back(codecCheck("encoder", encoder, hasEncoder(encoder), use));
    checks.push_back(codecCheck("encoder", "aac", hasEncoder("aac"), "the sound of movies"));
    for (const char* decoder : {"h264", "hevc", "prores", "vp9", "mjpeg", "aac", "mp3", "flac"})
        checks.push_back(
            codecCheck("decoder", decoder, hasDecoder(decoder), "movies and sound as inputs"));
    return checks;
}

Checks fontChecks() {
    const SystemFonts fonts = systemFonts();
    if (fonts.families == 0)
        return {{.result = CheckResult::fails,
                 .subject = "fonts",
                 .name = "none",
                 .text = "Text cannot be drawn.",
                 .package = "fonts-dejavu-core"}};
    return {{.subject = "fonts",
             .name = fonts.used,
             .text = std::to_string(fonts.families) + " families are installed."}};
}

} // namespace tarnwick
