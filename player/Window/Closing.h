// Closes documents and the window: asks about unsaved changes, and waits for files that are
// written.
#pragma once

#include "player/App/Player.h"

#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <map>
#include <vector>

namespace tarnwick::player {

class FileActions;

class Closing : public QObject {
    Q_OBJECT

  public:
    Closing(Player& player, QMainWindow& window, FileActions& files);

    // Closes the document, unless the author decides otherwise; at once, or when its file is
    // written.
    void close(OpenDocument* document);
    // Whether the window may close now. Otherwise it closes itself later, unless the author decides
    // otherwise. While a file is not written, a message offers to stay or to close without it.
    bool mayCloseWindow();
    // Ends the drafts of all documents but those that the author left unsaved.
    void discardDrafts();

  private:
    using Documents = std::vector<QPointer<OpenDocument>>;

    bool settles(const Documents& documents, std::function<void()> again);
    bool ask(OpenDocument* document);
    void wait(const Documents& documents, std::function<void()> again);
    void look();
    void cancel();
    void offer();
    void leave();

    Player& player_;
    QMainWindow& window_;
    FileActions& files_;
    Documents waited_;                            // whose files are waited for
    std::function<void()> again_;                 // when they are written; empty: nothing waits
    std::map<const OpenDocument*, bool> decided_; // not to be saved; true: kept as a draft
    QTimer patience_;                             // until offer()
    QPointer<QMessageBox> message_;
};

} // namespace tarnwick::player
