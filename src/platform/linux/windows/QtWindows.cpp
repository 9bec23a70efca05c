#include "platform/linux/windows/QtWindows.h"

#include "platform/linux/windows/FormWidget.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QLayout>
#include <QScreen>

namespace sonvara {

namespace {

Qt::WindowFlags flagsFor(const WindowSetup& setup)
{
    Qt::WindowFlags flags =
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    flags.setFlag(Qt::WindowCloseButtonHint, setup.isClosable);
    flags.setFlag(Qt::WindowMinimizeButtonHint, setup.isMiniaturizable);
    flags.setFlag(Qt::WindowMaximizeButtonHint, setup.isResizable);
    return flags;
}

void center(QWidget& window)
{
    const auto* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    auto frame = QRect(QPoint(), window.sizeHint());
    frame.moveCenter(screen->availableGeometry().center());
    window.move(frame.topLeft());
}

}  // namespace

FormWindow::FormWindow(const WindowSetup& setup) : QMainWindow(nullptr, flagsFor(setup))
{
    setWindowTitle(QString::fromStdString(setup.title));
    resize(qRound(setup.contentWidth), qRound(setup.contentHeight));
    // The form's own size counts: the window grows from its first size until the form is seen whole.
    if (!setup.isResizable) layout()->setSizeConstraint(QLayout::SetFixedSize);
    if (setup.content) setCentralWidget(new FormWidget(setup.content));
}

void FormWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    deleteLater();
    if (const auto notify = std::exchange(closing, nullptr)) notify();
}

QtWindow::QtWindow(const WindowSetup& setup) : widget_(new FormWindow(setup)), isCentered_(setup.isCentered)
{
    widget_->closing = [this] { willClose(); };
}

QtWindow::~QtWindow()
{
    if (!widget_) return;
    widget_->closing = nullptr;
    widget_->hide();
    widget_->deleteLater();  // not now: a control in it may be what drops the window
}

void QtWindow::willClose()
{
    widget_.clear();
    if (const auto delegate = delegate_.lock()) delegate->windowWillClose(*this);  // may destroy this object
}

bool QtWindow::isVisible() const
{
    return widget_ && widget_->isVisible() && !widget_->isMinimized();
}

void QtWindow::makeKeyAndOrderFront()
{
    if (!widget_) return;
    if (!widget_->isVisible() && isCentered_) center(*widget_);
    widget_->setWindowState(widget_->windowState() & ~Qt::WindowMinimized);
    widget_->show();
    widget_->raise();
    widget_->activateWindow();
}

std::shared_ptr<Window> QtWindows::make(WindowSetup setup)
{
    return std::make_shared<QtWindow>(setup);
}

}  // namespace sonvara
