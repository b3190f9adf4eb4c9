#include "command/ShelfCommands.h"

#include "command/CommandLine.h"
#include "command/RecordEdits.h"
#include "records/RecordLists.h"
#include "records/RecordText.h"

#include <QDateTime>

namespace ostrelle {

ExitStatus runShelfList(const Invocation &invocation)
{
    return listStoredRecords<ShelfItem>(invocation, QStringLiteral("shelf.list"),
                                        [](const ShelfItem &item) { return printable(item.path); });
}

ExitStatus runShelfAdd(const Invocation &invocation)
{
    return addPaths<ShelfItem>(invocation.arguments, PathKind::Any, QStringLiteral("shelf.add"),
                               QStringLiteral("shelf add: there is no %1"),
                               [](const QList<ShelfItem> &items, const QStringList &paths) {
                                   return withPaths(items, paths, referenceDate(QDateTime::currentMSecsSinceEpoch()));
                               });
}

ExitStatus runShelfRemove(const Invocation &invocation)
{
    const auto number = numberFrom(invocation, 0);
    if (!number)
        return ExitStatus::WrongUsage;
    return editStores(QStringLiteral("shelf.remove"), {{QStringLiteral("number"), *number}}, [&] {
        return editRecord<ShelfItem>(QStringLiteral("shelf"), *number, [](QList<ShelfItem> items, int index) {
            items.removeAt(index);
            return items;
        });
    });
}

ExitStatus runShelfClear(const Invocation &)
{
    return editStores(QStringLiteral("shelf.clear"), {}, [] {
        return editRecords<ShelfItem>([](const QList<ShelfItem> &) { return QList<ShelfItem>(); });
    });
}

} // namespace ostrelle
