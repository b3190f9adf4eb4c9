#include "records/KeyComboText.h"

#include "records/KeyNames.h"

#include <QStringList>

#include <array>

namespace ostrelle {

namespace {

struct ModifierWords
{
    quint32 modifier;
    std::array<const char *, 4> words; ///< the first is the one written
};

constexpr auto kModifiers = std::to_array<ModifierWords>({
    {KeyCombo::kControl, {"Control", "Ctrl", nullptr, nullptr}},
    {KeyCombo::kOption, {"Alt", "Option", nullptr, nullptr}},
    {KeyCombo::kShift, {"Shift", nullptr, nullptr, nullptr}},
    {KeyCombo::kCommand, {"Super", "Command", "Meta", "Win"}},
});

quint32 modifierCalled(const QString &word)
{
    for (const ModifierWords &row : kModifiers) {
        for (const char *name : row.words) {
            if (name && word.compare(QString::fromLatin1(name), Qt::CaseInsensitive) == 0)
                return row.modifier;
        }
    }
    return 0;
}

KeyComboProblem meaningless(const QString &message)
{
    return {KeyComboProblem::Kind::Meaningless, message};
}

} // namespace

QString keyComboText(const KeyCombo &combo, const KeyNames &names)
{
    QString text;
    for (const ModifierWords &row : kModifiers) {
        if (combo.carbonModifiers & row.modifier)
            text += QString::fromLatin1(row.words.front()) + QLatin1Char('+');
    }
    return text + names.nameOf(combo.keyCode);
}

std::variant<KeyCombo, KeyComboProblem> keyComboFromText(const QString &text, const KeyNames &names,
                                                         ShortcutAction action, const KeyCombos &combos)
{
    // The last character belongs to the key even if it is a plus.
    const qsizetype split = text.lastIndexOf(QLatin1Char('+'), -2);
    const QString key = text.mid(split + 1).trimmed();
    const QStringList words = split < 0 ? QStringList() : text.left(split).split(QLatin1Char('+'));
    KeyCombo combo;
    for (const QString &word : words) {
        const quint32 modifier = modifierCalled(word.trimmed());
        if (!modifier)
            return meaningless(QStringLiteral("%1 is no modifier; there are Control, Alt, Shift and Super").arg(word));
        combo.carbonModifiers |= modifier;
    }
    if (modifierCalled(key) && !names.find(key))
        return meaningless(QStringLiteral("%1 has no key beside the modifiers").arg(text));
    const auto code = names.find(key);
    if (!code)
        return meaningless(QStringLiteral("no key of this keyboard is called %1").arg(key));
    if (!combo.carbonModifiers)
        return meaningless(QStringLiteral("a shortcut needs at least one of Control, Alt, Shift and Super"));
    combo.keyCode = *code;
    if (const auto other = conflict(combos, combo, action))
        return KeyComboProblem{
            KeyComboProblem::Kind::Taken,
            QStringLiteral("%1 is used by %2 (%3)").arg(keyComboText(combo, names), title(*other), rawValue(*other))};
    return combo;
}

QJsonObject shortcutRecord(ShortcutAction action, const KeyCombos &combos, const KeyNames &names)
{
    QJsonObject record{{QStringLiteral("action"), rawValue(action)},
                       {QStringLiteral("title"), title(action)},
                       {QStringLiteral("combo"), QJsonValue()},
                       {QStringLiteral("keyCode"), QJsonValue()},
                       {QStringLiteral("carbonModifiers"), QJsonValue()}};
    if (const auto combo = comboOf(combos, action)) {
        record[u"combo"] = keyComboText(*combo, names);
        record[u"keyCode"] = static_cast<qint64>(combo->keyCode);
        record[u"carbonModifiers"] = static_cast<qint64>(combo->carbonModifiers);
    }
    return record;
}

} // namespace ostrelle
