#include "TarnwickCore/SwiftUI/SwiftUIView.h"

#include "TarnwickCore/Episode/ReservedWords.h"
#include "TarnwickCore/Service/ServiceHosts.h"
#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace tarnwick {
namespace {

// Bare names that the view declares or uses, and keywords that are not names even in backquotes.
// Sorted.
// clang-format off
constexpr auto takenNames = std::to_array<std::string_view>({
    "Any", "Body", "Bool", "Date", "Environment", "Float", "GeometryReader", "Protocol",
    "Rectangle", "Self", "ShaderLibrary", "State", "SwiftUI", "TimelineView", "Type", "View", "_",
    "_twScale", "_twStart", "body", "init", "isRunning", "self", "super", "twContext", "twGeo",
    "twScale", "twStart", "twTime"});
// clang-format on
static_assert(std::ranges::is_sorted(takenNames));

// A parameter in the view.
struct Property {
    std::string name; // in backquotes if Swift requires them
    const ParamDecl* param;
};

std::vector<Property> propertiesFor(const std::vector<ParamDecl>& params, std::string_view view) {
    std::set<std::string> names;
    for (const ParamDecl& param : params)
        names.insert(param.name);
    std::vector<Property> properties;
    for (const ParamDecl& param : params) {
        std::string name = param.name;
        if (name == view || std::ranges::binary_search(takenNames, name)) {
            while (names.contains(name))
                name.insert(0, "p_");
            names.insert(name);
        } else if (isSwiftKeyword(name)) {
            name = "`" + name + "`";
        }
        properties.push_back({name, &param});
    }
    return properties;
}

std::string literal(float number) {
    if (std::isnan(number))
        return ".nan";
    if (std::isinf(number))
        return number < 0 ? "-.infinity" : ".infinity";
    const std::string digits = shortest(number);
    return digits.find_first_of(".e") == std::string::npos ? digits + ".0" : digits;
}

std::string declarations(const std::vector<Property>& properties, const std::string& access) {
    if (properties.empty())
        return "    // The shader declares no parameters.\n";
    std::string lines;
    for (const auto& [name, param] : properties) {
        const std::string range = shortest(param->min) + " to " + shortest(param->max);
        lines += "    /// " + (param->detail.empty() ? range : param->detail + " (" + range + ")") +
                 "\n    " + access + "var " + name + ": Float\n";
    }
    return lines;
}

std::string initializer(const std::vector<Property>& properties, const std::string& access) {
    std::string arguments;
    std::string body;
    for (const auto& [name, param] : properties) {
        arguments += name + ": Float = " + literal(param->defaultValue) + ", ";
        body += "        self." + name + " = " + name + "\n";
    }
    return "    " + access + "init(" + arguments + "isRunning: Bool = true) {\n" + body +
           "        self.isRunning = isRunning\n    }\n";
}

std::string shaderCall(const std::string& function, const std::vector<Property>& properties,
                       SwiftUIView::Place place) {
    std::string call = place == SwiftUIView::Place::package ? "ShaderLibrary.bundle(.module)"
                                                            : "ShaderLibrary.default";
    call += "." + function + "(.float2(twGeo.size), .float(Float(twScale)), .float(twTime)";
    for (const Property& property : properties)
        call += ", .float(" + property.name + ")";
    return call + ")";
}

} // namespace

std::string SwiftUIView::text(Place place) const {
    const std::string access = place == Place::package ? "public " : "";
    const std::string view = name + "View";
    const std::vector<Property> properties = propertiesFor(params, view);
    // In a view named TimelineView, the type of SwiftUI needs its module name.
    const std::string timeline = view == "TimelineView" ? "SwiftUI.TimelineView" : "TimelineView";
    std::string text = "import SwiftUI\n\n/// " + title + ", a shader from Tarnwick (";
    text.append(siteHost).append(").\n");
    text +=
        "/// It runs the Metal function `" + function + "`, which must be in the same target.\n";
    text += access + "struct " + view + ": View {\n";
    text += declarations(properties, access);
    text += "    /// False holds the picture still.\n    " + access + "var isRunning = true\n\n";
    text += "    // Prefixed, so no parameter's name can clash with them.\n"
            "    @State private var twStart = Date()\n"
            "    @Environment(\\.displayScale) private var twScale\n\n";
    text += initializer(properties, access);
    text += "\n    " + access + "var body: some View {\n        " + timeline +
            "(.animation(paused: !isRunning)) { twContext in\n"
            "            let twTime = Float(twContext.date.timeIntervalSince(twStart))\n"
            "            GeometryReader { twGeo in\n"
            "                Rectangle()\n"
            "                    .colorEffect(" +
            shaderCall(function, properties, place) +
            ")\n"
            "            }\n"
            "        }\n"
            "    }\n"
            "}\n\n";
    return text + "#Preview {\n    " + view + "()\n        .frame(width: 480, height: 270)\n}\n";
}

} // namespace tarnwick
