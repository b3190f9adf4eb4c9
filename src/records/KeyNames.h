#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace ostrelle {

/// What keys are called, by their virtual codes: some always the same, the others as a keyboard layout prints them.
class KeyNames
{
public:
    KeyNames() = default;
    /// `layout` gives the keys that carry a character, in upper case.
    explicit KeyNames(QMap<quint32, QString> layout);

    /// "V", "Space", "F5"; "?" when the layout has nothing for it.
    QString nameOf(quint32 keyCode) const;
    /// The key of this name in any case, or of a word like "Return" for a key that is shown as a sign. Of several, the
    /// one in the main block.
    std::optional<quint32> find(const QString &name) const;

    bool operator==(const KeyNames &) const = default;

private:
    QMap<quint32, QString> m_layout;
};

/// A layout's names on their way from one process to another: {"9": "V"}.
QByteArray encodedKeyNames(const QMap<quint32, QString> &layout);
/// Without what is no name of a key.
KeyNames decodedKeyNames(const QByteArray &json);

} // namespace ostrelle
