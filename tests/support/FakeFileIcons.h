#pragma once

#include "platform/FileIcons.h"

namespace ostrelle {

/// A theme with one icon for every kind of file, which is there at once unless it is held back.
class FakeFileIcons final : public FileIcons
{
public:
    std::optional<QImage> iconFor(const QString &path, int side, double devicePixelRatio) override;
    std::optional<QImage> folderIcon(int side, double devicePixelRatio) override;

    void holdBack() { m_isHeldBack = true; }
    void release();

private:
    bool m_isHeldBack = false;
};

} // namespace ostrelle
