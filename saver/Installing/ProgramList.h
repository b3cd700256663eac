// The programs in ~/.xscreensaver, the settings of XScreenSaver (xscreensaver(1), "programs").
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// A saver in the list: a name for people and a command of sh.
struct ListedProgram {
    std::string name;
    std::string command; // its first word is the program: "/home/me/rose --root"
};

// Whether the list has a command of `program`, a path; disabled or not.
bool listsProgram(std::string_view settings, std::string_view program);

// The settings with the program as the last of the list, so that the number of the selected one
// stays right. All other bytes are kept. Settings without a list, also empty ones, get one.
std::string withProgram(std::string_view settings, const ListedProgram& added);

// The settings without the commands of `program`, with the number of the selected program
// corrected. All other bytes are kept.
std::string withoutProgram(std::string_view settings, std::string_view program);

} // namespace tarnwick
