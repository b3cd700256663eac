#include "player/Panels/PageWheel.h"

#include <QEvent>
#include <QWidget>

namespace tarnwick::player {
namespace {

class PageWheel : public QObject {
  public:
    explicit PageWheel(QWidget& control) : QObject(&control), control_(control) {
        control.installEventFilter(this);
    }

  protected:
    // An ignored wheel goes on to the widgets around.
    bool eventFilter(QObject*, QEvent* event) override {
        const bool isLeft = event->type() == QEvent::Wheel && !control_.hasFocus();
        if (isLeft)
            event->ignore();
        return isLeft;
    }

  private:
    QWidget& control_;
};

} // namespace

void leaveWheelToPage(QWidget& control) {
    control.setFocusPolicy(Qt::StrongFocus);
    new PageWheel(control);
}

} // namespace tarnwick::player
