// dragSource PLACE...: a small window in the lower right corner of the display. Each drag that
// begins in it carries the places, which are files and links; the result is printed when it ends.
#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QMimeData>
#include <QMouseEvent>
#include <QScreen>
#include <QUrl>
#include <QWidget>
#include <cstdio>

namespace tarnwick::player {
namespace {

constexpr int side = 100;

class DragSource : public QWidget {
  public:
    explicit DragSource(const QStringList& places) {
        for (const QString& place : places)
            urls_ << (QFileInfo::exists(place)
                          ? QUrl::fromLocalFile(QFileInfo(place).absoluteFilePath())
                          : QUrl(place));
        const QRect display = screen()->geometry();
        setWindowTitle(QStringLiteral("Drag source"));
        setGeometry(display.right() + 1 - side, display.bottom() + 1 - side, side, side);
    }

  protected:
    void mouseMoveEvent(QMouseEvent* event) override {
        if (event->buttons() == Qt::NoButton)
            return;
        auto* data = new QMimeData;
        data->setUrls(urls_);
        auto* drag = new QDrag(this);
        drag->setMimeData(data);
        const Qt::DropAction action = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction);
        std::printf("%s\n", action == Qt::CopyAction   ? "copied"
                            : action == Qt::MoveAction ? "moved"
                                                       : "refused");
        std::fflush(stdout);
    }

  private:
    QList<QUrl> urls_;
};

} // namespace
} // namespace tarnwick::player

int main(int count, char** words) {
    QApplication application(count, words);
    tarnwick::player::DragSource source(QApplication::arguments().mid(1));
    source.show();
    return QApplication::exec();
}
