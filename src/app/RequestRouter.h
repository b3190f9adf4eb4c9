#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <functional>
#include <map>

namespace ostrelle {

/// The answer to one request of a command. The numbers are the command's exit status.
struct RequestAnswer
{
    enum class Status { Done = 0, Failed = 1, WrongUsage = 2 };

    Status status = Status::Done;
    QJsonValue result;
    QString error;

    static RequestAnswer done(const QJsonValue &result = {}) { return {Status::Done, result, {}}; }
    static RequestAnswer failed(const QString &error) { return {Status::Failed, {}, error}; }
    static RequestAnswer wrongUsage(const QString &error) { return {Status::WrongUsage, {}, error}; }
};

/// What the running program can be asked: verb to handler. Input is checked by each handler; it may be anything.
class RequestRouter
{
public:
    using Handler = std::function<RequestAnswer(const QJsonObject &request)>;
    using Reply = std::function<void(const RequestAnswer &answer)>;
    /// Calls `reply` once, at once or later, on the main thread.
    using LaterHandler = std::function<void(const QJsonObject &request, const Reply &reply)>;

    void add(const QString &verb, Handler handler);
    void addLater(const QString &verb, LaterHandler handler);
    /// Answers one line of JSON with one line of JSON, when the handler does.
    void answer(const QByteArray &request, const std::function<void(const QByteArray &line)> &send) const;

private:
    std::map<QString, LaterHandler> m_handlers;
};

} // namespace ostrelle
