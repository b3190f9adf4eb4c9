#include "platform/freedesktop/PortalShortcut.h"

#include "platform/HotKeys.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QVariant>

#include <algorithm>
#include <array>
#include <utility>

#include <xkbcommon/xkbcommon.h>

namespace ostrelle {

namespace {

/// The keys that print nothing, by their virtual codes.
constexpr auto kSilentKeys = std::to_array<std::pair<quint32, const char *>>({
    {36, "Return"},       {48, "Tab"},     {49, "space"},  {51, "BackSpace"}, {53, "Escape"},  {76, "KP_Enter"},
    {110, "Menu"},        {114, "Insert"}, {115, "Home"},  {116, "Page_Up"},  {117, "Delete"}, {119, "End"},
    {121, "Page_Down"},   {123, "Left"},   {124, "Right"}, {125, "Down"},     {126, "Up"},     {122, "F1"},
    {120, "F2"},          {99, "F3"},      {118, "F4"},    {96, "F5"},        {97, "F6"},      {98, "F7"},
    {100, "F8"},          {101, "F9"},     {109, "F10"},   {103, "F11"},      {111, "F12"},    {105, "Print"},
    {107, "Scroll_Lock"}, {113, "Pause"},  {106, "F16"},   {64, "F17"},       {79, "F18"},     {80, "F19"},
    {90, "F20"},
});

QString keysymName(quint32 keyCode, const QString &keyName)
{
    const auto silent = std::find_if(kSilentKeys.begin(), kSilentKeys.end(),
                                     [keyCode](const auto &row) { return row.first == keyCode; });
    if (silent != kSilentKeys.end()) {
        return QString::fromLatin1(silent->second);
    }
    const QList<uint> characters = keyName.toLower().toUcs4();
    const xkb_keysym_t symbol =
        characters.size() == 1 ? xkb_utf32_to_keysym(characters.first()) : xkb_keysym_t{XKB_KEY_NoSymbol};
    std::array<char, 64> name{};
    const bool isNamed = symbol != XKB_KEY_NoSymbol && xkb_keysym_get_name(symbol, name.data(), name.size()) > 0;
    return isNamed ? QString::fromLatin1(name.data()) : QString();
}

} // namespace

QString portalTrigger(const HotKey &key, const QString &keyName)
{
    const QString symbol = keysymName(key.keyCode, keyName);
    if (symbol.isEmpty()) {
        return {};
    }
    QString trigger;
    for (const auto &[modifier, name] :
         std::initializer_list<std::pair<Qt::KeyboardModifier, const char *>>{{Qt::ControlModifier, "CTRL+"},
                                                                              {Qt::AltModifier, "ALT+"},
                                                                              {Qt::ShiftModifier, "SHIFT+"},
                                                                              {Qt::MetaModifier, "LOGO+"}}) {
        if (key.modifiers.testFlag(modifier)) {
            trigger += QString::fromLatin1(name);
        }
    }
    return trigger + symbol;
}

PortalShortcut PortalShortcut::from(const HotKey &key, const QString &keyName)
{
    PortalShortcut shortcut{key.name, {{QStringLiteral("description"), key.description}}};
    if (const QString trigger = portalTrigger(key, keyName); !trigger.isEmpty()) {
        shortcut.properties.insert(QStringLiteral("preferred_trigger"), trigger);
    }
    return shortcut;
}

QVariant PortalShortcut::argumentFor(const QList<PortalShortcut> &shortcuts)
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    return QVariant::fromValue(shortcuts);
}

QList<PortalShortcut> PortalShortcut::listFrom(const QVariant &argument)
{
    const auto list = argument.value<QDBusArgument>();
    return list.currentSignature() == QStringLiteral("a(sa{sv})") ? qdbus_cast<QList<PortalShortcut>>(list)
                                                                  : QList<PortalShortcut>();
}

bool PortalShortcut::isBound() const
{
    // Left out by desktops that tell nobody which keys they are.
    const QString key = QStringLiteral("trigger_description");
    return !properties.contains(key) || !properties.value(key).toString().isEmpty();
}

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

} // namespace ostrelle
