#include "command/ClipboardCommands.h"

#include "command/CommandLine.h"
#include "command/ControlClient.h"
#include "command/Output.h"
#include "command/StoreAccess.h"
#include "command/StoreSteps.h"
#include "foundation/AppPaths.h"
#include "records/ClipOrder.h"
#include "records/ClipRecordJson.h"
#include "records/ClipboardStore.h"

#include <QJsonArray>

#include <functional>

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

using StoreEdit = std::function<void(ClipboardStore &store, const ClipItem &item)>;

ExitStatus closed(ClipboardStore &store)
{
    return store.close() ? ExitStatus::Done
                         : fail(ExitStatus::Failed, QStringLiteral("clipboard: cannot write the history"));
}

/// Edits entry `number` of the store on the disk; this process holds the lock.
ExitStatus editStored(int number, const StoreEdit &edit)
{
    ClipboardStore store(AppPaths::support());
    const QList<ClipItem> items = inDisplayOrder(store.load());
    if (number > items.size())
        return noEntry(QStringLiteral("clipboard"), number);
    muteStoreWarnings();
    edit(store, items.at(number - 1));
    return closed(store);
}

ExitStatus runOnEntry(const Invocation &invocation, const QString &verb, const StoreEdit &edit)
{
    const auto number = numberFrom(invocation, 0);
    if (!number)
        return ExitStatus::WrongUsage;
    return editStores(verb, {{QStringLiteral("number"), *number}}, [&] { return editStored(*number, edit); });
}

} // namespace

ExitStatus runClipboardList(const Invocation &invocation)
{
    return listRecords(
        invocation, QStringLiteral("clipboard.list"),
        [] {
            QJsonArray records;
            for (const ClipItem &item : inDisplayOrder(ClipboardStore::read(AppPaths::support())))
                records.append(clipRecordJson(item));
            return records;
        },
        listText);
}

ExitStatus runClipboardCopy(const Invocation &invocation)
{
    const auto number = numberFrom(invocation, 0);
    if (!number)
        return ExitStatus::WrongUsage;
    auto client = ControlClient::connect();
    if (!client)
        return fail(ExitStatus::NotRunning, QStringLiteral("not running"));
    return reported(client->ask(QStringLiteral("clipboard.copy"), {{QStringLiteral("number"), *number}}));
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
    return editStores(QStringLiteral("clipboard.clear"), {}, [] {
        ClipboardStore store(AppPaths::support());
        QList<QUuid> erased;
        for (const ClipItem &item : store.load()) {
            if (!item.pinned)
                erased.append(item.id);
        }
        muteStoreWarnings();
        store.remove(erased, ClipboardStore::Erasure::Final);
        return closed(store);
    });
}

} // namespace ostrelle
