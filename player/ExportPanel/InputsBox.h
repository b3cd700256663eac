// Names the inputs that an export has, and those that are silent or black in it.
#pragma once

#include "player/Exports/InputCopies.h"

#include <QGroupBox>

class QLabel;

namespace tarnwick::player {

enum class ShownSound : std::uint8_t { heard, ignored };

// Hidden if there is nothing to name.
class InputsBox : public QGroupBox {
    Q_OBJECT

  public:
    InputsBox(const InputCopies& inputs, ShownSound sound, QWidget* parent);

    // ignored: the export does not hear the sound file.
    void show(const InputCopies& inputs, ShownSound sound);
    // One sentence instead.
    void showSentence(const QString& sentence);

  private:
    QLabel* text_;
};

} // namespace tarnwick::player
