#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QUuid>

#include <atomic>
#include <memory>

namespace ostrelle {

struct ClipItem;

/// Finds the items whose whole title or application name contains a query, upper and lower case alike. Very long texts
/// are searched on another thread: they match once that has found something.
class ClipSearch : public QObject
{
    Q_OBJECT
public:
    explicit ClipSearch(QObject *parent = nullptr);
    ~ClipSearch() override;

    /// Spaces and tabs at the ends do not count; an empty query matches everything. False when nothing changed.
    bool setQuery(const QString &query);
    bool matches(const ClipItem &item) const;

Q_SIGNALS:
    /// A very long text turned out to match.
    void found();

private:
    bool largeTextMatches(const ClipItem &item) const;

    QString m_query;
    /// By item; false also while the search still runs.
    mutable QHash<QUuid, bool> m_largeMatches;
    /// The number of the query in force. Shared, because a search that waits for its thread or runs outlives this.
    std::shared_ptr<std::atomic<int>> m_generation = std::make_shared<std::atomic<int>>(0);
};

} // namespace ostrelle
