#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace ostrelle {

/// The six gradient themes; the raw value is persisted. Their colours are the painter's.
enum class NotchTheme { Spectrum, Sunset, Aurora, Ember, Ultraviolet, Frost };

inline constexpr std::array<NotchTheme, 6> kAllNotchThemes = {NotchTheme::Spectrum,    NotchTheme::Sunset,
                                                              NotchTheme::Aurora,      NotchTheme::Ember,
                                                              NotchTheme::Ultraviolet, NotchTheme::Frost};

QString rawValue(NotchTheme theme);
std::optional<NotchTheme> notchThemeFromRawValue(QStringView raw);
QString title(NotchTheme theme);
/// The one-line description shown beside the title.
QString blurb(NotchTheme theme);

} // namespace ostrelle
