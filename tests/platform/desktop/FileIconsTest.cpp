#include "platform/FileIcons.h"
#include "platform/Platform.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QDataStream>
#include <QDir>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <xcb/xcb.h>

namespace ostrelle {

namespace {

constexpr int kSide = 48;

/// Null until it is loaded.
QImage iconOf(FileIcons &icons, const char *name)
{
    return icons.iconFor(QString::fromLatin1(name), kSide, 1).value_or(QImage());
}

bool awaitIcon(FileIcons &icons, const char *name)
{
    return QTest::qWaitFor([&] { return icons.iconFor(QString::fromLatin1(name), kSide, 1).has_value(); });
}

/// A desktop's settings daemon, in the byte order that is not this machine's.
class SettingsManager
{
public:
    SettingsManager()
        : m_window(xcb_generate_id(m_connection))
    {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_create_window(m_connection, 0, m_window, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(m_connection, m_window, atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
    }
    ~SettingsManager() { xcb_disconnect(m_connection); }

    void setIconTheme(const QByteArray &name)
    {
        QByteArray content;
        QDataStream stream(&content, QIODevice::WriteOnly);
        const auto writePadded = [&stream](const QByteArray &bytes) {
            stream.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
            stream.writeRawData("\0\0\0", static_cast<int>((4 - bytes.size() % 4) % 4));
        };
        const auto writeName = [&](quint8 kind, const QByteArray &setting) {
            stream << kind << quint8{0} << static_cast<quint16>(setting.size());
            writePadded(setting);
            stream << quint32{7};
        };
        stream << quint8{1} << quint8{0} << quint16{0} << quint32{7} << quint32{3};
        writeName(0, "Xft/DPI");
        stream << qint32{98304};
        writeName(2, "Net/Color");
        stream << quint64{0};
        writeName(1, "Net/IconThemeName");
        stream << static_cast<quint32>(name.size());
        writePadded(name);
        set(content);
    }
    void set(const QByteArray &content)
    {
        const xcb_atom_t property = atom("_XSETTINGS_SETTINGS");
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, property, property, 8,
                            static_cast<std::uint32_t>(content.size()), content.constData());
        xcb_flush(m_connection);
    }

private:
    xcb_atom_t atom(const QByteArray &name)
    {
        const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(m_connection, cookie, nullptr);
        const xcb_atom_t atom = reply->atom;
        std::free(reply);
        return atom;
    }

    xcb_connection_t *m_connection = xcb_connect(nullptr, nullptr);
    xcb_window_t m_window;
};

} // namespace

class FileIconsTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void tellsKindsApartWithoutADesktop()
    {
        const auto platform = Platform::create(QStringLiteral("x11"), QString());
        FileIcons &icons = platform->fileIcons();
        QVERIFY(QTest::qWaitFor([&] { return icons.folderIcon(kSide, 1).has_value(); }));
        QList<QImage> images{*icons.folderIcon(kSide, 1)};
        for (const char *name : {"a.txt", "a.png", "a.mp3", "a.mp4", "a.pdf", "a.tar.gz"}) {
            QVERIFY(awaitIcon(icons, name));
            images << iconOf(icons, name);
        }
        for (qsizetype i = 0; i < images.size(); ++i) {
            QVERIFY2(!images.at(i).isNull(), qPrintable(QString::number(i)));
            QCOMPARE(images.indexOf(images.at(i)), i);
        }
        QVERIFY(awaitIcon(icons, "of no known kind.xyzzy"));
        QVERIFY(!iconOf(icons, "of no known kind.xyzzy").isNull());
    }

    void loadsElsewhereAndTellsWhenItIsThere()
    {
        const auto platform = Platform::create(QStringLiteral("x11"), QString());
        FileIcons &icons = platform->fileIcons();
        const QSignalSpy changes(&icons, &FileIcons::changed);
        QVERIFY(!icons.iconFor(QStringLiteral("a.txt"), 34, 2));
        QVERIFY(!icons.iconFor(QStringLiteral("b.txt"), 34, 2));
        QTRY_COMPARE(changes.size(), 1);
        const QImage icon = *icons.iconFor(QStringLiteral("b.txt"), 34, 2);
        QCOMPARE(icon.devicePixelRatio(), 2.0);
        QVERIFY(icon.width() <= 68 && icon.width() >= 48);
    }

    void followsTheThemeThatTheUserHasSet()
    {
        QTemporaryDir themes;
        QVERIFY(QDir(themes.path()).mkpath(QStringLiteral("Mine/48x48/mimetypes")));
        QFile index(themes.filePath(QStringLiteral("Mine/index.theme")));
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=Mine\nDirectories=48x48/mimetypes\n"
                    "[48x48/mimetypes]\nSize=48\nType=Fixed\nContext=MimeTypes\n");
        index.close();
        QImage red(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
        red.fill(Qt::red);
        QVERIFY(red.save(themes.filePath(QStringLiteral("Mine/48x48/mimetypes/text-x-generic.png"))));
        QIcon::setThemeSearchPaths(QIcon::themeSearchPaths() << themes.path());

        const auto platform = Platform::create(QStringLiteral("x11"), QString());
        FileIcons &icons = platform->fileIcons();
        QVERIFY(awaitIcon(icons, "a.txt") && awaitIcon(icons, "a.png"));
        const QImage text = iconOf(icons, "a.txt");
        const QImage picture = iconOf(icons, "a.png");
        QVERIFY(text != red);

        auto manager = std::make_unique<SettingsManager>();
        manager->setIconTheme("Mine");
        QTRY_COMPARE(iconOf(icons, "a.txt"), red);
        QTRY_COMPARE(iconOf(icons, "a.png"), picture);                                // which the theme does not have
        manager->set(QByteArray("\1\0\0\0\0\0\0\7\xff\xff\xff\xff\1\0\xff\xff", 16)); // cut off
        QTRY_COMPARE(iconOf(icons, "a.txt"), text);
        manager->setIconTheme("Mine");
        QTRY_COMPARE(iconOf(icons, "a.txt"), red);
        manager.reset();
        QTRY_COMPARE(iconOf(icons, "a.txt"), text);
    }
};

} // namespace ostrelle

using ostrelle::FileIconsTest;
OSTRELLE_TEST(FileIconsTest)

#include "FileIconsTest.moc"
