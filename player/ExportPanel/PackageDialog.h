// Title and folder of a SwiftUI package.
#pragma once

#include "player/Exports/EpisodeOrders.h"

#include <QDialog>

class QLineEdit;

namespace tarnwick::player {

class FileField;
class LastFolders;

class PackageDialog : public QDialog {
    Q_OBJECT

  public:
    // `title` is the proposed one.
    PackageDialog(LastFolders& folders, EpisodeCopy episode, const QString& title,
                  QWidget* parent = nullptr);

    PackageRequest request() const;

  private:
    LastFolders& folders_;
    EpisodeCopy episode_;
    QLineEdit* title_;
    FileField* folder_;
};

} // namespace tarnwick::player
