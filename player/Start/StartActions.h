// The start page and the folder browser in the window.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"
#include "player/Finding/FolderListing.h"
#include "player/Grid/ThumbnailService.h"

#include <QMainWindow>
#include <QPointer>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <vector>

class QDockWidget;
class QLabel;
class QMenu;
class QStackedWidget;

namespace tarnwick::player {

class FolderBrowser;
class StartPage;

// Puts the start page in the place of the window's content while no episode is open, and when the
// user asks for it. The docks are hidden then. Keeps the list of recent episodes.
class StartActions : public QObject {
    Q_OBJECT

  public:
    // The window has its central widget already. `openByDialog` asks for episodes to open.
    StartActions(Player& player, QMainWindow& window, Actions& actions, ThumbnailService& service,
                 std::function<void()> openByDialog);

    void openFolder(const std::filesystem::path& folder);
    bool isShown() const;
    // The places of docks and bars, as they are without the start page; for QMainWindow.
    QByteArray windowState() const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget* start(ThumbnailService& service, std::function<void()> openByDialog);
    void showStart();
    void showWork();
    void toggle();
    void openFolderByDialog();
    void openFile(const QString& file);
    void noteRecent(OpenDocument* document);
    void addMenu(Actions& actions);
    void readRecent(std::filesystem::path added); // adds a file to the list, unless it is empty
    void showRecent(const std::vector<FolderEntry>& files);

    Player& player_;
    QMainWindow& window_;
    QMenu* recent_ = nullptr;
    // Of the file of recent episodes; shared with background work, which may outlive this.
    std::shared_ptr<std::mutex> recentMutex_ = std::make_shared<std::mutex>();
    QStackedWidget* whole_; // the work, the start
    QStackedWidget* pages_; // the start page, the folder
    StartPage* page_;
    FolderBrowser* browser_;
    QLabel* message_;
    QByteArray stateBefore_; // of the window, while the start is shown
    std::vector<QPointer<QDockWidget>> hidden_;
    std::set<std::filesystem::path> noted_;
};

} // namespace tarnwick::player
