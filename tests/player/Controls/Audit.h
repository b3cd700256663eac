// What is wrong with the controls of a dialog or a panel, as text; empty: nothing.
#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <map>
#include <set>
#include <string>

namespace tarnwick::player {

// Parts that Qt makes inside its own widgets, such as the field of a spin box.
inline bool isInner(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    return widget.objectName().startsWith(QLatin1String("qt_")) ||
           qobject_cast<const QScrollBar*>(&widget) || qobject_cast<const QScrollArea*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(parent) ||
           qobject_cast<const QComboBox*>(parent) || qobject_cast<const QLineEdit*>(parent) ||
           (parent != nullptr &&
            (parent->inherits("QTabBar") || parent->inherits("QDockWidget") ||
             parent->inherits("QComboBoxPrivateContainer") ||
             parent->inherits("QAbstractItemView") || parent->inherits("QFileDialog")));
}

inline bool isControl(const QWidget& widget) {
    return qobject_cast<const QAbstractButton*>(&widget) ||
           qobject_cast<const QAbstractSlider*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QAbstractItemView*>(&widget) ||
           widget.inherits("QsciScintillaBase") || widget.focusPolicy() == Qt::StrongFocus;
}

// Class and text of a widget, for messages.
inline std::string descriptionOf(const QWidget& widget) {
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const QString words = button != nullptr ? button->text() : widget.accessibleName();
    return std::string(widget.metaObject()->className()) + " \"" + words.toStdString() + "\"";
}

// Controls whose name assistive technology cannot tell.
inline std::string namelessControls(const QWidget& part) {
    std::string found;
    for (QWidget* widget : part.findChildren<QWidget*>()) {
        if (!isControl(*widget) || isInner(*widget))
            continue;
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
        if (accessible == nullptr || accessible->text(QAccessible::Name).isEmpty())
            found += descriptionOf(*widget) + " in " +
                     (widget->parentWidget() ? descriptionOf(*widget->parentWidget()) : "") + "\n";
    }
    return found;
}

// The underlined letter; empty: none.
inline QString letterOf(const QString& text) {
    return QKeySequence::mnemonic(text).toString();
}

// Visible controls whose letter is in `taken`, or is another control's.
inline std::string doubledLetters(const QWidget& part, const std::set<QString>& taken) {
    std::map<QString, std::string> owners;
    for (const QString& letter : taken)
        owners[letter] = "the window";
    std::string found;
    for (const QWidget* widget : part.findChildren<QWidget*>()) {
        QString letter;
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            letter = letterOf(button->text());
        else if (const auto* label = qobject_cast<const QLabel*>(widget); label && label->buddy())
            letter = letterOf(label->text());
        else if (const auto* group = qobject_cast<const QGroupBox*>(widget))
            letter = letterOf(group->title());
        if (letter.isEmpty() || !widget->isVisible())
            continue;
        const auto* label = qobject_cast<const QLabel*>(widget);
        const std::string name =
            label != nullptr ? label->text().toStdString() : descriptionOf(*widget);
        const auto [owner, isNew] = owners.emplace(letter, name);
        if (!isNew)
            found += letter.toStdString() + ": " + owner->second + " and " + name + "\n";
    }
    return found;
}

// Controls that Tab reaches after one that is below them, or to the right in the same row.
inline std::string disorderOfTabs(QWidget& part) {
    std::string found;
    const QWidget* before = nullptr;
    const auto placeOf = [&](const QWidget& widget) {
        return QRect(widget.mapTo(&part, QPoint()), widget.size());
    };
    for (QWidget* widget = part.nextInFocusChain(); widget != &part;
         widget = widget->nextInFocusChain()) {
        const bool isReached = part.isAncestorOf(widget) && widget->isVisible() &&
                               (widget->focusPolicy() & Qt::TabFocus) != 0 && !isInner(*widget) &&
                               !widget->focusProxy();
        if (!isReached)
            continue;
        if (before != nullptr) {
            const QRect last = placeOf(*before), here = placeOf(*widget);
            const bool isAbove = here.bottom() < last.top() && here.left() <= last.right();
            const bool isLeft = here.right() < last.left() && here.top() <= last.bottom() &&
                                here.bottom() >= last.top();
            if (isAbove || isLeft)
                found += descriptionOf(*widget) + " after " + descriptionOf(*before) + "\n";
        }
        before = widget;
    }
    return found;
}

} // namespace tarnwick::player
