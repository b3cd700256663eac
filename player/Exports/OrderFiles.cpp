#include "player/Exports/OrderFiles.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickBase/WholeFile.h"
#include "player/Exports/NewPlace.h"

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

// Null without an output.
std::unique_ptr<TemporaryFolder> besideOutput(const Order& order) {
    if (!order.output)
        return nullptr;
    try {
        return std::make_unique<TemporaryFolder>(order.output->parent_path(),
                                                 order.output->filename().native());
    } catch (const TemporaryFolderError& error) {
        throw OrderFilesError(order.output->string() + " cannot be written: " + error.reason + ".");
    }
}

void removeText(std::string& sentence, const std::string& text) {
    for (std::size_t at = sentence.find(text); at != std::string::npos; at = sentence.find(text))
        sentence.erase(at, text.size());
}

} // namespace

OrderFiles::OrderFiles(const Order& order) try : order_(order), outputs_(besideOutput(order)) {
    for (const OrderInput& input : order_.inputs)
        writeWholeFile(path(input.name), input.text);
} catch (const TemporaryFolderError& error) {
    throw OrderFilesError(error.what());
} catch (const WholeFileError& error) {
    throw OrderFilesError(error.what());
}

std::vector<std::string> OrderFiles::words() const {
    std::vector<std::string> words;
    for (const OrderWord& word : order_.words)
        switch (word.kind) {
        case OrderWord::Kind::text:
            words.push_back(word.text);
            break;
        case OrderWord::Kind::file:
            words.push_back(word.before + path(word.text).string());
            break;
        case OrderWord::Kind::output:
            words.push_back(unfinished().string());
            break;
        }
    return words;
}

fs::path OrderFiles::path(const std::string& name) const {
    return own_.path() / name;
}

fs::path OrderFiles::unfinished() const {
    precondition(outputs_ != nullptr, "the order has an output");
    return outputs_->path() / order_.output->filename();
}

fs::path OrderFiles::finish() {
    try {
        return movedToNewPlace(unfinished(), *order_.output);
    } catch (const NewPlaceError& error) {
        throw OrderFilesError(error.what());
    }
}

std::string OrderFiles::shown(std::string sentence) const {
    removeText(sentence, own_.path().string() + "/");
    if (outputs_)
        removeText(sentence, outputs_->path().string() + "/");
    return sentence;
}

} // namespace tarnwick::player
