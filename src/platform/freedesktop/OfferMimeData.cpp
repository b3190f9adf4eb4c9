#include "platform/freedesktop/OfferMimeData.h"

#include <QMimeData>
#include <QUrl>

namespace ostrelle {

namespace {

std::unique_ptr<QMimeData> dataOf(const QString &text)
{
    auto data = std::make_unique<QMimeData>();
    data->setText(text); // the toolkit adds UTF8_STRING and STRING
    data->setData(QStringLiteral("text/plain;charset=utf-8"), text.toUtf8());
    return data;
}

std::unique_ptr<QMimeData> dataOf(const ClipboardImage &image)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(image.format == ClipboardFormat::Tiff ? QStringLiteral("image/tiff") : QStringLiteral("image/png"),
                  image.bytes); // as they are; setImageData would encode again, under every format it knows
    return data;
}

std::unique_ptr<QMimeData> dataOf(const ClipboardFiles &files)
{
    auto data = std::make_unique<QMimeData>();
    QByteArray list;
    QByteArray copied = "copy";
    for (const QString &path : files.paths) {
        const QByteArray uri = QUrl::fromLocalFile(path).toEncoded();
        list += uri + "\r\n";
        copied += '\n' + uri;
    }
    data->setData(QStringLiteral("text/uri-list"), list);
    data->setData(QStringLiteral("x-special/gnome-copied-files"), copied); // what file managers paste
    return data;
}

std::unique_ptr<QMimeData> dataOf(std::monostate)
{
    return nullptr;
}

} // namespace

std::unique_ptr<QMimeData> mimeDataOf(const ClipboardOffer &offer)
{
    return std::visit([](const auto &content) { return dataOf(content); }, offer);
}

} // namespace ostrelle
