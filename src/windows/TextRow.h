#pragma once

#include "notch/controls/ControlContext.h"
#include "windows/controls/WrappedText.h"

#include <QWidget>

namespace ostrelle {

/// A row of a group that is a short text.
class TextRow : public QWidget
{
    Q_OBJECT
public:
    enum class Emphasis { Quiet, Strong };

    TextRow(const ControlContext &context, const QString &text, Emphasis emphasis, QWidget *parent);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return {0, heightForWidth(kUnbroken)}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    WrappedText broken(int width) const;

    const NotchAppearance &m_appearance;
    Emphasis m_emphasis;
};

} // namespace ostrelle
