// The page without an open episode: recent episodes, those that come with the program, templates.
#pragma once

#include "player/Finding/FolderListing.h"
#include "player/Grid/CellGrid.h"

#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace tarnwick::player {

class StartPage : public QWidget {
    Q_OBJECT

  public:
    explicit StartPage(ThumbnailService& service, QWidget* parent = nullptr);

    // Reads the lists again, in the background.
    void refresh();

  signals:
    void fileChosen(const QString& file);
    void textChosen(const QString& text); // of a template
    void openWanted();
    void openFolderWanted();

  protected:
    void focusInEvent(QFocusEvent* event) override;

  private:
    struct Section {
        QLabel* title;
        CellGrid* grid;
    };
    struct Lists {
        std::vector<FolderEntry> recent, shipped;
    };

    QWidget* head();
    Section section(QVBoxLayout& column, const QString& title, int pictureWidth);
    void show(const Lists& lists);
    void showTemplates();
    void chooseFile(const CellGrid* grid, int row);

    ThumbnailService& service_;
    Section recent_{}, shipped_{}, templates_{};
};

} // namespace tarnwick::player
