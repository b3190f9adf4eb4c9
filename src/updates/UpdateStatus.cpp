#include "updates/UpdateStatus.h"

#include "core/SettingsStore.h"
#include "foundation/PrintableText.h"
#include "updates/UpdateService.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTextBoundaryFinder>

namespace ostrelle {
namespace {

using namespace updateStates;

/// As in "Nov 24, 2026 at 9:40 PM" or "24 Nov 2026 at 21:40": English like everything here, but in the order and with
/// the hours of where the user is.
QString written(const QDateTime &time)
{
    const QLocale english(QLocale::English, QLocale::system().territory());
    QString abbreviated = english.dateFormat(QLocale::LongFormat);
    abbreviated.remove(QRegularExpression(QStringLiteral("^dddd,? *")))
        .replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    return english.toString(time.date(), abbreviated) + QStringLiteral(" at ") +
           english.toString(time.time(), QLocale::ShortFormat);
}

/// More than one short paragraph, and more than a version, is not read there, but would have to be laid out.
constexpr int kLongestNotes = 500;
constexpr int kLongestVersion = 40;

QString abridged(const QString &text, int longest)
{
    if (text.size() <= longest)
        return printable(text);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text.constData(), longest + 1);
    characters.setPosition(longest);
    if (!characters.isAtBoundary())
        characters.toPreviousBoundary();
    return printable(text.first(characters.position()).trimmed()) + QStringLiteral("…");
}

class Description
{
public:
    Description(const UpdateService &service, const SettingsStore &settings)
        : m_service(service)
        , m_settings(settings)
    {
    }

    UpdateStatus operator()(const Idle &) const
    {
        return {QStringLiteral("Version ") + m_service.currentVersion(),
                m_settings.autoCheckUpdates() ? QString() : QStringLiteral("Automatic checks are off.")};
    }
    UpdateStatus operator()(const Checking &) const { return {QStringLiteral("Checking…"), {}}; }
    UpdateStatus operator()(const Current &) const
    {
        const auto &last = m_service.lastCheck();
        return {QStringLiteral("You're up to date"),
                last ? QStringLiteral("Last checked %1.").arg(written(*last)) : QString()};
    }
    UpdateStatus operator()(const Available &available) const
    {
        const UpdateRelease &release = available.release;
        return {QStringLiteral("Version %1 is available").arg(abridged(release.version, kLongestVersion)),
                release.notes.isEmpty() ? QStringLiteral("You're on %1.").arg(m_service.currentVersion())
                                        : abridged(release.notes, kLongestNotes)};
    }
    UpdateStatus operator()(const Failed &failed) const
    {
        return {QStringLiteral("Couldn't check for updates"), failed.message};
    }

private:
    const UpdateService &m_service;
    const SettingsStore &m_settings;
};

} // namespace

UpdateStatus UpdateStatus::of(const UpdateService &service, const SettingsStore &settings)
{
    return std::visit(Description(service, settings), service.state());
}

} // namespace ostrelle
