#include "app/ClipboardRequests.h"

#include "app/NumberedEntry.h"
#include "app/RequestRouter.h"
#include "clipboard/ClipboardService.h"
#include "records/ClipOrder.h"
#include "records/ClipRecordJson.h"

#include <QJsonArray>

namespace ostrelle {

namespace {

/// The entry that the request numbers as the tool shows it; without one, `problem` is the answer.
std::optional<QUuid> numberedItem(ClipboardService &clipboard, const QJsonObject &request, RequestAnswer &problem)
{
    const QList<ClipItem> items = inDisplayOrder(clipboard.items());
    std::optional<QUuid> id;
    problem = onNumberedEntry(QStringLiteral("clipboard"), items.size(), request,
                              [&](int index) { id = items.at(index).id; });
    return id;
}

/// An erasure is acknowledged when it has left the disk.
ClipboardService::Saved answerWhenSaved(const RequestRouter::Reply &reply)
{
    return [reply](bool isSaved) {
        reply(isSaved ? RequestAnswer::done()
                      : RequestAnswer::failed(QStringLiteral("clipboard: cannot write the history")));
    };
}

void list(ClipboardService &clipboard, const QJsonObject &, const RequestRouter::Reply &reply)
{
    QJsonArray records;
    for (const ClipItem &item : inDisplayOrder(clipboard.items()))
        records.append(clipRecordJson(item));
    reply(RequestAnswer::done(records));
}

RequestAnswer answerTo(ClipboardService::CopyOutcome outcome)
{
    using Outcome = ClipboardService::CopyOutcome;
    switch (outcome) {
    case Outcome::Done:
        return RequestAnswer::done();
    case Outcome::Overtaken:
        return RequestAnswer::failed(QStringLiteral("clipboard copy: something else was copied meanwhile"));
    case Outcome::Unreadable:
        break;
    }
    return RequestAnswer::failed(QStringLiteral("clipboard copy: the image cannot be read"));
}

void copy(ClipboardService &clipboard, const QJsonObject &request, const RequestRouter::Reply &reply)
{
    RequestAnswer problem;
    if (const auto id = numberedItem(clipboard, request, problem))
        clipboard.copy(*id, [reply](ClipboardService::CopyOutcome outcome) { reply(answerTo(outcome)); });
    else
        reply(problem);
}

void pin(ClipboardService &clipboard, const QJsonObject &request, const RequestRouter::Reply &reply)
{
    RequestAnswer answer;
    if (const auto id = numberedItem(clipboard, request, answer))
        clipboard.togglePin(*id);
    reply(answer);
}

void erase(ClipboardService &clipboard, const QJsonObject &request, const RequestRouter::Reply &reply)
{
    RequestAnswer problem;
    if (const auto id = numberedItem(clipboard, request, problem))
        clipboard.erase(*id, answerWhenSaved(reply));
    else
        reply(problem);
}

void clear(ClipboardService &clipboard, const QJsonObject &, const RequestRouter::Reply &reply)
{
    clipboard.eraseAll(/*includingPinned=*/false, answerWhenSaved(reply));
}

} // namespace

void addClipboardRequests(RequestRouter &router, ClipboardService &clipboard)
{
    using Act = void (*)(ClipboardService &, const QJsonObject &, const RequestRouter::Reply &);
    // All of them need the stored history.
    const auto add = [&](const QString &verb, Act act) {
        router.addLater(verb, [&clipboard, act](const QJsonObject &request, const RequestRouter::Reply &reply) {
            clipboard.whenLoaded(&clipboard, [&clipboard, act, request, reply] { act(clipboard, request, reply); });
        });
    };
    add(QStringLiteral("clipboard.list"), list);
    add(QStringLiteral("clipboard.copy"), copy);
    add(QStringLiteral("clipboard.pin"), pin);
    add(QStringLiteral("clipboard.delete"), erase);
    add(QStringLiteral("clipboard.clear"), clear);
}

} // namespace ostrelle
