// The player's window.
#pragma once

#include "player/App/Player.h"

#include <QMainWindow>
#include <map>

class QTabWidget;

namespace tarnwick::player {

class EpisodeEditor;
class FindBar;
class OutputWindow;
class PictureView;
class TransportBar;

class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    explicit MainWindow(Player& player);

    // Opens a file, or says why not.
    void open(const QString& file);
    void newEpisode();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void makeDocks();
    void makeMenus();
    QAction* action(class QMenu* menu, const QString& text, const QKeySequence& keys,
                    const std::function<void()>& run);

    void addTab(OpenDocument* document);
    void removeTab(OpenDocument* document);
    void showTitle(OpenDocument* document);
    EpisodeEditor* editor() const; // of the active document; null without one
    OpenDocument* documentOf(int tab) const;

    void openByDialog();
    bool save(OpenDocument* document);
    bool saveAs(OpenDocument* document);
    bool mayClose(OpenDocument* document);
    void answerChangeOutside(OpenDocument* document);
    void tell(const QString& sentence);

    void showState();
    void fitPicture();
    void takeSnapshot();
    // Shows the picture alone on a display, or ends that.
    void toggleOutput(class QScreen* screen);

    Player& player_;
    QTabWidget* tabs_;
    FindBar* find_;
    PictureView* picture_;
    TransportBar* transport_;
    OutputWindow* output_ = nullptr; // null while it is not shown
    std::map<OpenDocument*, EpisodeEditor*> editors_;
    QTimer settle_; // after the picture was resized
    bool showsFigures_ = false;
};

} // namespace tarnwick::player
