// The texts of the open documents, a tab each, with the bar that finds in them.
#pragma once

#include "player/App/Player.h"

#include <QWidget>
#include <map>

class QTabWidget;

namespace tarnwick::player {

class EpisodeEditor;
class FindBar;

class DocumentTabs : public QWidget {
    Q_OBJECT

  public:
    explicit DocumentTabs(Player& player, QWidget* parent = nullptr);

    EpisodeEditor* editor() const;                       // of the active document; null without one
    EpisodeEditor* editor(OpenDocument* document) const; // null if it is not open
    FindBar& find() { return *find_; }

  signals:
    void closeWanted(tarnwick::player::OpenDocument* document);
    // Of the active document; an empty title without one.
    void titleChanged(const QString& title, bool isModified);

  private:
    void addTab(OpenDocument* document);
    void removeTab(OpenDocument* document);
    void showActive();
    void showTitle(OpenDocument* document);
    void tellTitle();
    OpenDocument* documentOf(int tab) const;

    Player& player_;
    QTabWidget* tabs_;
    FindBar* find_;
    std::map<OpenDocument*, EpisodeEditor*> editors_;
};

} // namespace tarnwick::player
