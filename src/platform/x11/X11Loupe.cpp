#include "platform/x11/X11Loupe.h"

#include "foundation/TaskScheduler.h"
#include "platform/freedesktop/ColordProfiles.h"
#include "platform/x11/SelectionOwners.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11RawPointer.h"
#include "platform/x11/XcbReply.h"

#include <QPainter>
#include <QPointer>
#include <QRegion>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include <xcb/xfixes.h>

namespace ostrelle {

namespace {

using namespace std::chrono_literals;

/// Whose owner shows the one loupe of the desktop.
constexpr auto kSelection = "_OSTRELLE_LOUPE";
/// Fainter pixels of a picture's edge are left out where nothing can be seen through.
constexpr int kFaintest = 12;

xcb_window_t ownerOf(WatchConnection &connection, xcb_atom_t selection)
{
    const auto cookie = xcb_get_selection_owner(connection.xcb(), selection);
    const XcbReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection.xcb(), cookie, nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_atom_t compositorSelection(WatchConnection &connection)
{
    const QByteArray name = QByteArray("_NET_WM_CM_S").append(QByteArray::number(connection.screenNumber()));
    return connection.atom(name.constData());
}

LoupeLens::Shadow shadowUnder(xcb_window_t compositor)
{
    return compositor == XCB_WINDOW_NONE ? LoupeLens::Shadow::None : LoupeLens::Shadow::Soft;
}

/// False when another process has it.
bool claimTheOneLoupe(WatchConnection &connection)
{
    const xcb_atom_t selection = connection.atom(kSelection);
    const xcb_window_t owner = xcb_generate_id(connection.xcb());
    xcb_create_window(connection.xcb(), 0, owner, connection.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0,
                      nullptr);
    xcb_grab_server(connection.xcb()); // two that ask in the same moment would both find it free
    const bool isFree = ownerOf(connection, selection) == XCB_WINDOW_NONE;
    if (isFree) {
        xcb_set_selection_owner(connection.xcb(), owner, selection, XCB_CURRENT_TIME);
    }
    xcb_ungrab_server(connection.xcb());
    return isFree && ownerOf(connection, selection) == owner;
}

QRegion visibleRegion(const QImage &picture)
{
    QRegion region;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width();) {
            const int first = x;
            while (x < picture.width() && qAlpha(row[x]) >= kFaintest) {
                ++x;
            }
            if (x > first) {
                region += QRect(first, y, x - first, 1);
            } else {
                ++x;
            }
        }
    }
    return region;
}

QString hexText(const PickedColour &colour)
{
    const auto part = [](double value) { return static_cast<int>(std::lround(value * 255)); };
    return QString::asprintf("#%02X%02X%02X", part(colour.red), part(colour.green), part(colour.blue));
}

} // namespace

std::unique_ptr<X11Loupe> X11Loupe::open(const Screens &screens, X11RawPointer &rawPointer, TaskScheduler &scheduler,
                                         Handlers handlers)
{
    std::unique_ptr<WatchConnection> connection = WatchConnection::open();
    if (!connection || !claimTheOneLoupe(*connection)) {
        return nullptr;
    }
    return std::make_unique<X11Loupe>(std::move(connection), screens, rawPointer, scheduler, std::move(handlers));
}

X11Loupe::X11Loupe(std::unique_ptr<WatchConnection> connection, const Screens &screens, X11RawPointer &rawPointer,
                   TaskScheduler &scheduler, Handlers handlers)
    : m_connection(std::move(connection))
    , m_screens(screens)
    , m_rawPointer(rawPointer)
    , m_scheduler(scheduler)
    , m_handlers(std::move(handlers))
{
    m_grab.emplace(*m_connection, scheduler,
                   X11LoupeGrab::Handlers{.taken = [this] { begin(); },
                                          .failed = [this] { end(m_picked ? Ending::Chosen : Ending::Unavailable); }});
    // What was captured is not what the screens show in their new places.
    connect(&screens, &Screens::changed, this, [this] {
        const QList<Screen> arrangement = m_screens.all();
        const auto isSame = [](const Screen &one, const Screen &other) {
            return one.frame == other.frame && one.scale == other.scale;
        };
        if (m_capture &&
            !std::equal(arrangement.begin(), arrangement.end(), m_arrangement.begin(), m_arrangement.end(), isSame)) {
            end(Ending::Chosen);
        }
    });
    connect(m_connection.get(), &WatchConnection::lost, this, [this] { end(Ending::Chosen); });
}

X11Loupe::~X11Loupe()
{
    end(Ending::Chosen);
}

void X11Loupe::begin()
{
    m_capture = X11DesktopCapture::take(m_connection->xcb(), m_connection->screen());
    const auto wasRead = [this] {
        if (std::exchange(m_isDrawDue, false)) {
            scheduleDraw();
        }
    };
    const X11OverlayWindow::Handlers handlers{.read = wasRead, .exposed = [this] { scheduleDraw(); }};
    m_lensWindow = X11OverlayWindow::create(*m_connection, handlers);
    m_labelsWindow = X11OverlayWindow::create(*m_connection, handlers);
    m_arrangement = m_screens.all();
    if (!m_capture || !m_lensWindow || !m_labelsWindow || m_arrangement.isEmpty()) {
        end(Ending::Unavailable);
        return;
    }
    m_monitors = readMonitorProfiles(*m_connection);
    if (m_monitors.empty()) {
        m_monitors.push_back({m_capture->area(), {}, {}});
    }
    askColord();
    followCompositor();
    m_rawPointer.disregardPresses();
    m_input.emplace(*m_connection, X11LoupeInput::Handlers{
                                       .moved = [this](const QPoint &position) { moveTo(position); },
                                       .step =
                                           [this](const QPoint &step) {
                                               moveTo(m_hotSpot + step);
                                               m_input->warpPointer(m_hotSpot);
                                           },
                                       .zoom = [this](int steps) { zoom(steps); },
                                       .chosen = [this](X11LoupeInput::Choice choice) { choose(choice); },
                                       .ended = [this] { end(Ending::Chosen); },
                                   });
    const XcbReply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        m_connection->xcb(), xcb_query_pointer(m_connection->xcb(), m_connection->root()), nullptr));
    m_connection->flush();
    if (pointer) {
        m_hotSpot = nearestOnScreen(QPoint(pointer->root_x, pointer->root_y));
    }
    draw();
}

void X11Loupe::followCompositor()
{
    const xcb_atom_t selection = compositorSelection(*m_connection);
    const int ownerEvent = watchSelectionOwners(*m_connection, selection);
    m_shadow = shadowUnder(ownerOf(*m_connection, selection));
    m_compositorWatch = m_connection->onEvent([this, selection, ownerEvent](const xcb_generic_event_t &event) {
        if (ownerEvent == 0 || (event.response_type & 0x7f) != ownerEvent || !m_lensWindow) {
            return;
        }
        const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        const LoupeLens::Shadow shadow = shadowUnder(notify.owner);
        if (notify.selection == selection && std::exchange(m_shadow, shadow) != shadow) {
            m_lensWindow->clearShape();
            m_labelsWindow->clearShape();
            m_place.reset();
            scheduleDraw();
        }
    });
}

void X11Loupe::askColord()
{
    QStringList outputs;
    for (const X11MonitorProfile &monitor : m_monitors) {
        if (monitor.icc.isEmpty() && !monitor.output.isEmpty()) {
            outputs.append(monitor.output);
        }
    }
    m_colord = std::make_unique<ColordProfiles>(outputs, [this](const QString &output, const QByteArray &icc) {
        for (X11MonitorProfile &monitor : m_monitors) {
            if (monitor.output == output) {
                monitor.icc = icc;
            }
        }
        m_place.reset();
        scheduleDraw();
    });
}

QPoint X11Loupe::nearestOnScreen(const QPoint &position) const
{
    QPoint nearest = position;
    int least = -1;
    for (const X11MonitorProfile &monitor : m_monitors) {
        const QRect frame = monitor.frame & m_capture->area();
        if (frame.isEmpty()) {
            continue;
        }
        const QPoint inside(std::clamp(position.x(), frame.left(), frame.left() + frame.width() - 1),
                            std::clamp(position.y(), frame.top(), frame.top() + frame.height() - 1));
        const int distance = (inside - position).manhattanLength();
        if (least < 0 || distance < least) {
            least = distance;
            nearest = inside;
        }
    }
    return nearest;
}

void X11Loupe::moveTo(const QPoint &position)
{
    const QPoint hotSpot = nearestOnScreen(position);
    if (m_hotSpot != hotSpot) {
        m_hotSpot = hotSpot;
        scheduleDraw();
    }
}

void X11Loupe::zoom(int steps)
{
    const int magnification =
        std::clamp(m_magnification + steps, LoupeLens::kLeastMagnification, LoupeLens::kGreatestMagnification);
    if (std::exchange(m_magnification, magnification) != magnification) {
        scheduleDraw();
    }
}

void X11Loupe::choose(X11LoupeInput::Choice choice)
{
    if (choice == X11LoupeInput::Choice::Cancel) {
        return;
    }
    ensurePlace(); // the pointer may have come to another screen since the last picture
    m_picked = pointedColour();
    if (choice == X11LoupeInput::Choice::Gather) {
        ++m_gathered;
        m_place->hasLabelsShape = false; // they grow a badge
        m_untold.append(*m_picked);
        scheduleDraw();
        tellSoon();
    }
}

void X11Loupe::end(Ending ending)
{
    if (m_ending) {
        return;
    }
    m_ending = ending;
    m_drawing.cancel();
    m_colord.reset();
    m_lensWindow.reset();
    m_labelsWindow.reset();
    if (m_input) {
        m_rawPointer.heedPresses(m_input->lastButtonTime());
    }
    m_grab->release();
    // Another loupe may be opened before this one's connection is gone.
    xcb_set_selection_owner(m_connection->xcb(), XCB_WINDOW_NONE, m_connection->atom(kSelection), XCB_CURRENT_TIME);
    xcb_flush(m_connection->xcb());
    tellSoon();
}

void X11Loupe::tellSoon()
{
    if (!m_telling.isPending()) {
        m_telling = m_scheduler.after(0ms, this, [this] { tell(); });
    }
}

void X11Loupe::tell()
{
    const QPointer<X11Loupe> self(this); // whoever is told may end it
    const QList<PickedColour> gathered = std::exchange(m_untold, {});
    for (const PickedColour &colour : gathered) {
        if (self) {
            m_handlers.gathered(colour);
        }
    }
    if (self && m_ending) {
        if (const auto ended = std::exchange(m_handlers.ended, {})) {
            ended(*m_ending, m_picked);
        }
    }
}

void X11Loupe::scheduleDraw()
{
    if (m_drawing.isPending() || !m_lensWindow) {
        return;
    }
    // Not more often than the screen shows, and only when all that has happened is known.
    const auto frame = std::chrono::nanoseconds(1s) / std::max(1.0, m_place ? m_place->refreshRate : 60);
    const auto due = std::max<std::chrono::nanoseconds>(
        0ns, m_drawn + std::chrono::duration_cast<std::chrono::nanoseconds>(frame) - m_scheduler.now());
    m_drawing = m_scheduler.after(due, this, [this] { draw(); });
}

void X11Loupe::ensurePlace()
{
    if (m_place && m_place->frame.contains(m_hotSpot)) {
        return;
    }
    const auto monitor = std::find_if(m_monitors.begin(), m_monitors.end(),
                                      [this](const X11MonitorProfile &one) { return one.frame.contains(m_hotSpot); });
    const X11MonitorProfile &here = monitor == m_monitors.end() ? m_monitors.front() : *monitor;
    // The toolkit's screens keep the native corners of their monitors; their sizes are rounded.
    const auto screen = std::find_if(m_arrangement.begin(), m_arrangement.end(), [&here](const Screen &one) {
        return one.frame.topLeft() == QPointF(here.frame.topLeft());
    });
    const Screen &shown = screen == m_arrangement.end() ? m_arrangement.first() : *screen;
    m_place.emplace(Place{here.frame, shown.refreshRate, LoupeLens(shown.scale, m_shadow),
                          LoupeLabels(shown.scale, m_shadow),
                          here.icc.isEmpty() ? std::nullopt : DisplayProfile::create(here.icc)});
    m_lensWindow->resize(m_place->lens.size());
    m_labelsWindow->resize(m_place->labels.size());
}

PickedColour X11Loupe::pointedColour() const
{
    const PickedColour shown = m_capture->colour(m_hotSpot);
    return m_place->profile ? m_place->profile->toSrgb(shown) : shown;
}

void X11Loupe::draw()
{
    if (m_lensWindow->isBeingRead() || m_labelsWindow->isBeingRead()) {
        m_isDrawDue = true;
        return;
    }
    m_drawn = m_scheduler.now();
    ensurePlace();
    const QImage sampled = m_capture->image(m_place->lens.sampledArea(m_hotSpot, m_magnification));
    m_place->lens.paint(m_lensWindow->canvas(), sampled, m_magnification);
    show(*m_lensWindow, m_hotSpot - m_place->lens.hotSpot(), m_place->hasLensShape);
    m_place->labels.paint(
        m_labelsWindow->canvas(),
        {hexText(pointedColour()), sampled.pixel(sampled.width() / 2, sampled.height() / 2), m_gathered});
    show(*m_labelsWindow, m_place->labels.position(m_hotSpot, m_place->frame), m_place->hasLabelsShape);
}

void X11Loupe::show(X11OverlayWindow &window, const QPoint &position, bool &hasShape)
{
    if (m_shadow == LoupeLens::Shadow::None) {
        // Nothing can be seen through: soft edges lie on the screen as it was captured.
        if (!std::exchange(hasShape, true)) {
            window.setShape(visibleRegion(window.canvas()));
        }
        const QImage below = m_capture->image(QRect(position, window.canvas().size()));
        QPainter painter(&window.canvas());
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
        painter.drawImage(0, 0, below);
    }
    window.present(position);
}

} // namespace ostrelle
