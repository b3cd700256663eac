// The time from an edit in the player to the new picture.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick::bench {

struct EditCase {
    std::string name; // "edit NAME"
    std::string text; // of the episode
    int lines = 0;
};

// Milliseconds of the wall clock of one edit.
struct EditTime {
    double compile = 0;   // from the text to SPIR-V
    double pipelines = 0; // making the pipelines
    double picture = 0;   // drawing the first picture
    double all = 0;       // from the end of the pause in typing to the picture on the window

    // All but the driver's part.
    double ours() const { return all - pipelines - picture; }
};

// The episodes of a folder.
std::vector<EditCase> editCases(const std::filesystem::path& episodes);

// Plays the episode as the player does, at 640 by 360 pixels, and edits it `rounds` times: each
// edit adds an operation to the colour that shade() returns. Throws std::runtime_error if an edit
// gives no picture.
std::vector<EditTime> editTimes(const EditCase& one, int rounds);

} // namespace tarnwick::bench
