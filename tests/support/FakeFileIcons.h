#pragma once

#include "platform/FileIcons.h"

namespace ostrelle {

/// A theme with one icon for every kind of file.
class FakeFileIcons final : public FileIcons
{
public:
    QIcon iconFor(const QString &path) const override;
    QIcon folderIcon() const override;
};

} // namespace ostrelle
