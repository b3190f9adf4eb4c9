#include "platform/x11/X11Backdrop.h"

#include "platform/x11/BackdropReduction.h"
#include "platform/x11/ToolkitConnection.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11PanelWindow.h"
#include "platform/x11/X11ScreenCapture.h"

#include <QPointer>

#include <cmath>

namespace ostrelle {

namespace {

/// Logical pixels of one pixel of the reduced image.
constexpr double kCell = 8;

QImage readWindowsBelow(xcb_window_t root, xcb_window_t panel, const QRect &native)
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, nullptr),
                                                                                  &xcb_disconnect);
    if (xcb_connection_has_error(connection.get())) {
        return {};
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    while (screens.rem > 1 && screens.data->root != root) {
        xcb_screen_next(&screens);
    }
    return captureBelow(connection.get(), *screens.data, panel, native);
}

} // namespace

X11Backdrop::X11Backdrop(WatchConnection &watch, const X11PanelWindow &panel, QObject *parent)
    : QObject(parent)
    , m_watch(watch)
    , m_panel(panel)
{
}

void X11Backdrop::capture(const QRectF &area, Source source, QObject *context,
                          std::function<void(BackdropCapture)> answer)
{
    // Whole cells, so that each pixel of the answer covers the same part of the area.
    const QSize cells(static_cast<int>(std::ceil(area.width() / kCell)),
                      static_cast<int>(std::ceil(area.height() / kCell)));
    const QRectF covered(area.topLeft(), QSizeF(cells) * kCell);
    const double scale = m_panel.scale();
    const QRect native =
        QRectF(covered.topLeft() * scale + QPointF(m_panel.origin()), covered.size() * scale).toAlignedRect();
    const QImage screen = source == Source::Screen ? readScreen(native) : QImage();

    m_queue.post([this, source, screen, native, cells, covered, scale, root = m_watch.root(), panel = m_panel.id(),
                  context = QPointer<QObject>(context), answer = std::move(answer)] {
        const QImage pixels = source == Source::Screen ? screen : readWindowsBelow(root, panel, native);
        const BackdropCapture capture{reduceToCells(pixels, kCell * scale, cells), covered};
        // Back on the main thread first: only there is it known whether the one who asked still lives.
        QMetaObject::invokeMethod(
            this,
            [context, answer, capture] {
                if (context) {
                    answer(capture);
                }
            },
            Qt::QueuedConnection);
    });
}

QImage X11Backdrop::readScreen(const QRect &native) const
{
    const QRegion outline = m_panel.outlineRegion().translated(m_panel.origin());
    // One row below the panel is needed for what the panel hides.
    const QRect outlineRect = outline.boundingRect();
    const QRect taken = native.united(QRect(native.topLeft(), QPoint(native.right(), outlineRect.bottom() + 1)));
    QImage pixels = captureScreen(toolkitConnection(), m_watch.screen(), taken);
    replaceByWhatIsBelow(pixels, outline.translated(-taken.topLeft()));
    return pixels.isNull() ? pixels : pixels.copy(QRect(QPoint(0, 0), native.size()) & pixels.rect());
}

} // namespace ostrelle
