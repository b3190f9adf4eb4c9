#pragma once

#include <QList>
#include <QWidget>

namespace ostrelle {

class MetadataRow;

/// Rows of facts in two columns, 24 apart, filled row by row.
class MetadataGrid : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    /// Shows these rows, which become children, in place of the previous ones, which are deleted.
    void setRows(const QList<MetadataRow *> &rows);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    QList<MetadataRow *> m_rows;
};

} // namespace ostrelle
