// The episodes and folders of a folder, with stills.
#pragma once

#include "player/Finding/FolderListing.h"
#include "player/Grid/CellGrid.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace tarnwick::player {

class FolderBrowser : public QWidget {
    Q_OBJECT

  public:
    explicit FolderBrowser(ThumbnailService& service, QWidget* parent = nullptr);

    const std::filesystem::path& folder() const { return listing_.folder; }
    // Reads the folder in the background, and again with refresh().
    void open(const std::filesystem::path& folder);
    void refresh() { open(listing_.folder); }

  signals:
    void fileChosen(const QString& file);
    void backWanted(); // to the start page

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

  private:
    QWidget* bar();
    QToolButton* button(const QString& text, const QString& name);
    void show(FolderListing listing);
    void showEntries();
    void choose(int row);
    void goUp();

    FolderListing listing_;
    std::vector<FolderEntry> shown_;
    int reading_ = 0; // number of the newest reading; earlier ones are ignored
    CellGrid* grid_;
    QLabel* place_;
    QLabel* state_;
    QLineEdit* filter_;
    QComboBox* order_;
    QToolButton* up_;
};

} // namespace tarnwick::player
