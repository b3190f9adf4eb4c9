#include "clipboard/ClipboardListModel.h"

#include "clipboard/BackgroundWork.h"
#include "clipboard/ClipboardService.h"
#include "clipboard/RelativeAge.h"

#include <QStringList>

namespace ostrelle {
namespace {

/// Wider than a row even in the narrowest letters.
constexpr qsizetype kShownLength = 512;
/// Counting the characters of a longer text would be felt.
constexpr qsizetype kCountedAtOnce = 64 * 1024;

QString shownTitle(const ClipItem &item)
{
    QString title = displayTitle(item).left(kShownLength);
    if (title.endsWith(QLatin1Char('\r')) || (!title.isEmpty() && title.back().isHighSurrogate()))
        title.chop(1);
    // A line break of two characters is one gap.
    title.replace(QStringLiteral("\r "), QStringLiteral(" "));
    for (QChar &character : title) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            character = u' ';
    }
    return title;
}

bool isSameText(const ClipItem &a, const ClipItem &b)
{
    return a.id == b.id && a.kind == ClipItem::Kind::Text && b.kind == a.kind && a.text && b.text &&
           a.text->constData() == b.text->constData() && a.text->size() == b.text->size();
}

} // namespace

ClipboardListModel::ClipboardListModel(ClipboardService &service, QObject *parent)
    : QAbstractListModel(parent)
    , m_service(service)
    , m_items(service.items())
    , m_entries(m_items.size())
{
    connect(&service, &ClipboardService::itemsReset, this, &ClipboardListModel::reset);
    connect(&service, &ClipboardService::itemInserted, this, &ClipboardListModel::insert);
    connect(&service, &ClipboardService::itemRemoved, this, &ClipboardListModel::remove);
    connect(&service, &ClipboardService::itemMoved, this, &ClipboardListModel::move);
    connect(&service, &ClipboardService::itemChanged, this, &ClipboardListModel::change);
}

int ClipboardListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QVariant ClipboardListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return row(index.row()).title;
    case Qt::AccessibleTextRole: {
        const ClipboardRow &shown = row(index.row());
        QStringList parts{shown.title, shown.detail, relativeAgeOf(shown.date)};
        parts.removeAll(QString());
        return parts.join(QStringLiteral(", "));
    }
    case kRowRole:
        return QVariant::fromValue(row(index.row()));
    default:
        return {};
    }
}

const ClipboardRow &ClipboardListModel::row(int index) const
{
    std::optional<Entry> &entry = m_entries[index];
    if (!entry) {
        const ClipItem &item = m_items.at(index);
        entry.emplace();
        entry->row = {.id = item.id,
                      .kind = item.kind,
                      .title = shownTitle(item),
                      .detail = {},
                      .appName = item.appName.value_or(QString()),
                      .iconPath = item.paths ? item.paths->value(0) : QString(),
                      .date = item.date,
                      .pinned = item.pinned};
        entry->row.detail = detailOf(item, *entry);
    }
    return entry->row;
}

QString ClipboardListModel::detailOf(const ClipItem &item, Entry &entry) const
{
    if (item.kind != ClipItem::Kind::Text || !item.text || item.text->size() <= kCountedAtOnce)
        return detail(item);
    entry.isCounting = true;
    auto *self = const_cast<ClipboardListModel *>(this);
    runInBackground(
        *self, [item] { return detail(item); },
        [self, item](const QString &counted) { self->takeCount(item, counted); });
    return {};
}

void ClipboardListModel::takeCount(const ClipItem &counted, const QString &detail)
{
    for (int i = 0; i < m_items.size(); ++i) {
        std::optional<Entry> &entry = m_entries[i];
        if (!entry || !entry->isCounting || !isSameText(m_items.at(i), counted))
            continue;
        entry->isCounting = false;
        entry->row.detail = detail;
        Q_EMIT dataChanged(index(i), index(i), {kRowRole, Qt::AccessibleTextRole});
        return;
    }
}

void ClipboardListModel::reset()
{
    beginResetModel();
    m_items = m_service.items();
    m_entries = QList<std::optional<Entry>>(m_items.size());
    endResetModel();
}

void ClipboardListModel::insert(int index)
{
    beginInsertRows({}, index, index);
    m_items.insert(index, m_service.items().at(index));
    m_entries.insert(index, std::nullopt);
    endInsertRows();
}

void ClipboardListModel::remove(int index)
{
    beginRemoveRows({}, index, index);
    m_items.removeAt(index);
    m_entries.removeAt(index);
    endRemoveRows();
}

void ClipboardListModel::move(int from, int to)
{
    if (from != to) {
        beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
        m_items.move(from, to);
        m_entries.move(from, to);
        endMoveRows();
    }
    // A repeat has a new date.
    change(to);
}

void ClipboardListModel::change(int index)
{
    const ClipItem &now = m_service.items().at(index);
    std::optional<Entry> &entry = m_entries[index];
    if (entry && isSameText(m_items.at(index), now)) {
        entry->row.date = now.date;
        entry->row.pinned = now.pinned;
        entry->row.appName = now.appName.value_or(QString());
    } else {
        entry.reset();
    }
    m_items[index] = now;
    const QModelIndex changed = this->index(index);
    Q_EMIT dataChanged(changed, changed);
}

} // namespace ostrelle
