#pragma once

#include <QTest>

namespace ostrelle {

/// Runs the event loop until the condition holds; the running test fails, naming `what`, when it never does.
template <typename Condition>
void waitUntil(const char *what, Condition condition)
{
    constexpr int kDeadlineMilliseconds = 20'000;
    if (!QTest::qWaitFor(condition, kDeadlineMilliseconds)) {
        QTest::qFail(what, __FILE__, __LINE__);
    }
}

} // namespace ostrelle
