#pragma once

#include <QImage>
#include <QString>

#include <functional>
#include <memory>
#include <utility>

class QObject;

namespace ostrelle {

/// Handle of one requested thumbnail. Owning it keeps the request alive; after cancel(), destruction, or assignment of
/// another request nothing of the old one is called. Cancelling twice is fine. Main thread.
class [[nodiscard]] ThumbnailRequest
{
public:
    /// What a source keeps per request; its destruction cancels.
    class Entry
    {
    public:
        virtual ~Entry() = default;
    };

    ThumbnailRequest() = default;
    explicit ThumbnailRequest(std::unique_ptr<Entry> entry)
        : m_entry(std::move(entry))
    {
    }

    void cancel() { m_entry.reset(); }

private:
    std::unique_ptr<Entry> m_entry;
};

/// Makes small pictures of what files hold, outside this process. Main thread; nothing here waits.
class ThumbnailSource
{
public:
    virtual ~ThumbnailSource() = default;

    /// Answers once with a picture whose longer side is at most `pixelSize`, or with a null image when there is none of
    /// this file; never before it returns. The newest request is served first. No answer when `context` is gone by
    /// then.
    virtual ThumbnailRequest request(const QString &path, int pixelSize, QObject *context,
                                     std::function<void(QImage)> answer) = 0;
};

} // namespace ostrelle
