#pragma once

#include "files/ThumbnailSource.h"

#include <QList>
#include <QPointer>
#include <QStringList>

#include <algorithm>
#include <memory>
#include <utility>

namespace ostrelle {

/// Makes thumbnails when the test says so, the newest request first.
class StandInThumbnails final : public ThumbnailSource
{
public:
    ThumbnailRequest request(const QString &path, int pixelSize, QObject *context,
                             std::function<void(QImage)> answer) override
    {
        const auto open = std::make_shared<Open>(Open{path, pixelSize, context, std::move(answer)});
        m_open->append(open);
        ++m_count;
        return ThumbnailRequest(std::make_unique<Entry>(m_open, open));
    }

    /// In the order in which they are served.
    QStringList waiting() const
    {
        QStringList paths;
        for (auto open = m_open->crbegin(); open != m_open->crend(); ++open)
            paths.append((*open)->path);
        return paths;
    }
    int pixelSize() const { return m_open->last()->pixelSize; }
    /// Requests ever.
    int count() const { return m_count; }

    void serve(const QImage &picture)
    {
        const std::shared_ptr<Open> open = m_open->takeLast();
        if (open->context)
            open->answer(picture);
    }

private:
    struct Open
    {
        QString path;
        int pixelSize = 0;
        QPointer<QObject> context;
        std::function<void(QImage)> answer;
    };
    // Shared with the handles, which may outlive this.
    using List = std::shared_ptr<QList<std::shared_ptr<Open>>>;

    class Entry final : public ThumbnailRequest::Entry
    {
    public:
        Entry(List list, std::shared_ptr<Open> open)
            : m_list(std::move(list))
            , m_open(std::move(open))
        {
        }
        ~Entry() override { m_list->removeOne(m_open); }

    private:
        List m_list;
        std::shared_ptr<Open> m_open;
    };

    List m_open = std::make_shared<QList<std::shared_ptr<Open>>>();
    int m_count = 0;
};

} // namespace ostrelle
