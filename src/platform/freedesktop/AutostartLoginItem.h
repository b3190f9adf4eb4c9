#pragma once

#include "platform/LoginItem.h"
#include "platform/freedesktop/AutostartEntry.h"

namespace ostrelle {

/// The login item of an ordinarily installed program: its autostart entry.
class AutostartLoginItem final : public LoginItem
{
    Q_OBJECT
public:
    explicit AutostartLoginItem(AutostartEntry entry, QObject *parent = nullptr);

    Status status() const override { return m_entry.status(); }
    void setRegistered(bool isRegistered, QObject *context, Answer answer) override;

private:
    AutostartEntry m_entry;
};

} // namespace ostrelle
