#pragma once

#include "notch/controls/ControlContext.h"

#include <QString>
#include <QWidget>

namespace ostrelle {

/// One way to open the notch.
class HowRow : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kHeight = 58;

    struct Content
    {
        QString symbol;
        QString title;
        QString detail;
        bool isFirst = false; ///< without a line above it
    };

    HowRow(const ControlContext &context, const Content &content, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const NotchAppearance &m_appearance;
    Content m_content;
};

} // namespace ostrelle
