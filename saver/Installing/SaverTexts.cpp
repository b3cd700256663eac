#include "saver/Installing/SaverTexts.h"

#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <cctype>

namespace tarnwick {
namespace {

// Replaces each character that `escape` knows.
template <class Escape> std::string escaped(std::string_view text, const Escape& escape) {
    std::string result;
    for (const char c : text) {
        const std::string_view written = escape(c);
        if (written.empty())
            result += c;
        else
            result += written;
    }
    return result;
}

bool isControl(char c) {
    return (c >= 0 && c < 0x20) || c == 0x7f;
}

// XML 1.0, 2.4 and 3.3.3; control characters are not characters of XML.
std::string xmlText(std::string_view text) {
    return escaped(text, [](char c) -> std::string_view {
        switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        default:
            return isControl(c) && c != '\n' ? " " : "";
        }
    });
}

// XScreenSaver's sliders have fractions only if a bound is written with a decimal point.
std::string xmlNumber(float number) {
    std::string digits = shortest(number);
    return digits.find_first_of(".e") == std::string::npos ? digits + ".0" : digits;
}

std::string sliderText(const ParamDecl& param) {
    const std::string label = param.detail.empty() ? param.name : param.name + ": " + param.detail;
    return "    <number id=\"" + param.name + "\" type=\"slider\" arg=\"--param-" + param.name +
           " %\"\n            _label=\"" + xmlText(label) + "\"\n            low=\"" +
           xmlNumber(param.min) + "\" high=\"" + xmlNumber(param.max) + "\" default=\"" +
           xmlNumber(param.defaultValue) + "\"/>\n";
}

// Columns of at most `most` sliders, side by side.
std::string slidersText(std::span<const ParamDecl> params) {
    constexpr std::size_t most = 8;
    std::string text = "  <hgroup>\n";
    for (std::size_t begin = 0; begin < params.size(); begin += most) {
        text += "   <vgroup>\n";
        for (const ParamDecl& param : params.subspan(begin, std::min(most, params.size() - begin)))
            text += sliderText(param);
        text += "   </vgroup>\n";
    }
    return text + "  </hgroup>\n";
}

// A value in one line (Desktop Entry Specification 1.5, sections 4 and 5).
std::string entryValue(std::string_view text) {
    return escaped(text, [](char c) -> std::string_view {
        return c == '\\' ? "\\\\" : isControl(c) ? " " : "";
    });
}

// An argument of Exec (section 7): in quotes, with field codes escaped.
std::string entryWord(const std::filesystem::path& path) {
    const std::string word = escaped(path.string(), [](char c) -> std::string_view {
        switch (c) {
        case '"':
            return "\\\"";
        case '`':
            return "\\`";
        case '$':
            return "\\$";
        case '\\':
            return "\\\\";
        case '%':
            return "%%";
        default:
            return "";
        }
    });
    return entryValue(shellWord(path.string()) == path.string() ? word : '"' + word + '"');
}

} // namespace

std::string shellWord(std::string_view text) {
    const bool isPlain = !text.empty() && std::ranges::all_of(text, [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) ||
               std::string_view("_@%+=:,./-").find(c) != std::string_view::npos;
    });
    if (isPlain)
        return std::string(text);
    return '\'' +
           escaped(text, [](char c) -> std::string_view { return c == '\'' ? "'\\''" : ""; }) +
           '\'';
}

std::string launcherText(std::string_view name, const std::filesystem::path& program,
                         const std::filesystem::path& bundle) {
    const std::string title =
        escaped(name, [](char c) -> std::string_view { return isControl(c) ? " " : ""; });
    return "#!/bin/sh\n# The screen saver \"" + title +
           "\". Written by tarnwick saver install; tarnwick saver uninstall removes it.\nexec " +
           shellWord(program.string()) + " --bundle " + shellWord(bundle.string()) + " \"$@\"\n";
}

std::string descriptionText(const SaverDescription& saver) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n\n<screensaver name=\"" +
                       xmlText(saver.program) + "\" _label=\"" + xmlText(saver.name) +
                       "\">\n\n  <command arg=\"--root\"/>\n\n";
    if (!saver.params.empty())
        text += slidersText(saver.params) + "\n";
    return text + "  <_description>\n" + xmlText(saver.text) +
           "\n  </_description>\n</screensaver>\n";
}

std::string entryText(std::string_view name, const std::filesystem::path& program,
                      const std::filesystem::path& bundle) {
    return "[Desktop Entry]\nType=Application\nName=" + entryValue(name) +
           "\nComment=A live shader, drawn by Tarnwick\nExec=" + entryWord(program) + " --bundle " +
           entryWord(bundle) + " --root\nTryExec=" + entryValue(program.string()) +
           "\nTerminal=false\nStartupNotify=false\nCategories=Screensaver;\nOnlyShowIn=MATE;\n";
}

} // namespace tarnwick
