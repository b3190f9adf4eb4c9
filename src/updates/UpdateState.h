#pragma once

#include <QString>
#include <QUrl>

#include <variant>

namespace ostrelle {

/// What a successful check yields.
struct UpdateRelease
{
    QString version;
    QUrl url;      ///< where to download it; always HTTPS
    QString notes; ///< may be empty

    friend bool operator==(const UpdateRelease &, const UpdateRelease &) = default;
};

namespace updateStates {

/// Nothing was checked yet.
struct Idle
{
    friend bool operator==(const Idle &, const Idle &) = default;
};
struct Checking
{
    friend bool operator==(const Checking &, const Checking &) = default;
};
/// The running version is the newest, or the newest is to be skipped.
struct Current
{
    friend bool operator==(const Current &, const Current &) = default;
};
struct Available
{
    UpdateRelease release;

    friend bool operator==(const Available &, const Available &) = default;
};
struct Failed
{
    QString message; ///< for the user

    friend bool operator==(const Failed &, const Failed &) = default;
};

} // namespace updateStates

using UpdateState = std::variant<updateStates::Idle, updateStates::Checking, updateStates::Current,
                                 updateStates::Available, updateStates::Failed>;

} // namespace ostrelle
