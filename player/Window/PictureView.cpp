#include "player/Window/PictureView.h"

#include "player/Window/FrameGraph.h"
#include "player/Window/ImageTarget.h"

#include <QGuiApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPlatformSurfaceEvent>
#include <QPointer>
#include <algorithm>
#include <chrono>
#include <future>

namespace tarnwick::player {
namespace {

constexpr std::chrono::seconds longestLeave{1}; // for a frame that is drawn

QImage imageOf(const Picture& picture) {
    const QImage borrowed(picture.bytes.data(), static_cast<int>(picture.width),
                          static_cast<int>(picture.height),
                          static_cast<qsizetype>(picture.bytesPerRow), QImage::Format_RGB32);
    return borrowed.copy();
}

} // namespace

PictureView::PictureView(Player& player, int id, QWidget* parent)
    : QWidget(parent), player_(player), id_(id) {
    setAccessibleName(tr("Picture"));
    setMinimumSize(160, 90);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    makeSurface();
    message_ = label(Qt::AlignCenter);
    figures_ = new FrameGraph(this);
    figures_->setAttribute(Qt::WA_NativeWindow, surface_ && PictureSurface::isBelowWidgets());
    figures_->hide();
    connect(&player_, &Player::deviceChanged, this, &PictureView::renewSurface);
}

PictureView::~PictureView() {
    dropTarget();
}

void PictureView::makeSurface() {
    surface_ = PictureSurface::make(player_.sharedDevice(), *this);
    if (!surface_)
        return;
    for (QWidget* widget : std::initializer_list<QWidget*>{this, message_, figures_})
        if (widget != nullptr && PictureSurface::isBelowWidgets())
            widget->setAttribute(Qt::WA_NativeWindow);
    PictureWindow& window = surface_->window();
    window.installEventFilter(this);
    connect(&window, &PictureWindow::exposed, this, [this] {
        attach();
        player_.picture().exposeTarget(id_);
    });
    connect(&window, &PictureWindow::sizeChanged, this, &PictureView::layOut);
    connect(&window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (isVisible || !PictureSurface::endsWhenHidden())
            return;
        leaveSurface();
        // Qt 6.4 keeps the Vulkan surface of a window whose Wayland surface it destroyed.
        QMetaObject::invokeMethod(this, &PictureView::renewSurface, Qt::QueuedConnection);
    });
    if (isVisible())
        surface_->container().show();
}

void PictureView::renewSurface() {
    dropTarget();
    makeSurface();
    layOut();
    attach();
}

QLabel* PictureView::label(Qt::Alignment alignment) {
    auto* made = new QLabel(this);
    made->setAttribute(Qt::WA_NativeWindow, surface_ && PictureSurface::isBelowWidgets());
    made->setAlignment(alignment);
    made->setWordWrap(alignment == Qt::AlignCenter);
    made->setMargin(8);
    made->setAutoFillBackground(true);
    made->setStyleSheet(QStringLiteral("background: #14161a; color: #f2f2f2;"));
    made->hide();
    return made;
}

void PictureView::attach() {
    gpu::Device* device = player_.device();
    const PixelSize size = pixels();
    const bool isWaiting = surface_ && !surface_->window().isExposed(); // it has no surface yet
    if (isAttached_ || isWaiting || device == nullptr || size.width < 1 || size.height < 1)
        return;
    std::unique_ptr<FrameTarget> target = surface_ ? surface_->newTarget() : nullptr;
    if (!target && surface_)
        surface_->container().hide();
    if (target) {
        surfaceState_ = std::make_shared<SurfaceState>();
        target = std::make_unique<ClosableTarget>(std::move(target), surfaceState_);
    } else {
        target = std::make_unique<ImageTarget>(
            *device, size, [view = QPointer<PictureView>(this)](Picture picture) {
                QMetaObject::invokeMethod(
                    qApp,
                    [view, image = imageOf(picture)] {
                        if (!view)
                            return;
                        view->image_ = image;
                        view->update();
                    },
                    Qt::QueuedConnection);
            });
    }
    player_.picture().addTarget(id_, std::move(target), size);
    isAttached_ = true;
}

void PictureView::dropTarget() {
    if (PictureSurface::endsWhenHidden()) {
        leaveSurface();
        surface_.reset();
        return;
    }
    std::future<void> gone;
    if (isAttached_)
        gone = player_.picture().removeTarget(id_);
    isAttached_ = false;
    if (surface_)
        PictureSurface::retire(std::move(surface_), std::move(gone));
}

// The platform destroys the surface with its window, such as that of an output that is closed.
void PictureView::leaveSurface() {
    if (!isAttached_)
        return;
    if (surfaceState_)
        surfaceState_->close();
    const auto gone = player_.picture().removeTarget(id_);
    const bool isGone = gone.wait_for(longestLeave) == std::future_status::ready;
    if (surfaceState_ && !isGone)
        surfaceState_->abandon();
    surfaceState_.reset();
    isAttached_ = false;
}

PixelSize PictureView::pixels() const {
    const double ratio = devicePixelRatioF();
    const QSize size = surface_ ? surface_->container().size() : this->size();
    return {static_cast<std::uint32_t>(std::max(0.0, size.width() * ratio)),
            static_cast<std::uint32_t>(std::max(0.0, size.height() * ratio))};
}

void PictureView::setMessage(const QString& message) {
    if (message_->text() != message)
        message_->setText(message);
    message_->setVisible(!message.isEmpty());
    layOut();
}

void PictureView::setFigures(const QString& figures) {
    if (!figures.isEmpty())
        figures_->setText(figures);
    figures_->setVisible(!figures.isEmpty());
    layOut();
}

void PictureView::addFrame(double frameSeconds) {
    figures_->add(frameSeconds);
}

void PictureView::layOut() {
    if (!surface_ || PictureSurface::isBelowWidgets()) {
        if (surface_)
            surface_->container().setGeometry(rect());
        layOutOver();
        return;
    }
    const QRect rest = layOutBeside();
    if (rest == surface_->container().geometry())
        return;
    surface_->container().setGeometry(rest);
    player_.picture().resizeTarget(id_, pixels());
    emit resized();
}

void PictureView::layOutOver() {
    if (message_->isVisible()) {
        const int side = std::min(width() - 20, 520);
        message_->setFixedWidth(std::max(side, 40));
        message_->adjustSize();
        message_->move((width() - message_->width()) / 2, (height() - message_->height()) / 2);
        message_->raise();
        message_->update(); // a native window keeps parts of the old text otherwise
    }
    if (figures_->isVisible()) {
        figures_->move(width() - figures_->width() - 8, 8);
        figures_->raise();
    }
}

QRect PictureView::layOutBeside() {
    QRect rest = rect();
    if (figures_->isVisible()) {
        figures_->move(width() - figures_->width(), 0);
        rest.setTop(figures_->geometry().bottom() + 1);
    }
    if (message_->isVisible()) {
        message_->setFixedWidth(std::max(width(), 40));
        message_->adjustSize();
        message_->move(0, height() - message_->height());
        rest.setBottom(message_->y() - 1);
    }
    return rest;
}

void PictureView::resizeEvent(QResizeEvent*) {
    layOut();
    attach();
    player_.picture().resizeTarget(id_, pixels());
    emit resized();
}

void PictureView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (!image_.isNull())
        painter.drawImage(rect(), image_);
}

// The pointer in the picture, which its window holds as a whole.
void PictureView::point(const QPointF& place) {
    const QSize whole = surface_ ? surface_->container().size() : size();
    if (whole.isEmpty())
        return;
    const auto share = [](double at, int side) {
        return static_cast<float>(std::clamp(at / side, 0.0, 1.0));
    };
    player_.setMouse(
        std::array{share(place.x(), whole.width()), 1 - share(place.y(), whole.height())});
}

void PictureView::mousePressEvent(QMouseEvent* event) {
    point(event->position());
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() != Qt::NoButton)
        point(event->position());
}

// The native window has the pointer, and in some cases the focus.
bool PictureView::eventFilter(QObject* watched, QEvent* event) {
    if (!surface_ || watched != &surface_->window())
        return QWidget::eventFilter(watched, event);
    const bool moves = event->type() == QEvent::MouseMove;
    if (moves || event->type() == QEvent::MouseButtonPress) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (!moves || mouse->buttons() != Qt::NoButton)
            point(mouse->position());
    }
    if (event->type() == QEvent::PlatformSurface &&
        static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
        leaveSurface();
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
        return QCoreApplication::sendEvent(this, event);
    if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove ||
        event->type() == QEvent::Drop)
        return QCoreApplication::sendEvent(this, event);
    return QWidget::eventFilter(watched, event);
}

} // namespace tarnwick::player
