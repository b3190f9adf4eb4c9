#pragma once

#include "platform/FileOpening.h"

#include <QStringList>

namespace ostrelle {

/// A desktop that keeps a list of what it was asked for.
class FakeFileOpening final : public FileOpening
{
public:
    void open(const QString &path, const ActivationToken &) override { opened << path; }
    void openAddress(const QUrl &address, const ActivationToken &) override { addresses << address; }
    void reveal(const QString &path, const ActivationToken &) override { revealed << path; }

    QStringList opened;
    QList<QUrl> addresses;
    QStringList revealed;
};

} // namespace ostrelle
