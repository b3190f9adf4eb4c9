#pragma once

#include "windows/onboarding/LabelledRow.h"

namespace ostrelle {

/// What a shortcut does, and its keys on a cap.
class ShortcutLine : public LabelledRow
{
    Q_OBJECT
public:
    ShortcutLine(const ControlContext &context, const QString &label, QWidget *parent);

    /// None: "Not set".
    void showKeys(const QString &keys);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_keys;
};

} // namespace ostrelle
