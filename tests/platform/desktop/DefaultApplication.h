#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

namespace ostrelle {

/// A program that is the desktop's default for text files, for folders and for the web, in the private home that the
/// test runs in, and writes down how it was started.
class DefaultApplication
{
public:
    DefaultApplication();

    /// The paths and addresses that it was given so far.
    QStringList opened() const;
    /// What its environment had at the last start; empty when it was not there.
    QByteArray variable(const QByteArray &name) const;
    /// Where the descriptors led that it had at the last start.
    QByteArrayList descriptors() const;

private:
    QByteArrayList lines(const QString &file, char separator) const;

    QTemporaryDir m_folder;
};

} // namespace ostrelle
