#include "records/KeyNames.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace ostrelle {

namespace {

struct FixedName
{
    quint32 keyCode;
    const char *name;
    const char *word = nullptr; ///< to be typed instead of a sign
    const char *secondWord = nullptr;
};

constexpr auto kFixedNames = std::to_array<FixedName>({
    {49, "Space"},
    {36, "↩", "Return", "Enter"},
    {48, "⇥", "Tab"},
    {51, "⌫", "Backspace"},
    {53, "⎋", "Escape", "Esc"},
    {123, "←", "Left"},
    {124, "→", "Right"},
    {126, "↑", "Up"},
    {125, "↓", "Down"},
    // No layout has characters for these.
    {76, "⌅", "KeypadEnter"},
    {110, "Menu"},
    {114, "Insert", "Help"},
    {115, "↖", "Home"},
    {116, "⇞", "PageUp"},
    {117, "⌦", "Delete"},
    {119, "↘", "End"},
    {121, "⇟", "PageDown"},
    {122, "F1"},
    {120, "F2"},
    {99, "F3"},
    {118, "F4"},
    {96, "F5"},
    {97, "F6"},
    {98, "F7"},
    {100, "F8"},
    {101, "F9"},
    {109, "F10"},
    {103, "F11"},
    {111, "F12"},
    {105, "F13", "PrintScreen", "Print"},
    {107, "F14", "ScrollLock"},
    {113, "F15", "Pause"},
    {106, "F16"},
    {64, "F17"},
    {79, "F18"},
    {80, "F19"},
    {90, "F20"},
});

bool isCalled(const QString &name, const char *fixed)
{
    return fixed && name.compare(QString::fromUtf8(fixed), Qt::CaseInsensitive) == 0;
}

} // namespace

KeyNames::KeyNames(QMap<quint32, QString> layout)
    : m_layout(std::move(layout))
{
}

QString KeyNames::nameOf(quint32 keyCode) const
{
    const auto fixed =
        std::find_if(kFixedNames.begin(), kFixedNames.end(), [&](const auto &row) { return row.keyCode == keyCode; });
    if (fixed != kFixedNames.end())
        return QString::fromUtf8(fixed->name);
    return m_layout.value(keyCode, QStringLiteral("?"));
}

std::optional<quint32> KeyNames::find(const QString &name) const
{
    const auto fixed = std::find_if(kFixedNames.begin(), kFixedNames.end(), [&](const FixedName &row) {
        return isCalled(name, row.name) || isCalled(name, row.word) || isCalled(name, row.secondWord);
    });
    if (fixed != kFixedNames.end())
        return fixed->keyCode;
    // The codes of the keypad are above those of the main block.
    const QString upper = name.toUpper();
    for (auto key = m_layout.begin(); key != m_layout.end(); ++key) {
        if (*key == upper)
            return key.key();
    }
    return std::nullopt;
}

QByteArray encodedKeyNames(const QMap<quint32, QString> &layout)
{
    QJsonObject names;
    for (auto key = layout.begin(); key != layout.end(); ++key)
        names[QString::number(key.key())] = *key;
    return QJsonDocument(names).toJson(QJsonDocument::Compact);
}

KeyNames decodedKeyNames(const QByteArray &json)
{
    const QJsonObject names = QJsonDocument::fromJson(json).object();
    QMap<quint32, QString> layout;
    for (auto name = names.begin(); name != names.end(); ++name) {
        bool isCode = false;
        const quint32 keyCode = name.key().toUInt(&isCode);
        if (isCode && !name->toString().isEmpty())
            layout[keyCode] = name->toString();
    }
    return KeyNames(layout);
}

} // namespace ostrelle
