#pragma once

#include "inspectors/FactSource.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace ostrelle {

/// Knows the facts of files that the test makes up, and tells them when the test says so, in any order.
class FakeFactSource final : public FactSource
{
public:
    RequestHandle audioInfo(const QString &path, AudioAnswer answer) override
    {
        return open(path, [this, path, answer = std::move(answer)] { answer(found(m_audio, path)); });
    }
    RequestHandle imageInfo(const QString &path, ImageAnswer answer) override
    {
        return open(path, [this, path, answer = std::move(answer)] { answer(found(m_images, path)); });
    }
    RequestHandle tempo(const QString &path, TempoAnswer answer) override
    {
        return open(QStringLiteral("tempo ") + path,
                    [this, path, answer = std::move(answer)] { answer(found(m_tempos, path)); });
    }

    void set(const QString &path, const AudioInfo &info) { m_audio.insert(path, info); }
    void set(const QString &path, const ImageInfo &info) { m_images.insert(path, info); }
    void setTempo(const QString &path, double bpm) { m_tempos.insert(path, bpm); }

    /// What is asked and not answered: paths, with "tempo " before them where the tempo is wanted.
    QStringList waiting() const
    {
        QStringList questions;
        for (const auto &question : *m_open)
            questions.append(question->name);
        return questions;
    }
    /// Answers one of them.
    void answer(const QString &name)
    {
        for (const auto &question : *m_open) {
            if (question->name == name) {
                const std::shared_ptr<Question> answered = question;
                std::erase(*m_open, answered);
                answered->answer();
                return;
            }
        }
        qFatal("nothing is asked about %s", qPrintable(name));
    }
    /// Answers everything, also what is asked on the way.
    void answerAll()
    {
        while (!m_open->empty())
            answer(m_open->front()->name);
    }

private:
    struct Question
    {
        QString name;
        std::function<void()> answer;
    };
    // Shared with the handles, which may outlive this.
    using Questions = std::shared_ptr<std::vector<std::shared_ptr<Question>>>;

    struct Entry final : RequestHandle::Entry
    {
        Entry(Questions of, std::shared_ptr<Question> the)
            : questions(std::move(of))
            , question(std::move(the))
        {
        }
        ~Entry() override { std::erase(*questions, question); }
        Entry(const Entry &) = delete;
        Entry &operator=(const Entry &) = delete;

        Questions questions;
        std::shared_ptr<Question> question;
    };

    RequestHandle open(const QString &name, std::function<void()> answer)
    {
        const auto question = std::make_shared<Question>(Question{name, std::move(answer)});
        m_open->push_back(question);
        return RequestHandle(std::make_unique<Entry>(m_open, question));
    }

    template <typename Value>
    static std::optional<Value> found(const QHash<QString, Value> &values, const QString &path)
    {
        const auto value = values.constFind(path);
        return value == values.constEnd() ? std::nullopt : std::optional(*value);
    }

    QHash<QString, AudioInfo> m_audio;
    QHash<QString, ImageInfo> m_images;
    QHash<QString, double> m_tempos;
    Questions m_open = std::make_shared<std::vector<std::shared_ptr<Question>>>();
};

} // namespace ostrelle
