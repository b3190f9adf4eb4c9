#include "updates/UpdateStatus.h"

#include "core/SettingsStore.h"
#include "foundation/PrintableText.h"
#include "updates/UpdateService.h"
#include "updates/WrittenTime.h"

#include <QDateTime>

namespace ostrelle {
namespace {

using namespace updateStates;

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
                last ? QStringLiteral("Last checked %1.").arg(writtenTime(*last, localeOfTimes())) : QString()};
    }
    UpdateStatus operator()(const Available &available) const
    {
        const UpdateRelease &release = available.release;
        return {QStringLiteral("Version %1 is available").arg(printable(release.version)),
                release.notes.isEmpty() ? QStringLiteral("You're on %1.").arg(m_service.currentVersion())
                                        : printable(release.notes)};
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
