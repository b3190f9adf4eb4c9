#include "ContractDesktop.h"
#include "OtherProgram.h"
#include "PeerClient.h"
#include "PeerKeyboard.h"
#include "Waiting.h"
#include "platform/HotKeys.h"
#include "platform/KeyboardLayout.h"
#include "platform/OutsideActivity.h"
#include "platform/PanelHost.h"
#include "platform/Platform.h"
#include "platform/Screens.h"

#include <QApplication>
#include <QPainter>
#include <QProcess>
#include <QTest>
#include <QUrl>
#include <QWidget>

#include <optional>

namespace ostrelle {

namespace {

class X11Desktop final : public ContractDesktop
{
public:
    X11Desktop()
        : m_platform(Platform::create(QStringLiteral("x11"), QString()))
        , m_background(m_peer.open(QRect(0, 0, 1920, 1080), PeerClient::Kind::OverrideRedirect))
    {
    }

    PanelHost &panelHost() override { return m_platform->panelHost(); }
    Popups &popups() override { return m_platform->popups(); }
    OutsideActivity &outsideActivity() override { return m_platform->outsideActivity(); }
    PointerNear &pointerNear() override { return m_platform->pointerNear(); }
    DragSense &dragSense() override { return m_platform->dragSense(); }
    FileDrags &fileDrags() override { return m_platform->fileDrags(); }
    DragOut &dragOut() override { return m_platform->dragOut(); }
    Screens &screens() override { return m_platform->screens(); }
    ColourPicker &colourPicker() override { return m_platform->colourPicker(); }
    HotKeys &hotKeys() override { return m_platform->hotKeys(); }
    KeyboardLayout &keyboardLayout() override { return m_platform->keyboardLayout(); }

    void movePointer(const QPointF &panelPosition) override
    {
        // The panel is centred on the one screen, whose corner is the desktop's.
        const Screen screen = *screens().primary();
        const double width = 900 + static_cast<int>(screen.frame.width()) % 2;
        const QPointF position((screen.frame.width() - width) / 2 + panelPosition.x(), panelPosition.y());
        m_peer.movePointer((position * screen.scale).toPoint());
    }
    void movePointerToScreen(const QString &name) override
    {
        const Screen screen = *screens().named(name);
        m_peer.movePointer((screen.frame.topLeft() + QPointF(40, 700) / screen.scale).toPoint());
    }
    void showColours(const QList<QColor> &colours) override
    {
        m_colours = colours;
        QImage image(1920, 1080, QImage::Format_RGB32);
        const int width = static_cast<int>(1920 / colours.count());
        QPainter painter(&image);
        for (int i = 0; i < colours.count(); ++i) {
            painter.fillRect(QRect(i * width, 0, width, 1080), colours[i]);
        }
        painter.end();
        m_peer.paint(m_background, image);
    }
    void pointAt(const QColor &colour) override
    {
        const int width = static_cast<int>(1920 / m_colours.count());
        m_pointed = QPoint(static_cast<int>(m_colours.indexOf(colour)) * width + width / 2, 700);
        m_peer.movePointer(m_pointed);
    }
    void clickWithShift() override
    {
        constexpr xcb_keysym_t kShift = 0xffe1;
        m_peer.key(kShift, /*down=*/true);
        m_peer.click();
        m_peer.key(kShift, /*down=*/false);
    }
    bool showsLoupe() override
    {
        // The frame of its middle square.
        return m_peer.pixel(m_pointed - QPoint(0, 5)) == QColor(Qt::white).rgb();
    }
    void pressButton() override { m_peer.button(true); }
    void releaseButton() override { m_peer.button(false); }
    void pressKey(Qt::Key key) override
    {
        constexpr xcb_keysym_t kReturn = 0xff0d;
        constexpr xcb_keysym_t kEscape = 0xff1b;
        constexpr xcb_keysym_t kDown = 0xff54;
        m_peer.key(key == Qt::Key_Return ? kReturn : key == Qt::Key_Escape ? kEscape : kDown);
    }
    void clickElsewhere() override
    {
        m_peer.movePointer(QPoint(1900, 1000));
        m_peer.click();
    }
    void activate(const QString &application) override
    {
        if (!m_windows.contains(application)) {
            // A window manager gives the focus to a new window: that is its activation already.
            m_windows[application] =
                m_peer.open(QRect(100, 500, 200, 100), PeerClient::Kind::Managed, application.toLatin1());
        }
        m_peer.activate(m_windows[application]);
        settle();
    }
    void beginDrag() override { m_peer.ownSelection("XdndSelection"); }
    void dragFiles(const QStringList &paths) override
    {
        QByteArray list;
        for (const QString &path : paths) {
            list += QUrl::fromLocalFile(path).toEncoded() + "\r\n";
        }
        m_source.emplace(
            QStringLiteral("drag-source"),
            QStringList{QStringLiteral("--type"), QStringLiteral("text/uri-list"), QString::fromUtf8(list)});
        m_source->says("ready");
        m_peer.movePointer(QPoint(100, 450));
        m_peer.button(true);
        m_peer.movePointer(QPoint(130, 450));
        m_source->says("began");
    }
    void arrangeScreens(const QList<QString> &names) override
    {
        const QStringList known = m_monitors;
        const int width = static_cast<int>(1920 / names.count());
        for (const QString &name : known) {
            if (!names.contains(name) || names.count() != known.count()) {
                xrandr({QStringLiteral("--delmonitor"), name});
            }
        }
        m_monitors = names;
        for (int i = 0; i < names.count(); ++i) {
            xrandr({QStringLiteral("--setmonitor"), names[i],
                    QStringLiteral("%1/500x1080/300+%2+0").arg(width).arg(i * width),
                    i == 0 ? QStringLiteral("screen") : QStringLiteral("none")});
        }
        settle();
    }
    void holdKeys(quint32 keyCode, Qt::KeyboardModifiers modifiers) override { m_keys.hold(keyCode, modifiers); }
    void letKeysRepeat() override { m_keys.letItRepeat(); }
    void releaseKeys() override { m_keys.release(); }
    void takeKeysElsewhere(quint32 keyCode, Qt::KeyboardModifiers modifiers) override
    {
        m_otherKeys.emplace();
        m_otherKeys->grab(keyCode, modifiers);
    }
    void letKeysGoElsewhere() override { m_otherKeys.reset(); }
    void changeWindowManager() override { m_keys.announceWindowManager(); }
    ~X11Desktop() override
    {
        for (const QString &name : std::as_const(m_monitors)) {
            xrandr({QStringLiteral("--delmonitor"), name});
        }
    }

private:
    static void xrandr(const QStringList &arguments)
    {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(QStringLiteral("xrandr"), arguments);
        process.waitForFinished();
    }
    /// Lets the program see what has happened so far: a press of its own marks the end.
    void settle()
    {
        bool isSeen = false;
        const auto connection =
            QObject::connect(&outsideActivity(), &OutsideActivity::pressedOutside, [&isSeen] { isSeen = true; });
        clickElsewhere();
        waitUntil("the press is seen", [&isSeen] { return isSeen; });
        QObject::disconnect(connection);
    }

    PeerClient m_peer;
    std::unique_ptr<Platform> m_platform;
    xcb_window_t m_background;
    QMap<QString, xcb_window_t> m_windows;
    QStringList m_monitors;
    QList<QColor> m_colours;
    QPoint m_pointed;
    std::optional<OtherProgram> m_source;
    PeerKeyboard m_keys;
    std::optional<PeerKeyboard> m_otherKeys;
};

} // namespace

std::unique_ptr<ContractDesktop> ContractDesktop::make()
{
    return std::make_unique<X11Desktop>();
}

} // namespace ostrelle
