#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QStringView>

#include <optional>

namespace ostrelle {

// What is read from a helper's answers, which a hostile file may have written.

/// The object that `json` is, of reasonable length; nothing when it is none.
std::optional<QJsonObject> answerObject(const QByteArray &json);

/// The number under `key`, when it is one from `least` to `most`.
std::optional<double> numberIn(const QJsonObject &object, QStringView key, double least, double most);
std::optional<int> wholeNumberIn(const QJsonObject &object, QStringView key, int least, int most);

} // namespace ostrelle
