// Keeps the unsaved work of documents in the user's state folder, so that it survives the end of
// the process.
#pragma once

#include "player/Model/Document.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick::player {

// XDG_STATE_HOME/tarnwick (XDG Base Directory Specification 0.8); default: below ~/.local/state.
std::filesystem::path stateFolder();
// The folder "drafts" in it.
std::filesystem::path draftsFolder();

// The draft of one document. Its file is locked while this exists, so that no other player offers
// it. One thread at a time.
class Autosave {
  public:
    // Null if the folder cannot be made or written.
    static std::unique_ptr<Autosave> make(const std::filesystem::path& folder);
    // Takes over a draft that was left, so that it is kept until discard().
    static std::unique_ptr<Autosave> takeOver(const std::filesystem::path& draft);
    ~Autosave(); // keeps the file
    Autosave(const Autosave&) = delete;
    Autosave& operator=(const Autosave&) = delete;

    // Writes the draft unless it is the same as last time. False if it cannot be written. Blocks.
    bool keep(const Draft& draft);
    // Why the last keep() was false: "No space left on device".
    const std::string& failure() const { return failure_; }
    // Removes the draft: the document was saved or closed.
    void discard();

  private:
    Autosave(std::filesystem::path folder, int lock) : folder_(std::move(folder)), lock_(lock) {}

    std::filesystem::path folder_; // of this draft alone
    int lock_;                     // descriptor of the locked file
    std::optional<Draft> kept_;
    std::string failure_;
};

struct LeftDraft {
    std::filesystem::path folder; // for Autosave::takeOver
    Draft draft;
    std::filesystem::file_time_type time; // when it was kept
};

// The drafts in `folder` that no running player has, the newest first. Unreadable ones are ignored
// and remain. Blocks.
std::vector<LeftDraft> leftDrafts(const std::filesystem::path& folder);

} // namespace tarnwick::player
