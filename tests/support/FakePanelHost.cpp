#include "support/FakePanelHost.h"

#include "platform/Screens.h"

#include <QApplication>

#include <algorithm>
#include <cmath>

namespace ostrelle {

namespace {

/// The window is as wide as the widest panel, whatever size is asked for.
constexpr double kWindowWidth = 900;

} // namespace

FakePanelHost::FakePanelHost(const Screens &screens, QObject *parent)
    : PanelHost(parent)
    , m_screens(screens)
{
}

void FakePanelHost::attach(QWidget &panel)
{
    Q_ASSERT(!m_panel && !panel.isVisible());
    panel.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::BypassWindowManagerHint);
    panel.setAttribute(Qt::WA_TranslucentBackground);
    panel.setAttribute(Qt::WA_ShowWithoutActivating);
    m_panel = &panel;
}

void FakePanelHost::place(const QString &screenName, const QSizeF &size)
{
    const std::optional<Screen> screen = m_screens.named(screenName);
    if (!screen || !m_panel) {
        return;
    }
    ++m_placeCount;
    m_screenName = screenName;
    m_size = size;
    const QRectF &frame = screen->frame;
    const double width = std::min(std::max(kWindowWidth, size.width()), frame.width());
    const double x = frame.x() + (frame.width() - width) / 2;
    const double height = std::clamp(std::ceil(size.height()), 1.0, frame.height());
    m_panel->setGeometry(QRectF(x, frame.y(), width, height).toRect());
    m_panel->show();
}

void FakePanelHost::captureBackdrop(const QRectF &area, QObject *context, std::function<void(BackdropCapture)> answer)
{
    ++m_captureCount;
    BackdropCapture capture;
    if (m_backdrop.isValid() && !area.isEmpty()) {
        const QSize cells(static_cast<int>(std::ceil(area.width() / 8)),
                          static_cast<int>(std::ceil(area.height() / 8)));
        capture.area = QRectF(area.topLeft(), QSizeF(cells) * 8);
        capture.image = QImage(cells, QImage::Format_RGB32);
        capture.image.fill(m_backdrop);
    }
    QMetaObject::invokeMethod(
        context, [answer = std::move(answer), capture] { answer(capture); }, Qt::QueuedConnection);
}

void FakePanelHost::takeKeyboard(const ActivationToken &token)
{
    m_lastToken = token.value;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_isRefusingKeyboard && !m_hasKeyboard) {
                Q_EMIT keyboardRefused();
            } else {
                setHasKeyboard(true);
            }
        },
        Qt::QueuedConnection);
}

void FakePanelHost::releaseKeyboard()
{
    QMetaObject::invokeMethod(
        this, [this] { setHasKeyboard(false); }, Qt::QueuedConnection);
}

void FakePanelHost::loseKeyboard()
{
    setHasKeyboard(false);
}

void FakePanelHost::setGlass(Glass glass)
{
    if (m_glass != glass) {
        m_glass = glass;
        Q_EMIT glassChanged();
    }
}

void FakePanelHost::setHasKeyboard(bool has)
{
    if (m_hasKeyboard == has) {
        return;
    }
    m_hasKeyboard = has;
    if (m_panel) {
        QApplication::setActiveWindow(has ? m_panel.data() : nullptr); // so that focus widgets see what they would see
    }
    if (has) {
        Q_EMIT keyboardGained();
    } else {
        Q_EMIT keyboardLost();
    }
}

} // namespace ostrelle
