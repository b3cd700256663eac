// Applies moves to a document as the sliders and the transport's buttons do.
#pragma once

#include "player/App/OpenDocument.h"
#include "player/Control/ControlRouter.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

namespace tarnwick::player {

// On the thread of the windows. All values until a pause of a second are one change that can be
// undone.
class DocumentMoves : public QObject {
    Q_OBJECT

  public:
    explicit DocumentMoves(QObject* parent = nullptr);

    // Values write keys at the present time. Otherwise they set base values, and parameters with
    // keys are held (OpenDocument::hold).
    void setWritesKeys(bool isOn) { writesKeys_ = isOn; }

    void apply(OpenDocument& document, const ParamValues& values);
    void endGesture();

  private:
    QPointer<OpenDocument> moved_; // whose gesture is open
    QTimer pause_;                 // after the last values
    bool writesKeys_ = false;
};

void apply(OpenDocument& document, const TransportMove& move);

} // namespace tarnwick::player
