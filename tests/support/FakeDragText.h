#pragma once

#include "platform/DragText.h"

#include <QPointer>
#include <QString>

#include <utility>

namespace ostrelle {

/// A drag of another program, which says what a test wants when the test wants it.
class FakeDragText final : public DragText
{
public:
    void read(QObject &context, std::function<void(const QString &text)> answer) override
    {
        m_context = &context;
        m_answer = std::move(answer);
    }

    /// Whether somebody still wants to know.
    bool isAsked() const { return m_answer && m_context; }
    void say(const QString &text)
    {
        if (const auto answer = std::exchange(m_answer, nullptr); answer && m_context)
            answer(text);
    }

private:
    QPointer<QObject> m_context;
    std::function<void(const QString &)> m_answer;
};

} // namespace ostrelle
