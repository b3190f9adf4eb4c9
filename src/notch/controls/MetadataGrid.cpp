#include "notch/controls/MetadataGrid.h"

#include "notch/controls/MetadataRow.h"

#include <utility>

namespace ostrelle {
namespace {

constexpr int kColumns = 2;
constexpr int kColumnGap = 24;

} // namespace

void MetadataGrid::setRows(const QList<MetadataRow *> &rows)
{
    for (MetadataRow *row : std::exchange(m_rows, rows)) {
        row->hide();
        row->deleteLater();
    }
    for (MetadataRow *row : m_rows) {
        row->setParent(this);
        row->show();
    }
    const int lines = (static_cast<int>(m_rows.size()) + kColumns - 1) / kColumns;
    setFixedHeight(lines * MetadataRow::kHeight);
    arrange();
}

void MetadataGrid::resizeEvent(QResizeEvent *)
{
    arrange();
}

void MetadataGrid::arrange()
{
    const int columnWidth = (width() - (kColumns - 1) * kColumnGap) / kColumns;
    for (int i = 0; i < static_cast<int>(m_rows.size()); ++i) {
        const int x = (i % kColumns) * (columnWidth + kColumnGap);
        m_rows.at(i)->setGeometry(x, (i / kColumns) * MetadataRow::kHeight, columnWidth, MetadataRow::kHeight);
    }
}

} // namespace ostrelle
