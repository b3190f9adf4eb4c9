#include "files/AssetThumbnails.h"

#include "files/FilePresence.h"

#include <QPainter>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

/// Logical length of the longer side that is asked for: enough to fill the square with a picture of two to one.
constexpr int kAskedSide = 120;

/// The middle of it with round corners, cut once and not whenever it is painted.
QImage roundedSquare(const QImage &picture, int side)
{
    if (picture.isNull())
        return {};
    const int shorter = std::min(picture.width(), picture.height());
    const QRect middle((picture.width() - shorter) / 2, (picture.height() - shorter) / 2, shorter, shorter);
    const QImage square = picture.copy(middle).scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const double radius = AssetThumbnails::kRadius * side / AssetThumbnails::kSide;
    QImage rounded(square.size(), QImage::Format_ARGB32_Premultiplied);
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(square);
    painter.drawRoundedRect(rounded.rect(), radius, radius);
    return rounded;
}

} // namespace

AssetThumbnails::AssetThumbnails(ThumbnailSource *source, FilePresence &presence, QObject *parent)
    : QObject(parent)
    , m_source(source)
    , m_presence(presence)
    , m_cache(kKept)
{
    connect(&presence, &FilePresence::changed, this, &AssetThumbnails::forgetChanged);
}

AssetThumbnails::~AssetThumbnails() = default;

QImage AssetThumbnails::picture(const QUuid &id) const
{
    return m_cache.find(id).value_or(QImage());
}

void AssetThumbnails::want(const QList<ShelfItem> &items, qsizetype inSight, double devicePixelRatio)
{
    if (m_source == nullptr)
        return;
    if (devicePixelRatio != m_devicePixelRatio) {
        m_devicePixelRatio = devicePixelRatio;
        m_cache.clear();
        m_asked.clear();
    } else if (items == m_wanted && inSight == m_inSight) {
        return;
    }
    m_wanted = items.first(std::min<qsizetype>(items.size(), kKept));
    m_inSight = std::min(inSight, m_wanted.size());
    QSet<QUuid> wanted;
    for (const ShelfItem &item : m_wanted)
        wanted.insert(item.id);
    std::erase_if(m_asked, [&](const auto &asked) { return !wanted.contains(asked.first); });
    ask();
}

bool AssetThumbnails::isMissing(const ShelfItem &item) const
{
    return !m_cache.find(item.id) && m_presence.facts(item.path).isPlainFile();
}

void AssetThumbnails::ask()
{
    askFor(0, m_inSight);
    const bool isSightServed = std::none_of(m_wanted.cbegin(), m_wanted.cbegin() + m_inSight,
                                            [this](const ShelfItem &item) { return m_asked.contains(item.id); });
    if (isSightServed)
        askFor(m_inSight, m_wanted.size());
    count();
}

void AssetThumbnails::askFor(qsizetype first, qsizetype end)
{
    // From the last one, because the source serves the newest request first.
    for (qsizetype i = end - 1; i >= first; --i) {
        const ShelfItem &item = m_wanted[i];
        const bool isInSight = i < m_inSight;
        const auto earlier = m_asked.find(item.id);
        if (earlier != m_asked.end() && (earlier->second.isInSight || !isInSight))
            continue;
        if (!isMissing(item))
            continue;
        Asked &asked = m_asked[item.id];
        asked.isInSight = isInSight;
        asked.request = m_source->request(item.path, static_cast<int>(std::ceil(kAskedSide * m_devicePixelRatio)), this,
                                          [this, id = item.id](const QImage &picture) { take(id, picture); });
    }
}

void AssetThumbnails::take(QUuid id, const QImage &picture)
{
    m_asked.erase(id);
    ++m_madeCount;
    m_cache.insert(id, roundedSquare(picture, static_cast<int>(std::ceil(kSide * m_devicePixelRatio))));
    Q_EMIT arrived(id);
    ask();
}

void AssetThumbnails::forgetChanged(const QStringList &paths)
{
    const QSet<QString> changed(paths.begin(), paths.end());
    for (const ShelfItem &item : std::as_const(m_wanted)) {
        if (changed.contains(item.path)) {
            m_asked.erase(item.id);
            m_cache.remove(item.id);
        }
    }
    ask();
}

void AssetThumbnails::count()
{
    const auto missing = static_cast<int>(
        std::count_if(m_wanted.cbegin(), m_wanted.cend(), [this](const ShelfItem &item) { return isMissing(item); }));
    m_madeCount = missing == 0 ? 0 : m_madeCount;
    const Progress progress{.done = m_madeCount, .total = m_madeCount + missing};
    if (std::exchange(m_progress, progress) != progress)
        Q_EMIT progressChanged();
}

} // namespace ostrelle
