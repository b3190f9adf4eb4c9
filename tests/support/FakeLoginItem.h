#pragma once

#include "platform/LoginItem.h"

namespace ostrelle {

/// A desktop that registers at once, unless the test has it refuse.
class FakeLoginItem final : public LoginItem
{
    Q_OBJECT
public:
    using LoginItem::LoginItem;

    Status status() const override { return m_status; }
    void setRegistered(bool isRegistered, QObject *, Answer answer) override
    {
        ++m_calls;
        if (problem.isEmpty())
            setStatus(isRegistered ? Status::Enabled : Status::NotRegistered);
        answer(problem);
    }

    /// The desktop's own settings, or another program, changed it.
    void setStatus(Status status)
    {
        m_status = status;
        Q_EMIT statusChanged();
    }
    /// How often it was asked to change.
    int calls() const { return m_calls; }

    QString problem; ///< answered to every change while not empty

private:
    Status m_status = Status::NotRegistered;
    int m_calls = 0;
};

} // namespace ostrelle
