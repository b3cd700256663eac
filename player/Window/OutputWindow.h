// The picture alone on a whole display, for a stage.
#pragma once

#include "player/Window/PictureView.h"

class QScreen;

namespace tarnwick::player {

// Escape closes it.
class OutputWindow : public QWidget {
    Q_OBJECT

  public:
    // Covers `screen`.
    OutputWindow(Player& player, int target, QScreen& screen);

    PictureView& view() { return *view_; }

  signals:
    void closed();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    PictureView* view_;
};

} // namespace tarnwick::player
