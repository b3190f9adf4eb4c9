#include "files/PathToolTip.h"

#include <QStringList>
#include <QTextDocument>

#include <algorithm>

namespace ostrelle {
namespace {

/// A tooltip of plain text is as wide as its longest line, also beyond the screen.
constexpr qsizetype kLongestLine = 72;

/// After a slash or a blank, if there is one.
qsizetype lineEnd(QStringView rest)
{
    const QStringView line = rest.first(kLongestLine);
    const qsizetype end = std::max(line.lastIndexOf(u'/'), line.lastIndexOf(u' ')) + 1;
    if (end > 1)
        return end;
    return rest.at(kLongestLine).isLowSurrogate() ? kLongestLine - 1 : kLongestLine;
}

} // namespace

QString pathToolTip(const QString &path)
{
    QStringList lines;
    QStringView rest = path;
    while (rest.size() > kLongestLine) {
        const qsizetype end = lineEnd(rest);
        lines.append(rest.first(end).toString());
        rest = rest.sliced(end);
    }
    lines.append(rest.toString());
    const QString text = lines.join(u'\n');
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace ostrelle
