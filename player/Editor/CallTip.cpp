#include "player/Editor/CallTip.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace tarnwick::player {
namespace {

constexpr std::size_t mostSignatures = 4;
constexpr int widest = 620; // pixels

QString escaped(const std::string& text) {
    return QString::fromStdString(text).toHtmlEscaped();
}

QString emphasised(const std::string& signature, std::size_t argument) {
    const auto [begin, end] = argumentRange(signature, argument);
    if (end <= begin)
        return escaped(signature);
    return escaped(signature.substr(0, begin)) + QStringLiteral("<b><u>") +
           escaped(signature.substr(begin, end - begin)) + QStringLiteral("</u></b>") +
           escaped(signature.substr(end));
}

bool hasArgument(const std::string& signature, std::size_t argument) {
    const auto [begin, end] = argumentRange(signature, argument);
    return end > begin;
}

} // namespace

QString richText(const CallHelp& help, std::size_t most) {
    std::vector<std::string> fitting = help.signatures;
    if (help.argument)
        std::ranges::stable_partition(
            fitting, [&](const std::string& one) { return hasArgument(one, *help.argument); });
    QStringList lines;
    for (std::size_t index = 0; index < std::min(fitting.size(), most); ++index)
        lines +=
            help.argument ? emphasised(fitting[index], *help.argument) : escaped(fitting[index]);
    if (fitting.size() > most)
        lines += QObject::tr("and %n more", nullptr, static_cast<int>(fitting.size() - most));
    QString text = QStringLiteral("<code>%1</code>").arg(lines.join(QStringLiteral("<br>")));
    if (!help.sentence.empty())
        text += QStringLiteral("<br>") + escaped(help.sentence);
    return text;
}

CallTip::CallTip(QWidget* parent) : QLabel(parent, Qt::ToolTip) {
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setMargin(5);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAutoFillBackground(true);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAccessibleName(tr("Help for the function"));
    setFocusPolicy(Qt::NoFocus);
}

void CallTip::showHelp(const CallHelp& help, const QRect& line) {
    showText(richText(help, mostSignatures), line);
}

void CallTip::showMessage(const QString& message, const QRect& line) {
    showText(message.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")), line);
}

void CallTip::showText(const QString& text, const QRect& line) {
    setText(text);
    setWordWrap(false);
    if (sizeHint().width() > widest) {
        setWordWrap(true);
        setFixedWidth(widest);
    } else {
        setMinimumWidth(0);
        setMaximumWidth(QWIDGETSIZE_MAX);
    }
    adjustSize();
    const QScreen* on = QGuiApplication::screenAt(line.center());
    const QRect room = on != nullptr ? on->availableGeometry() : line;
    QPoint place(std::min(line.left(), room.right() - width()), line.top() - height() - 2);
    if (place.y() < room.top())
        place.setY(line.bottom() + 2);
    move(std::max(place.x(), room.left()), place.y());
    show();
}

} // namespace tarnwick::player
