#include "updates/UpdateFeed.h"

#include "updates/FeedSource.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace ostrelle {
namespace {

constexpr int kOk = 200;
const auto kScheme = QStringLiteral("https:");

/// A text or nothing; false when it is something else.
bool readText(const QJsonObject &object, const QString &key, std::optional<QString> &text)
{
    const QJsonValue value = object.value(key);
    if (value.isString())
        text = value.toString();
    return value.isString() || value.isUndefined() || value.isNull();
}

QString mistaken(const QString &key)
{
    return QStringLiteral("The update feed's \"%1\" is not a text.").arg(key);
}

/// Empty when the release cannot be downloaded from there.
QUrl downloadLocation(const std::optional<QString> &text, const QUrl &homePage)
{
    const QUrl url(text.value_or(QString()), QUrl::StrictMode);
    if (!url.isValid())
        return homePage;
    // QUrl puts schemes into lower case.
    if (!text->startsWith(kScheme))
        return {};
    return url.host().isEmpty() ? homePage : url;
}

} // namespace

std::variant<UpdateFeed, QString> UpdateFeed::fromJson(const QByteArray &body)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError)
        return QStringLiteral("The update feed is not JSON: %1.").arg(error.errorString());
    if (!document.isObject())
        return QStringLiteral("The update feed is not a JSON object.");
    const QJsonObject object = document.object();
    UpdateFeed feed;
    std::optional<QString> version;
    if (!readText(object, QStringLiteral("version"), version))
        return mistaken(QStringLiteral("version"));
    if (!version)
        return QStringLiteral("The update feed has no \"version\".");
    feed.version = *version;
    if (!readText(object, QStringLiteral("url"), feed.url))
        return mistaken(QStringLiteral("url"));
    if (!readText(object, QStringLiteral("notes"), feed.notes))
        return mistaken(QStringLiteral("notes"));
    return feed;
}

QString UpdateError::server(int status)
{
    return QStringLiteral("The update server answered %1.").arg(status);
}

QString UpdateError::badFeed()
{
    return QStringLiteral("The update server sent something unreadable.");
}

std::variant<UpdateRelease, QString> releaseFrom(const FeedAnswer &answer, const QUrl &homePage)
{
    if (answer.outcome == FeedOutcome::Failed)
        return answer.message;
    if (answer.outcome == FeedOutcome::Unreadable)
        return UpdateError::badFeed();
    if (answer.status != kOk)
        return UpdateError::server(answer.status);
    const auto decoded = UpdateFeed::fromJson(answer.body);
    if (const auto *problem = std::get_if<QString>(&decoded))
        return *problem;
    const auto &feed = std::get<UpdateFeed>(decoded);
    const UpdateRelease release{feed.version.trimmed(), downloadLocation(feed.url, homePage),
                                feed.notes.value_or(QString())};
    if (release.version.isEmpty() || release.url.isEmpty())
        return UpdateError::badFeed();
    return release;
}

} // namespace ostrelle
