#include "player/Window/DisplayOutput.h"

#include "player/Window/OutputWindow.h"

#include <QAction>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr int outputTarget = 2; // the number of the picture on a whole display

QString labelOf(const QScreen& screen) {
    const QSize pixels = screen.size() * screen.devicePixelRatio();
    return QObject::tr("%1, %2 \u00d7 %3")
        .arg(screen.name())
        .arg(pixels.width())
        .arg(pixels.height());
}

} // namespace

DisplayOutput::DisplayOutput(Player& player, QMainWindow& window, Actions& actions)
    : QObject(&window), player_(player), window_(window), actions_(actions) {
    actions.add(ActionMenu::view, tr("Full screen &output"), QKeySequence(Qt::Key_F11), [this] {
        if (output_ != nullptr || !awaited_.isEmpty())
            close();
        else
            show(*window_.screen());
    });
    addDisplays();
    connect(qApp, &QGuiApplication::screenRemoved, this, [this](QScreen* gone) { closeOn(*gone); });
    connect(qApp, &QGuiApplication::screenAdded, this,
            [this](QScreen* added) { showAgain(*added); });
}

DisplayOutput::~DisplayOutput() {
    delete std::exchange(output_, nullptr);
}

PictureView* DisplayOutput::view() const {
    return output_ != nullptr ? &output_->view() : nullptr;
}

void DisplayOutput::addDisplays() {
    QMenu* displays = actions_.submenu(ActionMenu::view, tr("Output on &display"));
    connect(displays, &QMenu::aboutToShow, this, [this, displays] { listDisplays(*displays); });
}

void DisplayOutput::listDisplays(QMenu& menu) {
    menu.clear();
    for (QScreen* one : QGuiApplication::screens()) {
        QAction* action = menu.addAction(labelOf(*one), this, [this, one] { toggle(*one); });
        action->setCheckable(true);
        action->setChecked(output_ != nullptr && &output_->display() == one);
    }
}

void DisplayOutput::toggle(QScreen& screen) {
    const bool isThere = output_ != nullptr && &output_->display() == &screen;
    close();
    if (!isThere)
        show(screen);
}

void DisplayOutput::show(QScreen& screen) {
    awaited_.clear();
    // Beside the window, typing goes on in the editor.
    const auto focus =
        &screen == window_.screen() ? OutputFocus::takes : OutputFocus::leavesToWindow;
    auto* output = new OutputWindow(player_, outputTarget, screen, focus);
    output_ = output;
    for (QAction* action : actions_.all()) // their shortcuts work in it
        output->addAction(action);
    connect(&output->view(), &PictureView::resized, this, &DisplayOutput::resized);
    connect(output, &OutputWindow::closed, this, [this, output] {
        if (output_ == output)
            output_ = nullptr;
        emit resized();
    });
    emit resized();
}

void DisplayOutput::close() {
    awaited_.clear();
    if (output_ != nullptr)
        output_->close();
}

void DisplayOutput::closeOn(const QScreen& gone) {
    if (output_ == nullptr || &output_->display() != &gone)
        return;
    close();
    awaited_ = gone.name();
    player_.tell(
        tr("The display %1 was removed; the output is closed until it is back.").arg(awaited_));
}

void DisplayOutput::showAgain(QScreen& added) {
    if (added.name() != awaited_)
        return;
    show(added);
    player_.tell(tr("The display %1 is back and shows the output.").arg(added.name()));
}

} // namespace tarnwick::player
