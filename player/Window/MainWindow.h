// The player's window.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>
#include <functional>

class QDockWidget;

namespace tarnwick::player {

class ChannelActions;
class Closing;
class DocumentTabs;
class ExportFeature;
class FileActions;
class MessageBar;
class PerformanceFeature;
class PictureActions;
class PictureView;
class SettingsFileActions;
class SharingFeature;
class StartActions;
class ThumbnailService;
class TransportBar;

class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit MainWindow(Player& player);

    // Opens files and links of the sharing service, or says why not. A folder is shown with its
    // episodes; settings and keys (.json) are loaded into the active episode. Files are read in the
    // background; `then` is called after the last episode.
    void open(const QStringList& files, const std::function<void()>& then = {});
    void newEpisode();
    ChannelActions& channels() { return *channels_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QWidget* texts();
    QWidget* pictures();
    void makeDocks();
    // Each part of the window that has actions of its own.
    void makeFeatures();
    void openSorted(const QStringList& files, const QStringList& folders,
                    const std::function<void()>& then);
    QDockWidget* addDock(QWidget* content, const QString& title, const char* name,
                         Qt::DockWidgetArea area);

    Player& player_;
    Actions actions_;
    DocumentTabs* tabs_;
    MessageBar* messages_;
    PictureView* picture_;
    TransportBar* transport_;
    ChannelActions* channels_ = nullptr;
    FileActions* files_ = nullptr;
    Closing* closing_ = nullptr;
    PictureActions* pictureActions_ = nullptr;
    ThumbnailService* thumbnails_ = nullptr;
    StartActions* start_ = nullptr;
    ExportFeature* exports_ = nullptr;
    SettingsFileActions* settingsFiles_ = nullptr;
    SharingFeature* sharing_ = nullptr;
    PerformanceFeature* performances_ = nullptr;
};

} // namespace tarnwick::player
