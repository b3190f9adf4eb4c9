#include "command/ClipboardCommands.h"

#include "command/CommandLine.h"
#include "command/Output.h"
#include "command/StoreAccess.h"
#include "foundation/AppPaths.h"
#include "records/ClipOrder.h"
#include "records/ClipRecordJson.h"
#include "records/ClipboardStore.h"

#include <QJsonArray>

#include <functional>
#include <utility>

namespace ostrelle {

namespace {

QString listText(const QJsonArray &records)
{
    QString text;
    int number = 0;
    for (const QJsonValue &record : records) {
        const auto item = clipItemFromRecordJson(record.toObject());
        if (!item)
            continue;
        text += QStringLiteral("%1 %2 %3  (%4%5)\n")
                    .arg(++number, 4)
                    .arg(item->pinned ? QLatin1Char('*') : QLatin1Char(' '))
                    .arg(printable(displayTitle(*item)), printable(detail(*item)),
                         item->appName ? QStringLiteral(" · ") + printable(*item->appName) : QString());
    }
    return text;
}

std::optional<int> numberFrom(const QString &word)
{
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    return isNumber && number >= 1 ? std::optional(number) : std::nullopt;
}

using StoreEdit = std::function<void(ClipboardStore &store, const ClipItem &item)>;

/// Edits entry `number` of the store on the disk; this process holds the lock.
ExitStatus editStored(int number, const StoreEdit &edit)
{
    ClipboardStore store(AppPaths::support());
    const QList<ClipItem> items = inDisplayOrder(store.load());
    if (number > items.size())
        return fail(ExitStatus::Failed, QStringLiteral("clipboard: there is no entry %1").arg(number));
    edit(store, items.at(number - 1));
    return store.close() ? ExitStatus::Done
                         : fail(ExitStatus::Failed, QStringLiteral("clipboard: cannot write the history"));
}

ExitStatus runOnEntry(const Invocation &invocation, const QString &verb, const StoreEdit &edit)
{
    const auto number = numberFrom(invocation.arguments.first());
    if (!number)
        return fail(ExitStatus::WrongUsage, QStringLiteral("%1: N is a number from 1, not %2")
                                                .arg(invocation.command->name, invocation.arguments.first()));
    StoreAccess access = accessStores();
    if (auto *client = std::get_if<ControlClient>(&access)) {
        const ControlAnswer answer = client->ask(verb, {{QStringLiteral("number"), *number}});
        return answer.status == ExitStatus::Done ? ExitStatus::Done : fail(answer.status, answer.error);
    }
    if (const auto *problem = std::get_if<QString>(&access))
        return fail(ExitStatus::Failed, *problem);
    return editStored(*number, edit);
}

} // namespace

ExitStatus runClipboardList(const Invocation &invocation)
{
    QJsonArray records;
    if (auto client = ControlClient::connect()) {
        const ControlAnswer answer = client->ask(QStringLiteral("clipboard.list"));
        if (answer.status != ExitStatus::Done)
            return fail(answer.status, answer.error);
        records = answer.result.toArray();
    } else {
        for (const ClipItem &item : inDisplayOrder(ClipboardStore::read(AppPaths::support())))
            records.append(clipRecordJson(item));
    }
    printOut(invocation.json ? compactJson(records) + QLatin1Char('\n') : listText(records));
    return ExitStatus::Done;
}

ExitStatus runClipboardCopy(const Invocation &invocation)
{
    const auto number = numberFrom(invocation.arguments.first());
    if (!number)
        return fail(ExitStatus::WrongUsage,
                    QStringLiteral("clipboard copy: N is a number from 1, not %1").arg(invocation.arguments.first()));
    auto client = ControlClient::connect();
    if (!client)
        return fail(ExitStatus::NotRunning, QStringLiteral("not running"));
    const ControlAnswer answer = client->ask(QStringLiteral("clipboard.copy"), {{QStringLiteral("number"), *number}});
    return answer.status == ExitStatus::Done ? ExitStatus::Done : fail(answer.status, answer.error);
}

ExitStatus runClipboardPin(const Invocation &invocation)
{
    return runOnEntry(invocation, QStringLiteral("clipboard.pin"),
                      [](ClipboardStore &store, const ClipItem &item) { store.setPinned(item.id, !item.pinned); });
}

ExitStatus runClipboardDelete(const Invocation &invocation)
{
    return runOnEntry(invocation, QStringLiteral("clipboard.delete"), [](ClipboardStore &store, const ClipItem &item) {
        store.remove({item.id}, ClipboardStore::Erasure::Final);
    });
}

ExitStatus runClipboardClear(const Invocation &)
{
    StoreAccess access = accessStores();
    if (auto *client = std::get_if<ControlClient>(&access)) {
        const ControlAnswer answer = client->ask(QStringLiteral("clipboard.clear"));
        return answer.status == ExitStatus::Done ? ExitStatus::Done : fail(answer.status, answer.error);
    }
    if (const auto *problem = std::get_if<QString>(&access))
        return fail(ExitStatus::Failed, *problem);
    ClipboardStore store(AppPaths::support());
    QList<QUuid> erased;
    for (const ClipItem &item : store.load()) {
        if (!item.pinned)
            erased.append(item.id);
    }
    store.remove(erased, ClipboardStore::Erasure::Final);
    return store.close() ? ExitStatus::Done
                         : fail(ExitStatus::Failed, QStringLiteral("clipboard: cannot write the history"));
}

} // namespace ostrelle
