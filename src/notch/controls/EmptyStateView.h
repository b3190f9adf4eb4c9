#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

/// What stands in an empty place: a symbol over a message and a hint, centred. It comes and goes with a fade, scaling
/// from 0.97.
class EmptyStateView : public QWidget
{
    Q_OBJECT
public:
    struct Content
    {
        QString symbol;
        QString message;
        QString hint; ///< may be empty

        friend bool operator==(const Content &, const Content &) = default;
    };

    EmptyStateView(const ControlContext &context, Content content, QWidget *parent);

    const Content &content() const { return m_content; }
    void setContent(const Content &content);
    /// Lets the view come; it is visible at once and fades in.
    void appear();
    /// Lets it go; it is hidden when it has faded out.
    void disappear();
    /// Of what the view stands on, beside its own coming and going.
    void setOpacity(double opacity);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override { return minimumSizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void describe();
    double textHeight(const QString &text, const QFont &font) const;

    ControlContext m_context;
    Content m_content;
    AnimatedNumber m_presence;
    double m_opacity = 1;
};

} // namespace ostrelle
