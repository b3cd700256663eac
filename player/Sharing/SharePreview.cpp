#include "player/Sharing/SharePreview.h"

#include "player/App/Background.h"

#include <nlohmann/json.hpp>

#include <QDesktopServices>
#include <QFontDatabase>
#include <QImage>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <system_error>

namespace tarnwick::player {
namespace {

constexpr QSize stillSize(480, 270); // points

struct Media {
    QImage still;
    std::uintmax_t stillBytes = 0, loopBytes = 0;
};

std::uintmax_t sizeOf(const std::filesystem::path& file) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return error ? 0 : size;
}

Media mediaIn(const std::filesystem::path& folder) {
    const auto thumb = folder / "thumb.jpg";
    return {.still = QImage(QString::fromStdString(thumb.string())),
            .stillBytes = sizeOf(thumb),
            .loopBytes = sizeOf(folder / "loop.mp4")};
}

QPlainTextEdit* readOnly(const QString& name) {
    auto* text = new QPlainTextEdit;
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setAccessibleName(name);
    return text;
}

} // namespace

SharePreview::SharePreview(const QString& text, QWidget* parent) : QTabWidget(parent) {
    addTab(media(), tr("Picture and movie"));
    QPlainTextEdit* source = readOnly(tr("Text of the episode"));
    source->setPlainText(text);
    addTab(source, tr("Text"));
    words_ = readOnly(tr("Words and parameters"));
    addTab(words_, tr("Words and parameters"));
    setAccessibleName(tr("What will be sent"));
}

QWidget* SharePreview::media() {
    auto* media = new QWidget;
    auto* column = new QVBoxLayout(media);
    still_ = new QLabel(tr("The picture and the movie are being drawn."));
    still_->setAlignment(Qt::AlignCenter);
    still_->setMinimumSize(stillSize);
    sizes_ = new QLabel;
    play_ = new QPushButton(tr("&Play the movie"));
    play_->setAutoDefault(false);
    play_->setEnabled(false);
    connect(play_, &QPushButton::clicked, this, [this] {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(loop_.string())));
    });
    column->addWidget(still_, 1);
    column->addWidget(sizes_);
    column->addWidget(play_, 0, Qt::AlignLeft);
    return media;
}

void SharePreview::showMedia(const std::filesystem::path& folder) {
    loop_ = folder / "loop.mp4";
    inBackground(
        this, [folder] { return mediaIn(folder); },
        [this](const Media& drawn) {
            still_->setPixmap(QPixmap::fromImage(
                drawn.still.scaled(stillSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
            still_->setAccessibleName(tr("Still that will be sent"));
            constexpr double kilobyte = 1000;
            sizes_->setText(tr("Still: %1 x %2, %3 kB. Movie: %4 kB.")
                                .arg(drawn.still.width())
                                .arg(drawn.still.height())
                                .arg(static_cast<double>(drawn.stillBytes) / kilobyte, 0, 'f', 0)
                                .arg(static_cast<double>(drawn.loopBytes) / kilobyte, 0, 'f', 0));
            play_->setEnabled(drawn.loopBytes > 0);
        });
}

// The JSON that is sent, with line breaks.
void SharePreview::showWords(const ShareUpload& upload) {
    try {
        const auto words = nlohmann::ordered_json::parse(upload.metaJSON());
        words_->setPlainText(QString::fromStdString(words.dump(2)));
    } catch (const ShareUploadError& error) {
        words_->setPlainText(QString::fromStdString(error.what()));
    }
}

} // namespace tarnwick::player
