#include "player/ExportPanel/MovieFormatForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr int leastSide = 16, mostSide = 8192; // pixels, as the command line has them
constexpr int mostRate = 240;                  // frames per second

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The planes are those of Y', Cb, Cr and alpha.
bool hasAlpha(const ExportPreset& preset) {
    return planeShapes(videoCodecRow(preset.codec).pixelFormat).size() == 4;
}

// "H.264, .mp4, 5 Mbit/s, opaque"
QString factsOf(const ExportPreset& preset) {
    const VideoCodecRow& row = videoCodecRow(preset.codec);
    constexpr std::int64_t mega = 1'000'000;
    return QObject::tr("%1, .%2, %3, %4")
        .arg(textOf(row.standard), textOf(preset.fileExtension()),
             preset.bitrate == 0 ? QObject::tr("fixed quality")
                                 : QObject::tr("%1 Mbit/s").arg(preset.bitrate / mega),
             hasAlpha(preset) ? QObject::tr("with the episode's alpha") : QObject::tr("opaque"));
}

QSpinBox* sideBox(const QString& name) {
    auto* box = new QSpinBox;
    box->setRange(leastSide, mostSide);
    box->setSingleStep(2);
    box->setAccessibleName(name);
    return box;
}

} // namespace

MovieFormatForm::MovieFormatForm(bool hasSound, QWidget* parent) : QWidget(parent) {
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    addPresets();
    facts_ = new QLabel;
    form->addRow(tr("&Preset:"), presets_);
    form->addRow(QString(), facts_);
    addSize();
    auto* size = new QHBoxLayout;
    size->addWidget(width_);
    size->addWidget(new QLabel(QStringLiteral("\u00d7")));
    size->addWidget(height_);
    size->addStretch(1);
    auto* sizeLabel = new QLabel(tr("&Size:"));
    sizeLabel->setBuddy(width_);
    form->addRow(sizeLabel, size);
    form->addRow(tr("&Frames per second:"), rate_);
    draft_ = new QCheckBox(tr("&Draft: half the size, quickly encoded"));
    sound_ = new QCheckBox(tr("S&ound"));
    sound_->setChecked(hasSound);
    sound_->setEnabled(hasSound);
    if (!hasSound)
        sound_->setToolTip(tr("The episode has no sound."));
    watermark_ = new QCheckBox(tr("Wa&termark"));
    for (QCheckBox* box : {sound_, watermark_, draft_}) {
        form->addRow(QString(), box);
        connect(box, &QCheckBox::toggled, this, &MovieFormatForm::changed);
    }
    connect(presets_, &QComboBox::currentIndexChanged, this, &MovieFormatForm::showPreset);
    for (QSpinBox* box : {width_, height_, rate_})
        connect(box, &QSpinBox::valueChanged, this, &MovieFormatForm::changed);
    setFocusProxy(presets_);
    showPreset();
}

void MovieFormatForm::addPresets() {
    presets_ = new QComboBox;
    presets_->setAccessibleName(tr("Preset"));
    for (const ExportPreset& preset : ExportPreset::all())
        presets_->addItem(textOf(preset.name), textOf(preset.id));
    presets_->insertSeparator(presets_->count());
    for (const ExportPreset& preset : ExportPreset::pro())
        presets_->addItem(textOf(preset.name), textOf(preset.id));
    presets_->setCurrentIndex(presets_->findData(textOf(ExportPreset::web.id)));
}

void MovieFormatForm::addSize() {
    width_ = sideBox(tr("Width in pixels"));
    height_ = sideBox(tr("Height in pixels"));
    rate_ = new QSpinBox;
    rate_->setRange(1, mostRate);
    rate_->setAccessibleName(tr("Frames per second"));
}

ExportPreset MovieFormatForm::preset() const {
    return ExportPreset::named(presets_->currentData().toString().toStdString())
        .value_or(ExportPreset::web);
}

std::int64_t MovieFormatForm::framesPerSecond() const {
    return rate_->value();
}

void MovieFormatForm::showPreset() {
    const ExportPreset chosen = preset();
    facts_->setText(factsOf(chosen));
    width_->setValue(static_cast<int>(chosen.width));
    height_->setValue(static_cast<int>(chosen.height));
    rate_->setValue(static_cast<int>(chosen.fps));
    emit changed();
}

// Chroma requires even sides.
PixelSize MovieFormatForm::size() const {
    return PixelSize::of(width_->value() / 2 * 2, height_->value() / 2 * 2).value();
}

MovieFormat MovieFormatForm::format() const {
    const ExportPreset chosen = preset();
    MovieFormat format{.preset = chosen.id,
                       .isDraft = draft_->isChecked(),
                       .hasSound = sound_->isChecked(),
                       .hasWatermark = watermark_->isChecked()};
    if (size() != PixelSize::of(chosen.width, chosen.height))
        format.size = size();
    if (rate_->value() != chosen.fps)
        format.framesPerSecond = rate_->value();
    return format;
}

} // namespace tarnwick::player
