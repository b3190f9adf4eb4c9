#include "ContractClipboard.h"
#include "support/FakeClipboardPort.h"
#include "support/ManualTaskScheduler.h"

#include <QTest>

namespace ostrelle {

namespace {

class FakeContractClipboard final : public ContractClipboard
{
public:
    ClipboardPort &port() override { return m_port; }
    void copyElsewhere(const QString &text, const QByteArray &png, const QString &marker) override
    {
        FakeClipboardPort::Owner owner;
        owner.types = {marker};
        owner.text = text;
        owner.png = png;
        m_port.copy(owner);
    }
    void copyImageElsewhere(const QByteArray &jpeg, const QByteArray &bmp, const QByteArray &webp) override
    {
        FakeClipboardPort::Owner owner;
        owner.jpeg = jpeg;
        owner.bmp = bmp;
        owner.webp = webp;
        m_port.copy(owner);
    }
    bool comesTrue(const std::function<bool()> &condition) override
    {
        return QTest::qWaitFor([&] {
            m_time.advance(std::chrono::milliseconds(10));
            return condition();
        });
    }

private:
    ManualTaskScheduler m_time;
    FakeClipboardPort m_port{m_time};
};

} // namespace

std::unique_ptr<ContractClipboard> ContractClipboard::make()
{
    return std::make_unique<FakeContractClipboard>();
}

} // namespace ostrelle
