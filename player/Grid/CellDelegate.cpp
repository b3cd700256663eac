#include "player/Grid/CellDelegate.h"

#include "player/Grid/CellModel.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>
#include <QTextOption>

namespace tarnwick::player {
namespace {

constexpr int margin = 6;

QFont smaller(QFont font) {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * 0.9);
    return font;
}

} // namespace

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const int lines =
        QFontMetrics(option.font).height() + QFontMetrics(smaller(option.font)).height();
    return {pictureWidth_ + 2 * margin, pictureWidth_ * 9 / 16 + lines + 3 * margin};
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const QStyle& style =
        option.widget != nullptr ? *option.widget->style() : *QApplication::style();
    painter->save();
    QStyleOptionViewItem cell = option;
    cell.showDecorationSelected = true;
    style.drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, option.widget);
    const QRect inner = option.rect.adjusted(margin, margin, -margin, -margin);
    const QRect picture(inner.topLeft(), QSize(pictureWidth_, pictureWidth_ * 9 / 16));
    paintPicture(*painter, option, index, picture);

    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const auto group =
        option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    QColor color =
        option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    QRect line(inner.left(), picture.bottom() + margin / 2, inner.width(),
               QFontMetrics(option.font).height());
    const auto write = [&](const QFont& font, const QString& text) {
        painter->setFont(font);
        painter->setPen(color);
        painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                          QFontMetrics(font).elidedText(text, Qt::ElideRight, line.width()));
        line.translate(0, line.height());
    };
    write(option.font, index.data(Qt::DisplayRole).toString());
    color.setAlphaF(0.7F);
    write(smaller(option.font), index.data(CellModel::detailRole).toString());
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.rect = option.rect.adjusted(1, 1, -1, -1);
        style.drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
    }
    painter->restore();
}

// The picture; the icon of a folder; the sign of an episode that cannot be drawn, with the reason;
// or an empty place until the picture is drawn.
void CellDelegate::paintPicture(QPainter& painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index, const QRect& place) const {
    const auto image = index.data(CellModel::imageRole).value<QImage>();
    if (!image.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(place, image);
        return;
    }
    painter.fillRect(place, option.palette.color(QPalette::AlternateBase));
    painter.setPen(option.palette.color(QPalette::Mid));
    painter.drawRect(place.adjusted(0, 0, -1, -1));
    const QStyle& style = *QApplication::style();
    const int side = 40;
    if (index.data(CellModel::folderRole).toBool()) {
        const QIcon icon = style.standardIcon(QStyle::SP_DirIcon);
        icon.paint(&painter, QRect(place.center() - QPoint(side, side) / 2, QSize(side, side)));
        return;
    }
    const QString failure = index.data(CellModel::failureRole).toString();
    if (failure.isEmpty())
        return;
    const QIcon icon = style.standardIcon(QStyle::SP_MessageBoxWarning);
    icon.paint(&painter, QRect(place.left() + 8, place.top() + 8, 22, 22));
    painter.setFont(smaller(option.font));
    painter.setPen(option.palette.color(QPalette::Text));
    QTextOption wrapped(Qt::AlignLeft | Qt::AlignTop);
    wrapped.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    painter.drawText(QRectF(place.adjusted(38, 8, -8, -8)), failure, wrapped);
}

} // namespace tarnwick::player
