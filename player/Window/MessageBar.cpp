#include "player/Window/MessageBar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace tarnwick::player {
namespace {

constexpr qsizetype mostShown = 3;

} // namespace

MessageBar::MessageBar(QWidget* parent) : QWidget(parent) {
    text_ = new QLabel;
    text_->setWordWrap(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text_->setTextFormat(Qt::PlainText);
    text_->setAccessibleName(tr("Messages"));
    auto* close = new QToolButton;
    close->setText(tr("Dismiss"));
    close->setAutoRaise(true);
    connect(close, &QToolButton::clicked, this, &MessageBar::dismiss);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(text_, 1);
    row->addWidget(close);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    hide();
}

void MessageBar::tell(const QString& sentence) {
    if (sentence.isEmpty() || sentences_.contains(sentence))
        return;
    sentences_.append(sentence);
    show();
    QAccessibleEvent alert(text_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void MessageBar::dismiss() {
    sentences_.clear();
    hide();
}

void MessageBar::show() {
    QStringList shown = sentences_.mid(std::max<qsizetype>(0, sentences_.size() - mostShown));
    if (sentences_.size() > mostShown)
        shown.prepend(tr("%1 earlier messages").arg(sentences_.size() - mostShown));
    text_->setText(shown.join(QLatin1Char('\n')));
    setVisible(true);
}

} // namespace tarnwick::player
