#pragma once

#include "foundation/Task.h"
#include "platform/ClipboardPort.h"

#include <chrono>
#include <vector>

namespace ostrelle {

class TaskScheduler;

/// A clipboard whose owners are made by the test. Every answer comes later, by the manual clock.
class FakeClipboardPort final : public ClipboardPort
{
public:
    static constexpr std::chrono::seconds kDeadline{3};

    /// Another program's content and how it behaves.
    struct Owner
    {
        QStringList types; ///< beside those of the formats
        std::optional<QString> text;
        std::optional<QByteArray> png;
        std::optional<QByteArray> tiff;
        std::optional<QByteArray> jpeg;
        std::optional<QByteArray> bmp;
        std::optional<QByteArray> webp;
        std::optional<QStringList> files;
        std::chrono::milliseconds readDelay{0}; ///< of each answer
        bool hangs = false;                     ///< lists its types, then answers no more
    };

    explicit FakeClipboardPort(TaskScheduler &scheduler);
    ~FakeClipboardPort() override;

    /// Another program copies, while frontmost is in front.
    void copy(Owner owner);
    void copyText(const QString &text);
    void copyPng(const QByteArray &bytes);
    std::optional<Application> frontmost;

    /// What the program itself put there last; nothing while another program owns the clipboard.
    const std::optional<ClipboardOffer> &offer() const { return m_offer; }
    int snapshotCount() const { return m_snapshotCount; }
    int readCount() const { return m_readCount; }
    int handOverCount() const { return m_handOverCount; }

    qint64 changeCount() const override { return m_changeCount; }
    void snapshot(QObject *context, std::function<void(std::optional<ClipboardSnapshot>)> answer) override;
    void read(qint64 changeCount, ClipboardFormat format, QObject *context,
              std::function<void(ClipboardContent)> answer) override;
    qint64 write(const ClipboardOffer &offer) override;
    void handOver() override { ++m_handOverCount; }

private:
    void later(std::chrono::nanoseconds delay, QObject *context, std::function<void()> call);
    QList<ClipboardFormat> formats() const;
    ClipboardContent content(ClipboardFormat format) const;

    TaskScheduler &m_scheduler;
    std::vector<Task> m_tasks;
    qint64 m_changeCount = 40;
    Owner m_owner;
    std::optional<Application> m_frontmostAtChange;
    std::optional<ClipboardOffer> m_offer;
    int m_snapshotCount = 0;
    int m_readCount = 0;
    int m_handOverCount = 0;
};

} // namespace ostrelle
