#include "app/ClipboardRequests.h"

#include "app/NumberedEntry.h"
#include "app/RequestRouter.h"
#include "clipboard/ClipboardService.h"
#include "records/ClipOrder.h"
#include "records/ClipRecordJson.h"

#include <QJsonArray>

namespace ostrelle {

namespace {

/// Runs `act` on the entry that the request numbers as the tool shows it.
RequestAnswer onNumberedItem(ClipboardService &clipboard, const QJsonObject &request,
                             const std::function<void(const ClipItem &item)> &act)
{
    const QList<ClipItem> items = inDisplayOrder(clipboard.items());
    return onNumberedEntry(QStringLiteral("clipboard"), items.size(), request,
                           [&](int index) { act(items.at(index)); });
}

} // namespace

void addClipboardRequests(RequestRouter &router, ClipboardService &clipboard)
{
    router.add(QStringLiteral("clipboard.list"), [&clipboard](const QJsonObject &) {
        QJsonArray records;
        for (const ClipItem &item : inDisplayOrder(clipboard.items()))
            records.append(clipRecordJson(item));
        return RequestAnswer::done(records);
    });
    router.add(QStringLiteral("clipboard.copy"), [&clipboard](const QJsonObject &request) {
        return onNumberedItem(clipboard, request, [&](const ClipItem &item) { clipboard.copy(item.id); });
    });
    router.add(QStringLiteral("clipboard.pin"), [&clipboard](const QJsonObject &request) {
        return onNumberedItem(clipboard, request, [&](const ClipItem &item) { clipboard.togglePin(item.id); });
    });
    router.add(QStringLiteral("clipboard.delete"), [&clipboard](const QJsonObject &request) {
        return onNumberedItem(clipboard, request, [&](const ClipItem &item) { clipboard.erase(item.id); });
    });
    router.add(QStringLiteral("clipboard.clear"), [&clipboard](const QJsonObject &) {
        clipboard.eraseAll(/*includingPinned=*/false);
        return RequestAnswer::done();
    });
}

} // namespace ostrelle
