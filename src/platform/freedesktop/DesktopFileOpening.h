#pragma once

#include "platform/FileOpening.h"
#include "platform/freedesktop/ProgramStarter.h"

#include <QObject>

#include <memory>

namespace ostrelle {

class PortalRequest;

/// Opens by the desktop's opener (xdg-open, else "gio open"), addresses by org.freedesktop.portal.OpenURI before;
/// reveals by org.freedesktop.FileManager1. Neither is waited for longer than three seconds: the opener then gets
/// the address, or the file's folder. No file system is asked here, so a path on a dead mount stalls nobody;
/// what is missing is the opener's and the file manager's to tell.
class DesktopFileOpening final : public QObject, public FileOpening
{
    Q_OBJECT
public:
    explicit DesktopFileOpening(QObject *parent = nullptr);
    ~DesktopFileOpening() override;

    void open(const QString &path, const ActivationToken &token) override;
    void openAddress(const QUrl &address, const ActivationToken &token) override;
    void reveal(const QString &path, const ActivationToken &token) override;

private:
    /// `what` is a path or an address.
    void startOpener(const QByteArray &what, const ActivationToken &token);

    ProgramStarter m_programs;
    std::unique_ptr<PortalRequest> m_asked; ///< to open an address; the latest
};

} // namespace ostrelle
