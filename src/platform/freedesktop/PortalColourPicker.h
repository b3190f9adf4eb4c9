#pragma once

#include "platform/ColourPicker.h"

#include <QObject>

#include <memory>

class QVariant;

namespace ostrelle {

class PortalRequest;

/// One colour picked with the desktop's own picker (org.freedesktop.portal.Screenshot, PickColor). Answers once, from
/// the event loop; destroying it ends the question, unanswered. Main thread.
class PortalColourPicker final : public QObject
{
    Q_OBJECT
public:
    /// Nothing: cancelled, or the desktop has no picker. The object may be destroyed from inside.
    using Answer = std::function<void(std::optional<PickedColour>)>;

    explicit PortalColourPicker(Answer answer);
    ~PortalColourPicker() override;

private:
    void finish(std::optional<PickedColour> colour);

    Answer m_answer; ///< empty once it was given
    std::unique_ptr<PortalRequest> m_request;
};

} // namespace ostrelle
