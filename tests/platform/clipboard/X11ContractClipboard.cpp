#include "ContractClipboard.h"
#include "OtherProgram.h"
#include "foundation/SystemTaskScheduler.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11ClipboardPort.h"
#include "platform/x11/X11Frontmost.h"

#include <QTest>

#include <optional>
#include <utility>

namespace ostrelle {

namespace {

class X11ContractClipboard final : public ContractClipboard
{
public:
    ClipboardPort &port() override { return m_port; }
    void copyElsewhere(const QString &text, const QByteArray &png, const QString &marker) override
    {
        m_other.emplace(QStringLiteral("selection-owner"),
                        QStringList{QStringLiteral("serve"), QStringLiteral("--text"), text, QStringLiteral("--type"),
                                    QStringLiteral("image/png"), QString::fromUtf8(png), QStringLiteral("--marker"),
                                    marker});
    }
    void copyImageElsewhere(const QByteArray &jpeg, const QByteArray &bmp, const QByteArray &webp) override
    {
        QStringList arguments{QStringLiteral("serve")};
        // The bitmap under the oldest of its names.
        for (const auto &[type, bytes] :
             {std::pair("image/jpeg", jpeg), std::pair("image/x-MS-bmp", bmp), std::pair("image/webp", webp)})
            arguments << QStringLiteral("--type") << QString::fromLatin1(type) << QString::fromUtf8(bytes);
        m_other.emplace(QStringLiteral("selection-owner"), arguments);
    }
    bool comesTrue(const std::function<bool()> &condition) override { return QTest::qWaitFor(condition, 20'000); }

private:
    std::unique_ptr<WatchConnection> m_connection = WatchConnection::open();
    SystemTaskScheduler m_scheduler;
    X11Frontmost m_frontmost{*m_connection, m_scheduler};
    X11ClipboardPort m_port{*m_connection, m_frontmost, m_scheduler, QString()};
    std::optional<OtherProgram> m_other;
};

} // namespace

std::unique_ptr<ContractClipboard> ContractClipboard::make()
{
    return std::make_unique<X11ContractClipboard>();
}

} // namespace ostrelle
