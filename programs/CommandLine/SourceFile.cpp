#include "programs/CommandLine/SourceFile.h"

#include "TarnwickCore/Findings/Encoding.h"
#include "TarnwickPlatform/Bundle/SourceFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "programs/CommandLine/CommandError.h"
#include "programs/Terminal/Findings.h"

#include <array>

namespace tarnwick {

std::string sourceBytes(std::string_view path) {
    try {
        return withoutByteOrderMark(bytesOfSource(path));
    } catch (const SourceFileError& error) {
        misuse(error.what());
    }
}

std::string sourceText(std::string_view path) {
    std::string text = sourceBytes(path);
    if (const auto fault = encodingError(text)) {
        printFindings(path, text, std::array{Finding{.diagnostic = *fault, .hint = ""}});
        failure(std::string(path) + " is not text in UTF-8.");
    }
    return text;
}

} // namespace tarnwick
