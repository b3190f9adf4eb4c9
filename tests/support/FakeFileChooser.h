#pragma once

#include "platform/FileChooser.h"

#include <QPointer>

#include <utility>
#include <vector>

namespace ostrelle {

/// A chooser that stays open until the test closes it.
class FakeFileChooser final : public FileChooser
{
public:
    void choose(const FileChoice &choice, QObject *context, std::function<void(QStringList)> answer) override
    {
        m_waiting.push_back({choice, context, std::move(answer)});
    }

    void raise() override { m_raiseCount += isOpen() ? 1 : 0; }
    int raiseCount() const { return m_raiseCount; }

    bool isOpen() const { return !m_waiting.empty(); }
    /// What it shows.
    const FileChoice &choice() const { return m_waiting.back().choice; }
    /// The user confirms these, or cancels with none. Choices whose place was taken are answered first, with none.
    void close(const QStringList &paths)
    {
        const auto waiting = std::exchange(m_waiting, {});
        for (const Waiting &one : waiting) {
            if (one.context) {
                one.answer(&one == &waiting.back() ? paths : QStringList());
            }
        }
    }

private:
    struct Waiting
    {
        FileChoice choice;
        QPointer<QObject> context;
        std::function<void(QStringList)> answer;
    };

    std::vector<Waiting> m_waiting;
    int m_raiseCount = 0;
};

} // namespace ostrelle
