#include "platform/x11/XSettings.h"

#include <QDataStream>
#include <QIODevice>

namespace ostrelle {

namespace {

enum class Kind : quint8 { Integer = 0, String = 1, Color = 2 };

/// Of this length, and padded to a multiple of four.
QByteArray readPadded(QDataStream &stream, qint64 length)
{
    QByteArray bytes;
    if (length <= stream.device()->bytesAvailable()) {
        bytes = stream.device()->read(length);
        stream.skipRawData(static_cast<int>((4 - length % 4) % 4));
    } else {
        stream.setStatus(QDataStream::ReadPastEnd);
    }
    return bytes;
}

} // namespace

QString xsettingsString(const QByteArray &property, const QByteArray &name)
{
    QDataStream stream(property);
    quint8 byteOrder = 0;
    quint32 serial = 0;
    quint32 count = 0;
    stream >> byteOrder;
    stream.setByteOrder(byteOrder == 0 ? QDataStream::LittleEndian : QDataStream::BigEndian);
    stream.skipRawData(3);
    stream >> serial >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        quint8 kind = 0;
        quint8 padding = 0;
        quint16 nameLength = 0;
        stream >> kind >> padding >> nameLength;
        const QByteArray found = readPadded(stream, nameLength);
        stream >> serial;
        quint32 value = 0; // of an integer; of a string its length
        stream >> value;
        if (kind == static_cast<quint8>(Kind::String)) {
            const QByteArray text = readPadded(stream, value);
            if (found == name) {
                return QString::fromUtf8(text);
            }
        } else if (kind == static_cast<quint8>(Kind::Color)) {
            stream.skipRawData(4);
        }
    }
    return {};
}

} // namespace ostrelle
