#include "TarnwickMSL/Declarations/Generator/Signatures.h"

#include <algorithm>
#include <map>
#include <set>

namespace tarnwick::msl {
namespace {

using Lanes = std::set<unsigned>;

struct Group {
    Overload pattern;                   // with the names of types in place of types
    std::map<std::string, Lanes> types; // the lanes of T for each element
    std::string single;                 // the signature with the types of its first overload
};

// The name of `type` in an overload whose first parameter is `first`.
std::string named(const TypeText& type, const TypeText& first) {
    if (type.element.empty())
        return type.text;
    if (type.element == first.element && type.lanes == first.lanes)
        return "T" + type.suffix;
    if (type.lanes == first.lanes && type.lanes > 1)
        return type.element + "N" + type.suffix;
    if (type.element == first.element && type.lanes == 1)
        return "E" + type.suffix;
    return type.text;
}

// Whether the name `pattern` is `type` where T is `first`.
bool fits(const std::string& pattern, const TypeText& type, const TypeText& first) {
    if (pattern == "T" + type.suffix)
        return type.element == first.element && type.lanes == first.lanes;
    if (pattern == "E" + type.suffix)
        return type.element == first.element && type.lanes == 1;
    return pattern == type.text ||
           (first.lanes > 1 && !type.element.empty() &&
            pattern == type.element + "N" + type.suffix && type.lanes == first.lanes);
}

const TypeText& firstOf(const Overload& overload) {
    static const TypeText none;
    return overload.parameters.empty() ? none : overload.parameters[0].type;
}

bool fits(const Overload& pattern, const Overload& overload) {
    const TypeText& first = firstOf(overload);
    if (pattern.parameters.size() != overload.parameters.size() ||
        !fits(pattern.result.text, overload.result, first))
        return false;
    for (std::size_t index = 0; index < overload.parameters.size(); ++index)
        if (pattern.parameters[index].name != overload.parameters[index].name ||
            !fits(pattern.parameters[index].type.text, overload.parameters[index].type, first))
            return false;
    return true;
}

Overload patternOf(Overload overload) {
    const TypeText first = firstOf(overload);
    overload.result.text = named(overload.result, first);
    for (Overload::Parameter& one : overload.parameters)
        one.type.text = named(one.type, first);
    return overload;
}

// E is a type of its own only if there are several.
void nameElement(Overload& pattern, const std::string& element) {
    const auto rename = [&](TypeText& type) {
        if (type.text == "E" + type.suffix)
            type.text = element + type.suffix;
    };
    rename(pattern.result);
    for (Overload::Parameter& one : pattern.parameters)
        rename(one.type);
}

std::string signature(const Overload& overload) {
    std::string text = overload.result.text + " " + overload.name + "(";
    std::string closing;
    for (std::size_t index = 0; index < overload.parameters.size(); ++index) {
        const Overload::Parameter& one = overload.parameters[index];
        if (one.isOptional) {
            text += index > 0 ? " [" : "[";
            closing += ']';
        }
        text += (index > 0 ? ", " : "") + one.type.text + (one.name.empty() ? "" : " ") + one.name;
    }
    return text + closing + ")";
}

// "integers" for all eight of them; the others by name.
std::string elementsText(std::set<std::string> elements) {
    static const std::set<std::string> integers{"char", "uchar", "short", "ushort",
                                                "int",  "uint",  "long",  "ulong"};
    const bool hasAll = std::ranges::includes(elements, integers);
    if (hasAll)
        for (const std::string& one : integers)
            elements.erase(one);
    std::string text;
    for (const std::string& one : elements)
        text += (text.empty() ? "" : ", ") + one;
    return text + (hasAll ? (text.empty() ? "integers" : ", integers") : "");
}

std::string legend(const Group& group) {
    std::map<Lanes, std::set<std::string>> elements;
    for (const auto& [element, lanes] : group.types)
        elements[lanes].insert(element);
    std::string text;
    for (const auto& [lanes, names] : elements) {
        const std::string list = elementsText(names);
        text += text.empty() ? "  T: " : "; ";
        if (lanes == Lanes{1, 2, 3, 4})
            text += list + " and vectors";
        else if (lanes == Lanes{2, 3, 4})
            text += "vectors of " + list;
        else
            for (const unsigned one : lanes)
                for (const std::string& name : names)
                    text += (one == *lanes.begin() && name == *names.begin() ? "" : ", ") + name +
                            (one == 1 ? "" : std::to_string(one));
    }
    return text;
}

} // namespace

std::string signaturesOf(const std::vector<Overload>& overloads) {
    const bool hasOthers =
        std::ranges::any_of(overloads, [](const Overload& one) { return !one.isTemplate; });
    std::vector<Group> groups;
    for (const Overload& one : overloads) {
        if (one.isTemplate && hasOthers)
            continue;
        auto group = std::ranges::find_if(
            groups, [&](const Group& known) { return fits(known.pattern, one); });
        if (group == groups.end())
            group = groups.insert(groups.end(), {patternOf(one), {}, signature(one)});
        if (const TypeText& first = firstOf(one); !first.element.empty())
            group->types[first.element].insert(first.lanes);
    }
    std::string lines;
    for (Group& group : groups) {
        if (group.types.size() == 1)
            nameElement(group.pattern, group.types.begin()->first);
        const bool isSingle = group.types.empty() ||
                              (group.types.size() == 1 && group.types.begin()->second.size() == 1);
        lines += (lines.empty() ? "" : "\n") +
                 (isSingle ? group.single : signature(group.pattern) + legend(group));
    }
    return lines;
}

} // namespace tarnwick::msl
