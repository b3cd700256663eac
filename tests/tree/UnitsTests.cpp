// A unit is a header with the sources that define what it declares. Most are pairs of one name; a
// header that is defined in more files names them in a comment.
#include "tests/tree/Includes.h"
#include "tests/tree/Tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// Tests and the files with a program's main() have no headers.
bool standsAlone(const fs::path& file) {
    const std::string top = file.begin()->string();
    return top == "tests" || top == "fuzz" ||
           std::ranges::any_of(linesOf(fs::path(TREE_ROOT) / file), [](const std::string& line) {
               return line.starts_with("int main(");
           });
}

// From each source to the headers that it belongs to.
std::map<fs::path, std::vector<fs::path>> headersOfSources() {
    std::map<fs::path, std::vector<fs::path>> found, comments;
    std::map<std::string, std::vector<fs::path>> byName; // of the sources without a pair
    std::vector<fs::path> headers;
    for (const fs::path& file : cppFiles()) {
        if (standsAlone(file))
            continue;
        if (file.extension() == ".h") {
            headers.push_back(file);
            continue;
        }
        std::vector<fs::path>& mine = found[file];
        for (fs::path folder = file.parent_path(); !folder.empty() && mine.empty();
             folder = folder.parent_path()) // a header may be above the room of its source
            if (const fs::path header = folder / (file.stem().string() + ".h");
                fs::exists(fs::path(TREE_ROOT) / header))
                mine.push_back(header);
        if (mine.empty())
            byName[file.filename().string()].push_back(file);
    }
    for (const fs::path& header : headers)
        for (const std::string& line : linesOf(fs::path(TREE_ROOT) / header)) {
            const std::size_t comment = line.find("//");
            if (comment == line.npos)
                continue;
            for (const auto& [name, sources] : byName)
                if (const std::size_t at = line.find(name, comment);
                    at != line.npos && !std::isalnum(static_cast<unsigned char>(line[at - 1])))
                    for (const fs::path& source : sources)
                        if (*source.begin() == *header.begin() &&
                            std::ranges::count(found[source], header) == 0)
                            found[source].push_back(header);
        }
    return found;
}

TEST(Units, haveOneHeaderForEverySource) {
    for (const auto& [source, headers] : headersOfSources())
        EXPECT_EQ(headers.size(), 1U) << source << " has no header of its name; " << headers.size()
                                      << " headers name it in a comment.";
}

using Graph = std::map<std::string, std::set<std::string>>;

Graph unitGraph() {
    const auto headers = headersOfSources();
    auto unitOf = [&](const fs::path& file) {
        const auto found = headers.find(file);
        const bool isSource = found != headers.end() && !found->second.empty();
        return fs::path(isSource ? found->second.front() : file).replace_extension().string();
    };
    Graph graph;
    for (const Include& include : allIncludes())
        if (include.isOurs && unitOf(include.file) != unitOf(include.name))
            graph[unitOf(include.file)].insert(unitOf(include.name));
    return graph;
}

// Each unit comes after those that it includes; a unit that is met again before it is done is in a
// ring.
std::vector<std::string> rings(const Graph& graph) {
    enum class State { unseen, open, done };
    std::map<std::string, State> states;
    std::vector<std::string> path, found;
    std::function<void(const std::string&)> visit = [&](const std::string& unit) {
        if (states[unit] == State::open) {
            std::string ring = unit;
            for (auto step = std::ranges::find(path, unit) + 1; step != path.end(); ++step)
                ring += " -> " + *step;
            found.push_back(ring + " -> " + unit);
        }
        if (states[unit] != State::unseen)
            return;
        states[unit] = State::open;
        path.push_back(unit);
        if (const auto below = graph.find(unit); below != graph.end())
            for (const std::string& other : below->second)
                visit(other);
        path.pop_back();
        states[unit] = State::done;
    };
    for (const auto& [unit, below] : graph)
        visit(unit);
    return found;
}

TEST(Units, includeEachOtherInNoRing) {
    EXPECT_EQ(rings({{"a", {"b"}}, {"b", {"c"}}, {"c", {"a"}}}).size(), 1U);
    EXPECT_TRUE(rings({{"a", {"b", "c"}}, {"b", {"c"}}}).empty());
    for (const std::string& ring : rings(unitGraph()))
        ADD_FAILURE() << ring;
}

} // namespace
} // namespace tarnwick
