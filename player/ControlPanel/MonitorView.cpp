#include "player/ControlPanel/MonitorView.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <QAbstractTableModel>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <array>

namespace tarnwick::player {
namespace {

constexpr int refreshTime = 100; // milliseconds

struct Column {
    const char* title;
    QString (*text)(const MonitorRow& row);
};

QString timeText(const MonitorRow& row) {
    const double ago = currentMediaTime() - row.arrival.time;
    return QDateTime::currentDateTime()
        .addMSecs(-static_cast<qint64>(ago * 1000))
        .toString(QStringLiteral("HH:mm:ss.zzz"));
}

constexpr std::array<Column, 5> columns{{
    {QT_TRANSLATE_NOOP("MonitorModel", "Time"), timeText},
    {QT_TRANSLATE_NOOP("MonitorModel", "From"),
     [](const MonitorRow& row) { return QString::fromStdString(row.arrival.from); }},
    {QT_TRANSLATE_NOOP("MonitorModel", "Message"),
     [](const MonitorRow& row) { return QString::fromStdString(messageText(row.arrival)); }},
    {QT_TRANSLATE_NOOP("MonitorModel", "Moves"),
     [](const MonitorRow& row) { return QString::fromStdString(targetText(row.moves)); }},
    {QT_TRANSLATE_NOOP("MonitorModel", "Value"),
     [](const MonitorRow& row) { return QString::fromStdString(valueText(row.moves)); }},
}};

} // namespace

// Makes the text of the rows that are visible only.
class MonitorModel : public QAbstractTableModel {
  public:
    MonitorModel(const ControlMonitor& monitor, QObject* parent)
        : QAbstractTableModel(parent), monitor_(monitor) {}

    void reload() {
        beginResetModel();
        rows_ = static_cast<int>(monitor_.rows().size());
        endResetModel();
    }
    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex&) const override { return static_cast<int>(columns.size()); }
    QVariant data(const QModelIndex& index, int role) const override {
        const auto row = static_cast<std::size_t>(index.row());
        if (role != Qt::DisplayRole || row >= monitor_.rows().size())
            return {};
        return columns.at(static_cast<std::size_t>(index.column())).text(monitor_.rows()[row]);
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        return QCoreApplication::translate("MonitorModel",
                                           columns.at(static_cast<std::size_t>(section)).title);
    }

  private:
    const ControlMonitor& monitor_;
    int rows_ = 0;
};

MonitorView::MonitorView(LiveControl& control, QWidget* parent)
    : QWidget(parent), control_(control), model_(new MonitorModel(control.monitor(), this)),
      list_(new QTreeView), count_(new QLabel) {
    list_->setModel(model_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAccessibleName(tr("Messages that arrived"));
    const int letter = list_->fontMetrics().averageCharWidth();
    for (const auto& [column, letters] : {std::pair{0, 16}, {1, 20}, {2, 40}, {3, 24}})
        list_->header()->resizeSection(column, letter * letters);
    auto* pause = new QCheckBox(tr("Pause"));
    connect(pause, &QCheckBox::toggled, this,
            [this](bool isOn) { control_.monitor().setPaused(isOn); });
    auto* clear = new QPushButton(tr("Clear"));
    connect(clear, &QPushButton::clicked, this, [this] {
        control_.monitor().clear();
        refresh();
    });
    auto* row = new QHBoxLayout;
    row->addWidget(pause);
    row->addWidget(clear);
    row->addWidget(count_, 1);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 4, 4, 4);
    rows->addLayout(row);
    rows->addWidget(list_, 1);
    refresh_.setInterval(refreshTime);
    connect(&refresh_, &QTimer::timeout, this, &MonitorView::refresh);
    refresh_.start();
    refresh();
}

void MonitorView::refresh() {
    const ControlMonitor& monitor = control_.monitor();
    const bool isFirst = count_->text().isEmpty();
    if (!isFirst && (!isVisible() || shown_ == monitor.revision()))
        return;
    shown_ = monitor.revision();
    const auto dropped = control_.mail().dropped();
    count_->setText(dropped == 0 ? tr("%1 messages").arg(monitor.messages())
                                 : tr("%1 messages, %2 dropped because there were too many "
                                      "addresses at once")
                                       .arg(monitor.messages())
                                       .arg(dropped));
    if (monitor.isPaused() && !monitor.rows().empty())
        return; // a selection stays
    const QScrollBar* bar = list_->verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    const int place = bar->value();
    model_->reload();
    if (isAtEnd)
        list_->scrollToBottom();
    else
        list_->verticalScrollBar()->setValue(place);
}

} // namespace tarnwick::player
