#pragma once

#include "notch/controls/ControlContext.h"

#include <QLabel>

namespace ostrelle {

/// The small title of a section, in spaced capitals.
class SectionLabel : public QLabel
{
    Q_OBJECT
public:
    SectionLabel(const ControlContext &context, const QString &text, QWidget *parent);
};

} // namespace ostrelle
