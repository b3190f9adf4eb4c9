#include "app/DesktopActions.h"

#include "app/RequestRouter.h"
#include "platform/DesktopRequests.h"
#include "records/KestroModule.h"
#include "shortcuts/ShortcutActions.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace ostrelle {

namespace {

struct DesktopAction
{
    QString name; ///< in packaging/application.desktop.in
    std::function<void(const ActivationToken &token)> perform;
};

void open(const RequestRouter &router, const QString &tool, const ActivationToken &token)
{
    const QJsonObject request{{QStringLiteral("verb"), QStringLiteral("open")},
                              {QStringLiteral("tool"), tool},
                              {QStringLiteral("token"), token.value}};
    router.answer(QJsonDocument(request).toJson(QJsonDocument::Compact), [](const QByteArray &) {});
}

QList<DesktopAction> actions(const RequestRouter &router, ShortcutActions &shortcuts, const DesktopHandlers &handlers)
{
    return {
        {QStringLiteral("open-notch"), [&router](const ActivationToken &token) { open(router, {}, token); }},
        {QStringLiteral("clipboard"),
         [&router](const ActivationToken &token) { open(router, rawValue(KestroModule::Clipboard), token); }},
        {QStringLiteral("pick-color"), [&shortcuts](const ActivationToken &token) { shortcuts.pickColor(token); }},
        {QStringLiteral("settings"), handlers.openSettings},
    };
}

QStringList namesOf(const QList<DesktopAction> &actions)
{
    QStringList names;
    for (const DesktopAction &action : actions)
        names << action.name;
    return names;
}

} // namespace

std::unique_ptr<DesktopRequests> answerDesktop(const RequestRouter &router, ShortcutActions &shortcuts,
                                               const DesktopHandlers &handlers)
{
    const QList<DesktopAction> known = actions(router, shortcuts, handlers);
    auto desktop = DesktopRequests::create(QStringLiteral(OSTRELLE_APPLICATION_ID), namesOf(known));
    QObject::connect(desktop.get(), &DesktopRequests::activated, desktop.get(), handlers.activate);
    QObject::connect(desktop.get(), &DesktopRequests::actionRequested, desktop.get(),
                     [known](const QString &name, const ActivationToken &token) {
                         for (const DesktopAction &action : known) {
                             if (action.name == name)
                                 action.perform(token);
                         }
                     });
    return desktop;
}

} // namespace ostrelle
