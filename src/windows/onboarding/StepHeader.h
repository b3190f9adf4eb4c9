#pragma once

#include "notch/controls/ControlContext.h"

#include <QString>
#include <QStringList>
#include <QWidget>

namespace ostrelle {

/// What a step is about: a title and a sentence below it, at the top of its page.
class StepHeader : public QWidget
{
    Q_OBJECT
public:
    /// `subtitle` is broken where the list is.
    StepHeader(const ControlContext &context, const QString &title, const QStringList &subtitle, QWidget *page);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const NotchAppearance &m_appearance;
    QStringList m_subtitle;
};

} // namespace ostrelle
