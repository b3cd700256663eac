// Names the inputs that an export has, and those that are silent or black in it.
#pragma once

#include "player/Exports/InputCopies.h"

#include <QGroupBox>

class QLabel;

namespace tarnwick::player {

// Hidden if there is nothing to name.
class InputsBox : public QGroupBox {
    Q_OBJECT

  public:
    InputsBox(const InputCopies& inputs, QWidget* parent);

    void show(const InputCopies& inputs);
    // One sentence instead.
    void showSentence(const QString& sentence);

  private:
    QLabel* text_;
};

} // namespace tarnwick::player
