#include "app/ShortcutsRequests.h"

#include "app/DefaultsEdit.h"
#include "app/RequestRouter.h"
#include "records/KeyComboText.h"
#include "shortcuts/ShortcutService.h"

#include <QJsonArray>

namespace ostrelle {

namespace {

QString stateOf(const ShortcutService &shortcuts, ShortcutAction action)
{
    switch (shortcuts.registration(action)) {
    case ShortcutService::Registration::Unset:
        return QStringLiteral("unset");
    case ShortcutService::Registration::Registered:
        return QStringLiteral("registered");
    case ShortcutService::Registration::Refused:
        return QStringLiteral("refused");
    }
    Q_UNREACHABLE();
}

QJsonArray list(const ShortcutService &shortcuts)
{
    QJsonArray records;
    for (const ShortcutAction action : kAllShortcutActions) {
        QJsonObject record = shortcutRecord(action, shortcuts.combos(), shortcuts.keyNames());
        record[u"state"] = stateOf(shortcuts, action);
        records.append(record);
    }
    return records;
}

RequestAnswer withAction(const QJsonObject &request, const std::function<RequestAnswer(ShortcutAction)> &act)
{
    const QString name = request[u"action"].toString();
    const auto action = shortcutActionFromRawValue(name);
    return action ? act(*action)
                  : RequestAnswer::wrongUsage(QStringLiteral("shortcuts: there is no action %1").arg(name));
}

RequestAnswer setTyped(ShortcutService &shortcuts, ShortcutAction action, const QString &text)
{
    const auto typed = keyComboFromText(text, shortcuts.keyNames(), action, shortcuts.combos());
    if (const auto *problem = std::get_if<KeyComboProblem>(&typed)) {
        const QString message = QStringLiteral("shortcuts: %1").arg(problem->message);
        return problem->kind == KeyComboProblem::Kind::Taken ? RequestAnswer::failed(message)
                                                             : RequestAnswer::wrongUsage(message);
    }
    shortcuts.set(std::get<KeyCombo>(typed), action);
    return RequestAnswer::done(QJsonObject{{QStringLiteral("state"), stateOf(shortcuts, action)}});
}

} // namespace

void addShortcutsRequests(RequestRouter &router, ShortcutService &shortcuts, DefaultsDatabase &defaults)
{
    const auto addEdit = [&](const QString &verb, const RequestRouter::Handler &edit) {
        addDefaultsEdit(router, verb, defaults, shortcuts, edit);
    };
    router.add(QStringLiteral("shortcuts.list"),
               [&shortcuts](const QJsonObject &) { return RequestAnswer::done(list(shortcuts)); });
    addEdit(QStringLiteral("shortcuts.set"), [&shortcuts](const QJsonObject &request) {
        return withAction(
            request, [&](ShortcutAction action) { return setTyped(shortcuts, action, request[u"combo"].toString()); });
    });
    addEdit(QStringLiteral("shortcuts.unset"), [&shortcuts](const QJsonObject &request) {
        return withAction(request, [&](ShortcutAction action) {
            shortcuts.set(std::nullopt, action);
            return RequestAnswer::done();
        });
    });
}

QJsonObject shortcutStates(const ShortcutService &shortcuts)
{
    QJsonObject states;
    for (const ShortcutAction action : kAllShortcutActions)
        states[rawValue(action)] = stateOf(shortcuts, action);
    return states;
}

} // namespace ostrelle
