#include "platform/freedesktop/PortalFileFilter.h"

#include "platform/FileChooser.h"
#include "platform/freedesktop/FileKinds.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QVariant>

namespace ostrelle {

QVariant PortalFileFilter::argumentFor(const FileChoice &choice)
{
    qDBusRegisterMetaType<Rule>();
    qDBusRegisterMetaType<QList<Rule>>();
    qDBusRegisterMetaType<PortalFileFilter>();
    qDBusRegisterMetaType<QList<PortalFileFilter>>();

    PortalFileFilter filter{choice.kindName, {}};
    for (const QString &type : fileKinds::typesOf(choice.mimeTypes)) {
        filter.rules << Rule{1, type};
    }
    for (const QString &pattern : choice.namePatterns) {
        filter.rules << Rule{0, pattern};
    }
    return QVariant::fromValue(QList<PortalFileFilter>{filter});
}

QDBusArgument &operator<<(QDBusArgument &argument, const PortalFileFilter::Rule &rule)
{
    argument.beginStructure();
    argument << rule.kind << rule.value;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalFileFilter::Rule &rule)
{
    argument.beginStructure();
    argument >> rule.kind >> rule.value;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const PortalFileFilter &filter)
{
    argument.beginStructure();
    argument << filter.name << filter.rules;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalFileFilter &filter)
{
    argument.beginStructure();
    argument >> filter.name >> filter.rules;
    argument.endStructure();
    return argument;
}

} // namespace ostrelle
