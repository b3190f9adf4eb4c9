#pragma once

#include "platform/ClipboardPort.h"

#include <memory>

namespace ostrelle {

/// A clipboard and another program, as the contract sees them: one executable of the tests has the fake behind it, the
/// other one the X11 backend on a real server.
class ContractClipboard
{
public:
    static std::unique_ptr<ContractClipboard> make();
    virtual ~ContractClipboard() = default;

    virtual ClipboardPort &port() = 0;
    /// The other program copies, in place of what was there.
    virtual void copyElsewhere(const QString &text, const QByteArray &png, const QString &marker) = 0;
    /// The same of an image in three formats.
    virtual void copyImageElsewhere(const QByteArray &jpeg, const QByteArray &bmp, const QByteArray &webp) = 0;
    /// Whether the condition comes true; everything that the clipboard waits for goes on meanwhile.
    virtual bool comesTrue(const std::function<bool()> &condition) = 0;
};

} // namespace ostrelle
