#pragma once

#include "inspectors/FactSource.h"

namespace ostrelle {

class MediaClient;

/// Facts from the media helpers.
class MediaFactSource final : public FactSource
{
public:
    explicit MediaFactSource(MediaClient &client);

    RequestHandle audioInfo(const QString &path, AudioAnswer answer) override;
    RequestHandle imageInfo(const QString &path, ImageAnswer answer) override;
    RequestHandle tempo(const QString &path, TempoAnswer answer) override;

private:
    MediaClient &m_client;
};

} // namespace ostrelle
