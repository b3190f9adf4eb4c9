#pragma once

#include "clipboard/ClipboardRow.h"
#include "records/ClipItem.h"

#include <QAbstractListModel>
#include <QList>

#include <optional>

namespace ostrelle {

class ClipboardService;

/// The history as a list, newest capture first. Rows are made when they are first asked for.
class ClipboardListModel : public QAbstractListModel
{
    Q_OBJECT
public:
    static constexpr int kRowRole = Qt::UserRole; ///< a ClipboardRow

    explicit ClipboardListModel(ClipboardService &service, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    /// Besides kRowRole the title as DisplayRole, and title, detail and age as AccessibleTextRole.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    const ClipItem &item(int index) const { return m_items.at(index); }

private:
    struct Entry
    {
        ClipboardRow row;
        bool isCounting = false;
    };

    const ClipboardRow &row(int index) const;
    QString detailOf(const ClipItem &item, Entry &entry) const;
    void takeCount(const ClipItem &counted, const QString &detail);

    void reset();
    void insert(int index);
    void remove(int index);
    void move(int from, int to);
    void change(int index);

    ClipboardService &m_service;
    /// A list of its own, because views may ask while the service is already ahead by several changes.
    QList<ClipItem> m_items;
    mutable QList<std::optional<Entry>> m_entries;
};

} // namespace ostrelle
