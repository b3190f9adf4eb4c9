#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/EmptyStateView.h"

namespace ostrelle {

/// Lies over the facts of a file and says for a moment that another one was refused. What is below has to fade as far
/// as remainder() says. Passes the pointer through; hidden when it has faded out.
class RefusalNote : public EmptyStateView
{
    Q_OBJECT
public:
    RefusalNote(const ControlContext &context, const Content &refusal, QWidget *parent);

    void setShown(bool shown);
    /// The opacity of what lies below, 1 without the note.
    double remainder() const;

Q_SIGNALS:
    /// remainder() is another one.
    void faded();

private:
    AnimatedNumber m_shown;
};

} // namespace ostrelle
