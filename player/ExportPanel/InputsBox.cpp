#include "player/ExportPanel/InputsBox.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tarnwick::player {

InputsBox::InputsBox(const InputCopies& inputs, QWidget* parent)
    : QGroupBox(tr("Inputs"), parent), text_(new QLabel) {
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    (new QVBoxLayout(this))->addWidget(text_);
    show(inputs);
}

void InputsBox::show(const InputCopies& inputs) {
    QStringList lines;
    for (const ChannelCopy& channel : inputs.channels)
        lines += channel.file.empty()
                     ? tr("Channel %1: an episode").arg(QString::fromStdString(channel.address))
                     : tr("Channel %1: %2")
                           .arg(QString::fromStdString(channel.address),
                                QString::fromStdString(channel.file.filename().string()));
    const QString file = QString::fromStdString(inputs.sound.filename().string());
    if (!file.isEmpty())
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
