#include "notch/controls/MetadataGrid.h"

#include "foundation/MakeChild.h"
#include "notch/controls/MetadataRow.h"

#include <algorithm>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kColumnGap = 24;

} // namespace

MetadataGrid::MetadataGrid(const ControlContext &context, ClipboardPort &clipboard, Haptics &haptics, int columns,
                           QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_clipboard(clipboard)
    , m_haptics(haptics)
    , m_columns(columns)
{
    setAttribute(Qt::WA_NoSystemBackground);
}

void MetadataGrid::setFacts(const QList<Fact> &facts)
{
    QList<MetadataRow *> rows;
    for (const Fact &fact : facts) {
        if (MetadataRow *present = row(fact.label)) {
            present->setValue(fact.value);
            rows.append(present);
        } else {
            rows.append(&makeChild<MetadataRow>(this, m_context, m_clipboard, m_haptics,
                                                MetadataRow::Content{.label = fact.label, .value = fact.value}));
            rows.last()->show();
        }
    }
    for (MetadataRow *previous : std::exchange(m_rows, rows)) {
        if (!rows.contains(previous)) {
            previous->hide();
            previous->deleteLater();
        }
    }
    const int lines = (static_cast<int>(m_rows.size()) + m_columns - 1) / m_columns;
    setFixedHeight(lines * MetadataRow::kHeight);
    arrange();
}

MetadataRow *MetadataGrid::row(const QString &label) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const MetadataRow *row) { return row->label() == label; });
    return found == m_rows.end() ? nullptr : *found;
}

QString MetadataGrid::text() const
{
    QString text;
    for (const MetadataRow *row : m_rows)
        text += row->label() + u'\t' + row->value() + u'\n';
    return text;
}

void MetadataGrid::resizeEvent(QResizeEvent *)
{
    arrange();
}

void MetadataGrid::arrange()
{
    const int columnWidth = (width() - (m_columns - 1) * kColumnGap) / m_columns;
    for (int i = 0; i < static_cast<int>(m_rows.size()); ++i) {
        const int x = (i % m_columns) * (columnWidth + kColumnGap);
        m_rows.at(i)->setGeometry(x, (i / m_columns) * MetadataRow::kHeight, columnWidth, MetadataRow::kHeight);
    }
}

} // namespace ostrelle
