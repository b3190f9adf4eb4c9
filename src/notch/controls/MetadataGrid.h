#pragma once

#include "notch/controls/ControlContext.h"

#include <QList>
#include <QString>
#include <QWidget>

namespace ostrelle {

class ClipboardPort;
class Haptics;
class MetadataRow;

/// Rows of facts in columns, 24 apart, filled row by row.
class MetadataGrid : public QWidget
{
    Q_OBJECT
public:
    struct Fact
    {
        QString label;
        QString value;
    };

    MetadataGrid(const ControlContext &context, ClipboardPort &clipboard, Haptics &haptics, int columns,
                 QWidget *parent);

    /// Shows these facts, whose labels differ. A row stays the one it is while its label is among them.
    void setFacts(const QList<Fact> &facts);
    /// The row of that label, or null.
    MetadataRow *row(const QString &label) const;
    /// A line for each fact: label, tab, value.
    QString text() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();

    ControlContext m_context;
    ClipboardPort &m_clipboard;
    Haptics &m_haptics;
    int m_columns;
    QList<MetadataRow *> m_rows;
};

} // namespace ostrelle
