#include "records/Forgotten.h"

#include "foundation/AppPaths.h"
#include "foundation/AtomicFile.h"
#include "records/ShelfItem.h"

#include <array>

namespace ostrelle {
namespace {

struct Part
{
    const char *key;
    qsizetype Forgotten::*count;
    const char *one;
    const char *several;
};

constexpr std::array kParts{
    Part{"clipboard", &Forgotten::clips, "1 entry of the clipboard history", "%1 entries of the clipboard history"},
    Part{"shelf", &Forgotten::shelfItems, "1 entry of the shelf", "%1 entries of the shelf"},
    Part{"recentFiles", &Forgotten::recentFiles, "1 recent file", "%1 recent files"},
    Part{"recentColors", &Forgotten::recentColors, "1 recent color", "%1 recent colors"},
    Part{"favoriteColors", &Forgotten::favoriteColors, "1 favorite color", "%1 favorite colors"},
};

} // namespace

QJsonObject Forgotten::toJson() const
{
    QJsonObject object;
    for (const Part &part : kParts)
        object[QLatin1StringView(part.key)] = this->*part.count;
    return object;
}

Forgotten Forgotten::fromJson(const QJsonObject &object)
{
    Forgotten forgotten;
    for (const Part &part : kParts)
        forgotten.*part.count = object[QLatin1StringView(part.key)].toInt();
    return forgotten;
}

QString Forgotten::text() const
{
    QString text = QStringLiteral("Erased:\n");
    for (const Part &part : kParts) {
        const qsizetype count = this->*part.count;
        const QString what = count == 1 ? QString::fromLatin1(part.one) : QString::fromLatin1(part.several).arg(count);
        text += QStringLiteral("  %1\n").arg(what);
    }
    return text;
}

bool forgetUnreadable()
{
    const QString folder = AppPaths::support();
    bool areGone = true;
    for (const QString &path :
         {folder + QStringLiteral("/clipboard.json"), folder + QStringLiteral("/clipboard.journal"),
          folder + u'/' + ShelfItem::kFileName.toString(), AppPaths::defaultsFile()})
        areGone = removeUnreadable(path) && areGone;
    return areGone;
}

} // namespace ostrelle
