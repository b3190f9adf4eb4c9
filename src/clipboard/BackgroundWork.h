#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace ostrelle {

/// Runs `work` on another thread and gives its value to `answer` on the main thread, or to nobody when `context` is
/// gone by then. `work` must not touch what belongs to the main thread. Called from the main thread.
template <typename Work, typename Answer>
void runInBackground(QObject &context, Work work, Answer answer)
{
    // The application waits for the pool before it goes, so it can always take the answer.
    QThreadPool::globalInstance()->start(
        [guard = QPointer<QObject>(&context), work = std::move(work), answer = std::move(answer)] {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [guard, answer, value = work()] {
                    if (guard)
                        answer(value);
                },
                Qt::QueuedConnection);
        });
}

} // namespace ostrelle
