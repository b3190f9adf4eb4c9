#pragma once

#include "platform/FileOpening.h"
#include "platform/freedesktop/ProgramStarter.h"

#include <QObject>

namespace ostrelle {

/// Opens by the desktop's opener (xdg-open, else "gio open"), reveals by org.freedesktop.FileManager1, which has three
/// seconds to answer before the folder is opened instead. No file system is asked here, so a path on a dead mount
/// stalls nobody; what is missing is the opener's and the file manager's to tell.
class DesktopFileOpening final : public QObject, public FileOpening
{
    Q_OBJECT
public:
    explicit DesktopFileOpening(QObject *parent = nullptr);
    ~DesktopFileOpening() override;

    void open(const QString &path, const ActivationToken &token) override;
    void reveal(const QString &path, const ActivationToken &token) override;

private:
    ProgramStarter m_programs;
};

} // namespace ostrelle
