#pragma once

#include "foundation/RequestHandle.h"

#include <QImage>
#include <QString>

#include <functional>

class QObject;

namespace ostrelle {

using ThumbnailRequest = RequestHandle;

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
