// The picture alone on a whole display, for a stage.
#pragma once

#include "player/Window/PictureView.h"

class QScreen;

namespace tarnwick::player {

enum class OutputFocus : std::uint8_t { takes, leavesToWindow };

// Deletes itself when it is closed, also by Escape.
class OutputWindow : public QWidget {
    Q_OBJECT

  public:
    // Covers `screen`, also after a change of its resolution.
    OutputWindow(Player& player, int target, QScreen& screen, OutputFocus focus);

    PictureView& view() { return *view_; }
    const QScreen& display() const { return screen_; } // may be removed: compare its address only

  signals:
    void closed();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    PictureView* view_;
    QScreen& screen_;
};

} // namespace tarnwick::player
