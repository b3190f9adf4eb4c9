#pragma once

#include "platform/x11/X11ContentRead.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace ostrelle {

/// Reads the list of files of the drag that is going on: asks for its types, best first, until one gives files. At most
/// FileDrags::kFileLimit of them, from at most 4 MiB of each type. Destroying it is the cancel. Main thread.
class X11FileListRead : public QObject
{
    Q_OBJECT
public:
    enum class Outcome {
        Read,    ///< there are files
        Nothing, ///< no type gave any
        Refused  ///< the source gave nothing, and refused one type at least: perhaps only this time
    };
    using Answer = std::function<void(Outcome outcome, const QStringList &paths)>;

    /// Asks at once, with the time of an event of the drag. `answer` is called once, from the event loop, and may
    /// destroy the read.
    X11FileListRead(const X11ContentRead::Services &services, QList<X11ContentRead::Target> targets,
                    xcb_timestamp_t time, Answer answer);

private:
    void askForNext();
    void handle(X11SelectionTransfer::Result result, clipboardTypes::Encoding encoding);
    void decode(const QByteArray &bytes, clipboardTypes::Encoding encoding);
    void take(QStringList paths);

    X11ContentRead::Services m_services;
    QList<X11ContentRead::Target> m_targets;
    xcb_timestamp_t m_time;
    Answer m_answer;
    bool m_isRefused = false;
    bool m_isCut = false;
    std::unique_ptr<X11SelectionTransfer> m_transfer;
};

} // namespace ostrelle
