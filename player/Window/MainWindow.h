// The player's window.
#pragma once

#include "player/Actions/Actions.h"
#include "player/App/Player.h"

#include <QMainWindow>

class QDockWidget;

namespace tarnwick::player {

class DocumentTabs;
class ExportFeature;
class FileActions;
class MessageBar;
class PictureActions;
class PictureView;
class StartActions;
class TransportBar;

class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit MainWindow(Player& player);

    // Opens a file, or says why not. A folder is shown with its episodes.
    void open(const QString& file);
    void newEpisode();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    QWidget* texts();
    QWidget* pictures();
    void makeDocks();
    // Each part of the window that has actions of its own.
    void makeFeatures();
    QDockWidget* addDock(QWidget* content, const QString& title, const char* name,
                         Qt::DockWidgetArea area);

    Player& player_;
    Actions actions_;
    DocumentTabs* tabs_;
    MessageBar* messages_;
    PictureView* picture_;
    TransportBar* transport_;
    FileActions* files_ = nullptr;
    PictureActions* pictureActions_ = nullptr;
    StartActions* start_ = nullptr;
    ExportFeature* exports_ = nullptr;
};

} // namespace tarnwick::player
