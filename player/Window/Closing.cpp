#include "player/Window/Closing.h"

#include "player/Window/FileActions.h"

#include <QPushButton>
#include <algorithm>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int patience = 300; // milliseconds before the message

QString titleOf(const OpenDocument* document) {
    return QString::fromStdString(document->document().title());
}

} // namespace

Closing::Closing(Player& player, QMainWindow& window, FileActions& files)
    : QObject(&window), player_(player), window_(window), files_(files) {
    patience_.setSingleShot(true);
    patience_.setInterval(patience);
    connect(&patience_, &QTimer::timeout, this, &Closing::offer);
    // After the calls of the document that emits it.
    connect(&player_, &Player::documentAdded, this, [this](OpenDocument* document) {
        connect(document, &OpenDocument::fileWorkDone, this, &Closing::look, Qt::QueuedConnection);
    });
    connect(&player_, &Player::documentClosing, this,
            [this](OpenDocument* document) { decided_.erase(document); });
}

void Closing::close(OpenDocument* document) {
    const auto again = [this, guard = QPointer<OpenDocument>(document)] {
        if (guard)
            close(guard);
    };
    if (!settles({document}, again))
        return;
    const auto decided = decided_.find(document);
    const bool isKept = decided != decided_.end() && decided->second;
    player_.close(document, isKept ? UnsavedWork::isKept : UnsavedWork::isLost);
}

bool Closing::mayCloseWindow() {
    Documents all;
    for (const auto& document : player_.documents())
        all.emplace_back(document.get());
    return settles(all, [this] { window_.close(); });
}

void Closing::discardDrafts() {
    for (const auto& document : player_.documents()) {
        const auto decided = decided_.find(document.get());
        if (decided == decided_.end() || !decided->second)
            document->discardDraft();
    }
}

// Whether nothing has to be saved any more. Otherwise `again` is called when the next step can be
// taken, unless the author decides otherwise.
bool Closing::settles(const Documents& documents, std::function<void()> again) {
    if (again_) {
        offer(); // something is waited for already
        return false;
    }
    const auto isBusy = [this](const auto& document) {
        return document->isFileBusy() && !decided_.contains(document);
    };
    if (std::ranges::none_of(documents, isBusy))
        for (const auto& document : documents)
            if (document->document().isModified() && !decided_.contains(document) &&
                !ask(document)) {
                decided_.clear();
                return false;
            }
    if (std::ranges::none_of(documents, isBusy))
        return true;
    wait(documents, std::move(again));
    return false;
}

// False to stay.
bool Closing::ask(OpenDocument* document) {
    player_.activate(document);
    const auto answer = QMessageBox::question(
        &window_, tr("Unsaved changes"), tr("Save the changes of %1?").arg(titleOf(document)),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Discard)
        decided_[document] = false;
    if (answer != QMessageBox::Save)
        return answer == QMessageBox::Discard;
    return files_.save(document, [this](bool isSaved) {
        if (!isSaved)
            cancel();
    });
}

void Closing::wait(const Documents& documents, std::function<void()> again) {
    waited_ = documents;
    again_ = std::move(again);
    patience_.start();
}

void Closing::look() {
    const auto isBusy = [](const auto& document) { return document && document->isFileBusy(); };
    if (!again_ || std::ranges::any_of(waited_, isBusy))
        return;
    patience_.stop();
    delete message_;
    std::exchange(again_, nullptr)();
}

// A file could not be saved, or the author stays.
void Closing::cancel() {
    again_ = nullptr;
    decided_.clear();
    patience_.stop();
    if (message_)
        message_->deleteLater();
}

void Closing::offer() {
    if (message_) {
        message_->raise();
        return;
    }
    QString names;
    for (const auto& document : waited_)
        if (document && document->isFileBusy())
            names += (names.isEmpty() ? QString() : QStringLiteral(", ")) + titleOf(document);
    message_ = new QMessageBox(QMessageBox::Information, tr("Waiting for files"),
                               tr("The file of %1 is being written.").arg(names),
                               QMessageBox::NoButton, &window_);
    message_->setInformativeText(
        tr("This closes by itself once it is written. Changes that are not written then are "
           "offered at the next start."));
    message_->setAttribute(Qt::WA_DeleteOnClose);
    message_->addButton(tr("&Keep open"), QMessageBox::RejectRole);
    const QAbstractButton* leaving =
        message_->addButton(tr("&Close without waiting"), QMessageBox::DestructiveRole);
    connect(message_, &QMessageBox::finished, this,
            [this, leaving] { message_->clickedButton() == leaving ? leave() : cancel(); });
    message_->open();
}

// The drafts of what is not written are kept.
void Closing::leave() {
    for (const auto& document : waited_)
        if (document && document->isFileBusy())
            decided_[document] = true;
    patience_.stop();
    if (message_)
        message_->deleteLater();
    std::exchange(again_, nullptr)();
}

} // namespace tarnwick::player
