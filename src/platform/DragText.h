#pragma once

#include <functional>

class QObject;
class QString;

namespace ostrelle {

/// What a drag of another program says, as long as it is over one of this program's windows. The toolkit would wait for
/// that program; this does not. Main thread.
class DragText
{
public:
    static constexpr int kMostBytes = 256;

    virtual ~DragText() = default;

    /// Reads its plain text. `answer` is called once, from the event loop, unless `context` is gone by then; with
    /// nothing where there is none, where it is longer than kMostBytes, or where the other program does not answer.
    virtual void read(QObject &context, std::function<void(const QString &text)> answer) = 0;
};

} // namespace ostrelle
