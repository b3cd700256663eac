// Opens files that are dropped anywhere on the window.
#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

class QMimeData;
class QWidget;

namespace tarnwick::player {

// Takes episodes, folders and JSON, before the part of the window under the pointer sees them.
// Other files are left to that part.
class DroppedFiles : public QObject {
    Q_OBJECT

  public:
    DroppedFiles(QWidget& window, std::function<void(const QString& file)> open);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool isOfWindow(const QObject* watched) const;

    QWidget& window_;
    std::function<void(const QString&)> open_;
    QStringList files_; // of the drag over the window, if they are taken
};

} // namespace tarnwick::player
