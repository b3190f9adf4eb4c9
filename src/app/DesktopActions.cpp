#include "app/DesktopActions.h"

#include "app/RequestRouter.h"
#include "platform/DesktopRequests.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <array>

namespace ostrelle {

namespace {

struct DesktopAction
{
    const char *name; ///< in packaging/application.desktop.in
    const char *verb;
    const char *tool;
};

constexpr std::array kActions = {
    DesktopAction{"open-notch", "open", ""},
    DesktopAction{"clipboard", "open", "clipboard"},
};
constexpr const DesktopAction &kShowItself = kActions[0];

QStringList names()
{
    QStringList result;
    for (const DesktopAction &action : kActions)
        result << QString::fromLatin1(action.name);
    return result;
}

QByteArray requestOf(const DesktopAction &action, const ActivationToken &token)
{
    const QJsonObject request{{QStringLiteral("verb"), QString::fromLatin1(action.verb)},
                              {QStringLiteral("tool"), QString::fromLatin1(action.tool)},
                              {QStringLiteral("token"), token.value}};
    return QJsonDocument(request).toJson(QJsonDocument::Compact);
}

} // namespace

std::unique_ptr<DesktopRequests> answerDesktop(const RequestRouter &router)
{
    auto desktop = DesktopRequests::create(QStringLiteral(OSTRELLE_APPLICATION_ID), names());
    const auto perform = [&router](const DesktopAction &action, const ActivationToken &token) {
        router.answer(requestOf(action, token), [](const QByteArray &) {});
    };
    QObject::connect(desktop.get(), &DesktopRequests::activated, desktop.get(),
                     [perform](const ActivationToken &token) { perform(kShowItself, token); });
    QObject::connect(desktop.get(), &DesktopRequests::actionRequested, desktop.get(),
                     [perform](const QString &name, const ActivationToken &token) {
                         for (const DesktopAction &action : kActions) {
                             if (name == QLatin1StringView(action.name))
                                 perform(action, token);
                         }
                     });
    return desktop;
}

} // namespace ostrelle
