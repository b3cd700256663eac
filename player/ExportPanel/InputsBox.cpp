#include "player/ExportPanel/InputsBox.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tarnwick::player {

InputsBox::InputsBox(const InputCopies& inputs, ShownSound sound, QWidget* parent)
    : QGroupBox(tr("Inputs"), parent), text_(new QLabel) {
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    (new QVBoxLayout(this))->addWidget(text_);
    show(inputs, sound);
}

void InputsBox::show(const InputCopies& inputs, ShownSound sound) {
    QStringList lines;
    for (const ChannelCopy& channel : inputs.channels)
        lines += channel.file.empty()
                     ? tr("Channel %1: an episode").arg(QString::fromStdString(channel.address))
                     : tr("Channel %1: %2")
                           .arg(QString::fromStdString(channel.address),
                                QString::fromStdString(channel.file.filename().string()));
    const QString file = QString::fromStdString(inputs.sound.filename().string());
    if (!file.isEmpty() && sound == ShownSound::ignored)
        lines += tr("%1 is not heard here: a movie has the episode's own sound, a picture silence.")
                     .arg(file);
    else if (!file.isEmpty())
        lines += inputs.playsSound ? tr("Sound: %1, which the movie has too").arg(file)
                                   : tr("Sound: %1").arg(file);
    for (const std::string& remark : inputs.remarks)
        lines += QString::fromStdString(remark);
    showSentence(lines.join(QLatin1Char('\n')));
}

void InputsBox::showSentence(const QString& sentence) {
    text_->setText(sentence);
    setVisible(!sentence.isEmpty());
}

} // namespace tarnwick::player
