#pragma once

#include "updates/UpdateState.h"

#include <optional>
#include <variant>

class QByteArray;

namespace ostrelle {

struct FeedAnswer;

/// The object that the update server publishes; other keys in it are ignored.
struct UpdateFeed
{
    QString version;
    std::optional<QString> url;
    std::optional<QString> notes;

    /// The feed, or why it cannot be decoded, for the user.
    static std::variant<UpdateFeed, QString> fromJson(const QByteArray &body);
};

/// What goes wrong with an answer, in words for the user.
namespace UpdateError {

QString server(int status);
QString badFeed();

} // namespace UpdateError

/// The release that an answer names, or why it names none, for the user. `homePage` stands in where the feed has no
/// address that can be used.
std::variant<UpdateRelease, QString> releaseFrom(const FeedAnswer &answer, const QUrl &homePage);

} // namespace ostrelle
