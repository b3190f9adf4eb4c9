#pragma once

#include <QByteArray>
#include <QObject>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QSocketNotifier;

namespace ostrelle {

/// The names of files that a command is to work on, one after the other: from its arguments, for "-" from standard
/// input, and of what folders hold, each folder in the order of the names. Standard input is read as it comes. Where
/// names cannot be had, that is told in their place.
class NameSource : public QObject
{
    Q_OBJECT
public:
    struct Options
    {
        char separator = '\n';    ///< of the names on standard input
        bool isRecursive = false; ///< folders stand for the files below them that `isWanted`; links to folders do not
        std::function<bool(const QByteArray &name)> isWanted;
    };
    enum class State { Ready, Waiting, Ended };
    struct Entry
    {
        QByteArray name;
        QString problem; ///< why there are no names below it, or none to come; a phrase that follows the name
    };

    NameSource(const QStringList &words, Options options);
    ~NameSource() override;

    /// Ready: next() has one. Waiting: ask again when moreArrived() was emitted.
    State state();
    /// Only when state() is Ready.
    Entry next();

Q_SIGNALS:
    void moreArrived();

private:
    void readInput();
    void takeInput(const char *bytes, qsizetype size);
    void endInput();
    bool advance();
    void enterFolder(const QByteArray &folder);

    const Options m_options;
    std::deque<QByteArray> m_words;
    std::vector<std::deque<QByteArray>> m_folders; ///< what is left of each folder on the way down
    std::optional<Entry> m_next;
    QByteArray m_input;
    std::deque<QByteArray> m_inputNames;
    bool m_readsInput = false;
    bool m_isInputBroken = false;
    std::unique_ptr<QSocketNotifier> m_readable;
};

} // namespace ostrelle
