#include "records/KeyCombo.h"

#include "records/KeyNames.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <array>
#include <limits>
#include <utility>

namespace ostrelle {

namespace {

/// In the order in which they are shown.
constexpr std::array<std::pair<quint32, char16_t>, 4> kModifierGlyphs = {
    {{KeyCombo::kControl, u'⌃'}, {KeyCombo::kOption, u'⌥'}, {KeyCombo::kShift, u'⇧'}, {KeyCombo::kCommand, u'⌘'}}};

std::optional<quint32> unsignedFrom(const QJsonValue &value)
{
    const qint64 number = value.toInteger(-1);
    if (number < 0 || number > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<quint32>(number);
}

} // namespace

QString display(const KeyCombo &combo, const KeyNames &names)
{
    QString text;
    for (const auto &[modifier, glyph] : kModifierGlyphs) {
        if (combo.carbonModifiers & modifier)
            text += QChar(glyph);
    }
    return text + names.nameOf(combo.keyCode);
}

QByteArray encodedKeyCombo(const std::optional<KeyCombo> &combo)
{
    if (!combo)
        return QByteArrayLiteral("null");
    const QJsonObject record{{QStringLiteral("keyCode"), static_cast<qint64>(combo->keyCode)},
                             {QStringLiteral("carbonModifiers"), static_cast<qint64>(combo->carbonModifiers)}};
    return QJsonDocument(record).toJson(QJsonDocument::Compact);
}

std::optional<KeyCombo> decodedKeyCombo(const QByteArray &json)
{
    const QJsonObject record = QJsonDocument::fromJson(json).object();
    const auto keyCode = unsignedFrom(record[u"keyCode"]);
    const auto modifiers = unsignedFrom(record[u"carbonModifiers"]);
    if (!keyCode || !modifiers)
        return std::nullopt;
    return KeyCombo{*keyCode, *modifiers};
}

} // namespace ostrelle
