// What will be sent to the sharing service: picture, movie, text and words.
#pragma once

#include "TarnwickCore/Service/ShareUpload.h"

#include <QTabWidget>
#include <filesystem>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace tarnwick::player {

class SharePreview : public QTabWidget {
    Q_OBJECT

  public:
    explicit SharePreview(const QString& text, QWidget* parent = nullptr);

    // Shows the still and the size of the movie of a folder that holds a preview. Reads them on
    // another thread.
    void showMedia(const std::filesystem::path& folder);
    void showWords(const ShareUpload& upload);

  private:
    QWidget* media();

    QLabel* still_;
    QLabel* sizes_;
    QPushButton* play_;
    QPlainTextEdit* words_;
    std::filesystem::path loop_;
};

} // namespace tarnwick::player
