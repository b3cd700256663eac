// The signature and description of a function, or the message of a problem, beside its place in the
// text. It never takes the focus.
#pragma once

#include "player/Writing/CallHelp.h"

#include <QLabel>

namespace tarnwick::player {

class CallTip : public QLabel {
    Q_OBJECT

  public:
    explicit CallTip(QWidget* parent);

    // Above or below `line`, a rectangle on the screen. The argument of the help is emphasised.
    void showHelp(const CallHelp& help, const QRect& line);
    void showMessage(const QString& message, const QRect& line);

  private:
    void showText(const QString& text, const QRect& line);
};

// The help as rich text. At most `mostSignatures` of them, the first that have its argument.
QString richText(const CallHelp& help, std::size_t mostSignatures);

} // namespace tarnwick::player
