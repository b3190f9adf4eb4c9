#pragma once

#include <QList>
#include <QString>

class QDBusArgument;
class QVariant;

namespace ostrelle {

struct FileChoice;

/// The filters of org.freedesktop.portal.FileChooser, "a(sa(us))".
struct PortalFileFilter
{
    struct Rule
    {
        quint32 kind = 1; ///< 0 a pattern of names, 1 a MIME type
        QString value;
    };

    QString name;
    QList<Rule> rules;

    /// The one filter of what the choice allows, ready to be sent.
    static QVariant argumentFor(const FileChoice &choice);
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalFileFilter::Rule &rule);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalFileFilter::Rule &rule);
QDBusArgument &operator<<(QDBusArgument &argument, const PortalFileFilter &filter);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalFileFilter &filter);

} // namespace ostrelle
