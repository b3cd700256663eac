// Opens files and links that are dropped anywhere on the window.
#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

class QMimeData;
class QWidget;

namespace tarnwick::player {

// Takes episodes, folders, JSON and links, before the part of the window under the pointer sees
// them. Other files are left to that part.
class DroppedFiles : public QObject {
    Q_OBJECT

  public:
    // `isLink` tells which addresses are taken too.
    DroppedFiles(QWidget& window, std::function<bool(const QString& text)> isLink,
                 std::function<void(const QString& place)> open);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool isOfWindow(const QObject* watched) const;
    QStringList taken(const QMimeData& data) const; // empty unless all places are taken

    QWidget& window_;
    std::function<bool(const QString&)> isLink_;
    std::function<void(const QString&)> open_;
    QStringList places_; // of the drag over the window, if they are taken
};

} // namespace tarnwick::player
