#include "clipboard/ClipSearch.h"

#include "clipboard/BackgroundWork.h"
#include "records/ClipItem.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr qsizetype kSearchedAtOnce = 64 * 1024;

QStringView trimmedBlanks(QStringView text)
{
    const auto isBlank = [](QChar character) { return character == u' ' || character == u'\t'; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

/// Whether the title made of `text` contains `query`. Nothing is copied: a title shows each line feed as a space, so a
/// space of the query is compared with either.
bool titleOfTextContains(QStringView text, QStringView query)
{
    const QStringView title = text.trimmed();
    const qsizetype space = query.indexOf(u' ');
    if (space < 0)
        return title.contains(query, Qt::CaseInsensitive);

    const QStringView head = query.first(space);
    const auto restMatchesAt = [&](qsizetype position) {
        const QStringView candidate = title.sliced(position, query.size());
        qsizetype from = 0;
        while (from < query.size()) {
            qsizetype to = query.indexOf(u' ', from);
            to = to < 0 ? query.size() : to;
            if (candidate.sliced(from, to - from).compare(query.sliced(from, to - from), Qt::CaseInsensitive) != 0)
                return false;
            if (to < query.size() && candidate[to] != u' ' && candidate[to] != u'\n')
                return false;
            from = to + 1;
        }
        return true;
    };
    for (qsizetype at = title.indexOf(head, 0, Qt::CaseInsensitive); at >= 0 && at <= title.size() - query.size();
         at = title.indexOf(head, at + 1, Qt::CaseInsensitive)) {
        if (restMatchesAt(at))
            return true;
    }
    return false;
}

} // namespace

ClipSearch::ClipSearch(QObject *parent)
    : QObject(parent)
{
}

ClipSearch::~ClipSearch()
{
    ++*m_generation;
}

bool ClipSearch::setQuery(const QString &query)
{
    const QString trimmed = trimmedBlanks(query).toString();
    if (trimmed == m_query)
        return false;
    m_query = trimmed;
    m_largeMatches.clear();
    ++*m_generation;
    return true;
}

bool ClipSearch::matches(const ClipItem &item) const
{
    if (m_query.isEmpty() || item.appName.value_or(QString()).contains(m_query, Qt::CaseInsensitive))
        return true;
    if (item.kind != ClipItem::Kind::Text && item.kind != ClipItem::Kind::Link)
        return title(item).contains(m_query, Qt::CaseInsensitive);
    if (!item.text)
        return false;
    return item.text->size() <= kSearchedAtOnce ? titleOfTextContains(*item.text, m_query) : largeTextMatches(item);
}

bool ClipSearch::largeTextMatches(const ClipItem &item) const
{
    if (const auto known = m_largeMatches.constFind(item.id); known != m_largeMatches.constEnd())
        return *known;
    m_largeMatches.insert(item.id, false);
    auto *self = const_cast<ClipSearch *>(this);
    const int generation = *m_generation;
    const auto search = [text = *item.text, query = m_query, current = m_generation, generation] {
        return *current == generation && titleOfTextContains(text, query);
    };
    runInBackground(*self, search, [self, id = item.id, generation](bool isMatch) {
        if (!isMatch || *self->m_generation != generation)
            return;
        self->m_largeMatches.insert(id, true);
        Q_EMIT self->found();
    });
    return false;
}

} // namespace ostrelle
