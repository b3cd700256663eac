// Includes go only where the build says that they may: cmake/Folders.cmake writes down for each
// folder with a target, and for each room in it, which others it may include.
#include "tests/tree/Includes.h"
#include "tests/tree/Tree.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>
#include <sstream>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// A folder with a target, or a room, a folder below it without one.
struct Place {
    std::set<std::string> below;
    bool isRoom = false;
    bool isPrivate = false; // a room: other folders include none of it but its faces
    bool hasFaces = false;  // a folder: other folders include none of its own headers but these
};

// The list that cmake/Folders.cmake writes.
struct Arrows {
    std::map<std::string, Place> places;      // by address
    std::map<std::string, std::string> faces; // from a header to its place

    Arrows();
    std::string placeOf(const fs::path& file) const;
    std::string folderOf(const std::string& place) const;
    bool mayInclude(const std::string& from, const std::string& header) const;
};

Arrows::Arrows() {
    for (const std::string& line : linesOf(TREE_ARROWS)) {
        std::istringstream words(line);
        std::string name, access;
        words >> name;
        const bool isRoom = name == "room", isFace = name == "face";
        if (isRoom || isFace)
            words >> name;
        if (isRoom)
            words >> access;
        if (name.ends_with(':'))
            name.pop_back();
        std::set<std::string> rest;
        for (std::string word; words >> word;)
            rest.insert(word);
        if (isFace) {
            faces[name] = *rest.begin();
            if (faces[name] == fs::path(name).parent_path())
                places[faces[name]].hasFaces = true;
        } else if (!name.empty()) {
            places[name].below.merge(rest);
            places[name].isRoom = isRoom;
            places[name].isPrivate = access == "private:";
        }
    }
}

// The room that a face or its source belongs to, else the innermost place around the file; empty
// if none.
std::string Arrows::placeOf(const fs::path& file) const {
    if (const auto face = faces.find(fs::path(file).replace_extension(".h").string());
        face != faces.end())
        return face->second;
    for (fs::path around = file.parent_path(); !around.empty(); around = around.parent_path())
        if (places.contains(around.string()))
            return around.string();
    return {};
}

std::string Arrows::folderOf(const std::string& place) const {
    return places.at(place).isRoom ? fs::path(place).parent_path().string() : place;
}

bool Arrows::mayInclude(const std::string& from, const std::string& header) const {
    const std::string to = placeOf(header);
    if (to.empty() || from == to)
        return !to.empty();
    const std::string folder = folderOf(from), other = folderOf(to);
    const Place& place = places.at(to);
    if (folder == other) // between its rooms, and its own headers
        return places.at(from).below.contains(to) ||
               (from == folder && !place.below.contains(folder));
    const bool isHidden = place.isPrivate || place.hasFaces;
    return places.at(folder).below.contains(other) && (!isHidden || faces.contains(header));
}

// Tests and measurements may look at everything.
bool isFree(const fs::path& file) {
    const std::string top = file.begin()->string();
    return top == "tests" || top == "benchmarks" || top == "fuzz";
}

TEST(Arrows, areKeptByEveryInclude) {
    const Arrows arrows;
    ASSERT_TRUE(arrows.places.contains("TarnwickBase"));
    int looked = 0;
    for (const Include& include : allIncludes()) {
        if (!include.isOurs)
            continue;
        EXPECT_TRUE(fs::exists(fs::path(TREE_ROOT) / include.name))
            << include.file << " includes \"" << include.name
            << "\", which is no file's address from the tree's root.";
        if (isFree(include.file))
            continue;
        const std::string from = arrows.placeOf(include.file);
        if (from.empty()) {
            ADD_FAILURE() << include.file << " is in no folder with a target.";
            continue;
        }
        EXPECT_TRUE(arrows.mayInclude(from, include.name))
            << include.file << " includes \"" << include.name << "\", but " << from
            << " may not include it. See its CMakeLists.txt.";
        ++looked;
    }
    EXPECT_GT(looked, 100);
}

TEST(Arrows, leaveNoCrowdedFolderWithoutRooms) {
    constexpr int mostPairs = 30;
    std::map<std::string, std::set<std::string>> pairs;
    for (const fs::path& file : cppFiles())
        pairs[file.parent_path().string()].insert(file.stem().string());
    for (const auto& [folder, stems] : pairs)
        EXPECT_LE(stems.size(), std::size_t{mostPairs}) << folder << " needs rooms.";
}

// Libraries that one folder alone may know, and of it only what no other folder includes.
struct Keeper {
    std::string_view prefix; // of the header's name
    std::string_view folder;
    std::string_view other{}; // may know it too
};
constexpr std::array<Keeper, 16> keepers{{
    {"clang/", "TarnwickMSL"},
    {"llvm/", "TarnwickMSL"},
    {"spirv-tools/", "TarnwickMSL"}, // SPIR-V itself is what it and TarnwickGPU share
    {"vulkan/", "TarnwickGPU", "embedding/example"},
    {"pango/", "TarnwickPlatform/Text"},
    {"cairo", "TarnwickPlatform/Text"},
    {"asio/", "TarnwickPlatform/Dispatch"},
    {"curl/", "TarnwickPlatform/Net"},
    {"httplib.h", "TarnwickServe/HTTP"},
    {"png.h", "TarnwickPlatform/Pictures"},
    {"libav", "TarnwickPlatform/Libav"},
    {"rtmidi/", "player/Control"},
    {"libsw", "TarnwickPlatform/Libav"},
    {"SDL", "TarnwickPlatform/Sound"},
    {"wayland-client", "saver/Wayland", "TarnwickGPU"},
    {"xcb/", "player/Window"},
}};

TEST(Arrows, keepForeignHeadersInOneFolder) {
    for (const Include& include : allIncludes())
        for (const Keeper& keeper : keepers)
            if (!include.isOurs && !isFree(include.file) &&
                include.name.starts_with(keeper.prefix)) {
                const std::string file = include.file.string();
                EXPECT_TRUE(file.starts_with(keeper.folder) ||
                            (!keeper.other.empty() && file.starts_with(keeper.other)))
                    << include.file << " includes <" << include.name << ">, which only "
                    << keeper.folder << " may.";
            }
}

} // namespace
} // namespace tarnwick
