// Writes the names of the standard library as the source of libraryNames().
#include "TarnwickMSL/Declarations/Generator/Listing.h"
#include "TarnwickMSL/Declarations/Generator/Sentences.h"

#include <exception>
#include <fstream>
#include <iostream>

namespace {

using namespace tarnwick::msl;

std::string quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char one : text)
        quoted += one == '\n'                 ? "\\n"
                  : one == '"' || one == '\\' ? std::string{'\\', one}
                                              : std::string{one};
    return quoted + "\"";
}

void write(std::ostream& out) {
    const Listing listing = libraryListing();
    std::set<std::string> names;
    for (const auto& [key, listed] : listing)
        if (!listed.overloads.empty())
            names.insert(key.second);
    const auto sentences = librarySentences(names);
    out << "#include \"TarnwickMSL/Declarations/LibraryNames.h\"\n\n"
           "namespace tarnwick::msl {\n\n"
           "static constexpr LibraryName names[] = {\n";
    for (const auto& [key, listed] : listing) {
        // The sentence of a function is not that of a member with its name: max of numeric_limits.
        const bool isOfAnother = !key.first.empty() && listing.contains({"", key.second});
        const auto sentence =
            listed.overloads.empty() || isOfAnother ? sentences.end() : sentences.find(key.second);
        out << "    {LibraryName::Kind::" << listed.kind << ", " << quoted(key.first) << ", "
            << quoted(key.second) << ", "
            << quoted(listed.overloads.empty() ? listed.type : signaturesOf(listed.overloads))
            << ", " << quoted(sentence == sentences.end() ? "" : sentence->second) << "},\n";
    }
    out << "};\n\nstd::span<const LibraryName> libraryNames() {\n    return names;\n}\n\n"
           "} // namespace tarnwick::msl\n";
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "Usage: tarnwick-msl-names FILE\n";
        return 2;
    }
    try {
        std::ofstream file(arguments[1], std::ios::binary);
        write(file);
        file.close();
        return file ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
