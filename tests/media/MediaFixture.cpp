#include "MediaFixture.h"

#include <QBuffer>
#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>

#include <cstdlib>

namespace ostrelle {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::abort();
}

QByteArray encoded(const QImage &image, const char *format, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, quality))
        std::abort();
    return bytes;
}

QImage turnable(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::green);
    QPainter painter(&image);
    painter.fillRect(0, 0, width / 2, height, Qt::red);
    painter.fillRect(0, 0, width / 4, height / 4, Qt::white);
    return image;
}

QByteArray withOrientation(const QByteArray &jpeg, int orientation)
{
    QByteArray exif("\xff\xe1\x00\x22"
                    "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0",
                    29);
    exif += char(orientation);
    exif += QByteArray(6, '\0');
    return jpeg.left(2) + exif + jpeg.mid(2);
}

QImage imageOf(const PictureResult &result)
{
    const auto *picture = std::get_if<MediaPicture>(&result);
    if (!picture)
        return {};
    return QImage(reinterpret_cast<const uchar *>(picture->pixels.constData()), picture->width, picture->height,
                  4 * picture->width, QImage::Format_RGBA8888_Premultiplied)
        .copy();
}

bool isNear(const QColor &colour, const QColor &expected, int tolerance)
{
    return std::abs(colour.red() - expected.red()) <= tolerance &&
           std::abs(colour.green() - expected.green()) <= tolerance &&
           std::abs(colour.blue() - expected.blue()) <= tolerance &&
           std::abs(colour.alpha() - expected.alpha()) <= tolerance;
}

QString helperFolder()
{
    return QCoreApplication::applicationDirPath();
}

QList<int> childProcesses()
{
    QList<int> processes;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks.filePath(task) + QStringLiteral("/children"));
        const QByteArray children = file.open(QIODevice::ReadOnly) ? file.readAll().simplified() : QByteArray();
        for (const QByteArray &child : children.isEmpty() ? QList<QByteArray>() : children.split(' '))
            processes.append(child.toInt());
    }
    return processes;
}

int childCount()
{
    return static_cast<int>(childProcesses().size());
}

} // namespace ostrelle
