#include "records/ClipItem.h"

#include "records/ClipText.h"
#include "records/PathText.h"

#include <QLatin1String>

#include <array>
#include <utility>

namespace ostrelle {
namespace {

constexpr std::array<std::pair<ClipItem::Kind, QStringView>, 4> kKinds = {{
    {ClipItem::Kind::Text, u"text"},
    {ClipItem::Kind::Link, u"link"},
    {ClipItem::Kind::Image, u"image"},
    {ClipItem::Kind::Files, u"files"},
}};

// More than any row shows, and few enough to cut and paint at once.
constexpr qsizetype kDisplayedLength = 4096;

QString upperCasedExtension(QStringView path)
{
    const QStringView name = lastPathComponent(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    // A leading dot hides a file, it does not begin an extension.
    return dot > 0 ? name.sliced(dot + 1).toString().toUpper() : QString();
}

QString oneLine(QStringView text)
{
    return text.toString().replace(u'\n', u' ');
}

QString filesTitle(const QStringList &paths)
{
    if (paths.size() == 1)
        return lastPathComponent(paths.first()).toString();
    return QString::number(paths.size()) + QStringLiteral(" items");
}

QString fixedTitle(const ClipItem &item)
{
    return item.kind == ClipItem::Kind::Image ? QStringLiteral("Image")
                                              : filesTitle(item.paths.value_or(QStringList()));
}

bool isWritten(const ClipItem &item)
{
    return item.kind == ClipItem::Kind::Text || item.kind == ClipItem::Kind::Link;
}

QString textDetail(const QString &text)
{
    const qsizetype count = characterCount(text);
    return QString::number(count) + (count == 1 ? QStringLiteral(" character") : QStringLiteral(" characters"));
}

QString linkDetail(const QString &text)
{
    const QUrl url(text);
    const QString host = url.isValid() ? url.host() : QString();
    return host.isEmpty() ? QStringLiteral("Link") : host;
}

QString imageDetail(const std::optional<ClipImage> &image)
{
    if (!image || image->pixelSize.isEmpty())
        return QStringLiteral("Image");
    return QString::number(image->pixelSize.width()) + QStringLiteral(" \u00d7 ") +
           QString::number(image->pixelSize.height());
}

} // namespace

QString rawValue(ClipItem::Kind kind)
{
    for (const auto &[value, raw] : kKinds) {
        if (value == kind)
            return raw.toString();
    }
    Q_UNREACHABLE();
}

std::optional<ClipItem::Kind> clipKindFromRawValue(QStringView raw)
{
    for (const auto &[value, name] : kKinds) {
        if (name == raw)
            return value;
    }
    return std::nullopt;
}

QList<QUrl> urls(const ClipItem &item)
{
    QList<QUrl> result;
    const QStringList paths = item.paths.value_or(QStringList());
    for (const QString &path : paths)
        result.append(QUrl::fromLocalFile(path));
    return result;
}

QString title(const ClipItem &item)
{
    return isWritten(item) ? oneLine(QStringView(item.text ? *item.text : QString()).trimmed()) : fixedTitle(item);
}

QString displayTitle(const ClipItem &item)
{
    if (!isWritten(item))
        return fixedTitle(item);
    const QString text = item.text.value_or(QString());
    QStringView shown = QStringView(text).trimmed();
    if (shown.size() > kDisplayedLength) {
        shown.truncate(kDisplayedLength);
        if (shown.back().isHighSurrogate())
            shown.chop(1);
    }
    return oneLine(shown);
}

QString detail(const ClipItem &item)
{
    switch (item.kind) {
    case ClipItem::Kind::Text:
        return textDetail(item.text.value_or(QString()));
    case ClipItem::Kind::Link:
        return linkDetail(item.text.value_or(QString()));
    case ClipItem::Kind::Image:
        return imageDetail(item.image);
    case ClipItem::Kind::Files:
        return item.paths && !item.paths->isEmpty() ? upperCasedExtension(item.paths->first())
                                                    : QStringLiteral("Files");
    }
    Q_UNREACHABLE();
}

std::optional<ClipItem::Kind> kindOfText(const QString &text)
{
    const QStringView trimmed = QStringView(text).trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    return isWebAddress(trimmed) ? ClipItem::Kind::Link : ClipItem::Kind::Text;
}

} // namespace ostrelle
