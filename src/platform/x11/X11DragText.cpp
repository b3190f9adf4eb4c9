#include "platform/x11/X11DragText.h"

#include "foundation/MakeChild.h"
#include "platform/freedesktop/ClipboardTypes.h"
#include "platform/x11/WatchConnection.h"
#include "platform/x11/X11SelectionTransfer.h"

#include <QByteArrayList>

#include <memory>
#include <utility>

namespace ostrelle {

/// One read: a child of its context, until it has answered.
class X11DragText::Question : public QObject
{
public:
    Question(const X11DragText &owner, std::function<void(const QString &)> answer, QObject *context)
        : QObject(context)
        , m_watch(owner.m_watch)
        , m_scheduler(owner.m_scheduler)
        , m_answer(std::move(answer))
    {
    }

    void askForNext()
    {
        if (m_candidates.isEmpty()) {
            finish({});
            return;
        }
        const clipboardTypes::Candidate candidate = m_candidates.takeFirst();
        // The toolkit keeps the drag's times to itself. Sources take "now" for what it says.
        m_transfer = std::make_unique<X11SelectionTransfer>(
            m_watch, m_scheduler,
            X11SelectionTransfer::Request{.selection = m_watch.atom("XdndSelection"),
                                          .target = m_watch.atom(candidate.type.constData()),
                                          .time = XCB_CURRENT_TIME,
                                          .cap = kMostBytes},
            [this, encoding = candidate.encoding](const X11SelectionTransfer::Result &result) {
                if (result.outcome == ClipboardContent::Outcome::Absent)
                    askForNext();
                else if (result.outcome == ClipboardContent::Outcome::Read && result.unitBits == 8)
                    finish(clipboardTypes::decodeText(result.bytes, encoding));
                else
                    finish({});
            });
    }

private:
    void finish(const QString &text)
    {
        deleteLater();
        std::exchange(m_answer, nullptr)(text);
    }

    WatchConnection &m_watch;
    TaskScheduler &m_scheduler;
    std::function<void(const QString &)> m_answer;
    QList<clipboardTypes::Candidate> m_candidates =
        clipboardTypes::candidatesFor(ClipboardFormat::Text, {"text/plain;charset=utf-8", "UTF8_STRING", "text/plain"});
    std::unique_ptr<X11SelectionTransfer> m_transfer;
};

X11DragText::X11DragText(WatchConnection &watch, TaskScheduler &scheduler)
    : m_watch(watch)
    , m_scheduler(scheduler)
{
    // Asked for now: a question from within an answer's handler would have to wait.
    for (const char *name : {"XdndSelection", "text/plain;charset=utf-8", "UTF8_STRING", "text/plain"})
        watch.atom(name);
}

void X11DragText::read(QObject &context, std::function<void(const QString &text)> answer)
{
    makeChild<Question>(&context, *this, std::move(answer)).askForNext();
}

} // namespace ostrelle
