#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace ostrelle {

/// The six tools, in default order. The raw value is the persisted identifier.
enum class KestroModule { Clipboard, Color, Assets, Projects, ImageInfo, AudioInfo };

inline constexpr std::array<KestroModule, 6> kAllModules = {KestroModule::Clipboard, KestroModule::Color,
                                                            KestroModule::Assets,    KestroModule::Projects,
                                                            KestroModule::ImageInfo, KestroModule::AudioInfo};

QString rawValue(KestroModule module);
/// The module of exactly this raw value (case-sensitive), or nothing.
std::optional<KestroModule> moduleFromRawValue(QStringView raw);

QString title(KestroModule module);
/// The short caption under a tile's symbol: "Image" and "Audio" where the title has two words.
QString tileCaption(KestroModule module);
QString symbol(KestroModule module);
/// The one-line description.
QString blurb(KestroModule module);
/// Three short lines for the first run.
std::array<QString, 3> highlights(KestroModule module);

} // namespace ostrelle
