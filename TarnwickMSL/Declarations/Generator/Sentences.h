// The sentences that the library's files give to its names.
#pragma once

#include <map>
#include <set>
#include <string>

namespace tarnwick::msl {

// A comment of two asterisks describes the next of `names` after it, in a declaration or in a row
// of a table, or the name at its beginning: "name: sentence". The first comment of a name counts.
std::map<std::string, std::string> librarySentences(const std::set<std::string>& names);

} // namespace tarnwick::msl
