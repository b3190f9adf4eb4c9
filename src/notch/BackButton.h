#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// The way back to the selector, with the symbol of the tool that one is in.
class BackButton : public NotchButton
{
    Q_OBJECT
public:
    static constexpr int kWidth = 45;
    static constexpr int kHeight = 26;

    BackButton(const ControlContext &context, QWidget *parent);

    /// Symbols and their opacities in one frame; they cross-fade while tools change.
    struct Symbols
    {
        QString arriving;
        QString leaving;
        double arrivingOpacity = 1;
        double leavingOpacity = 0;

        friend bool operator==(const Symbols &, const Symbols &) = default;
    };
    void setSymbols(const Symbols &symbols);

protected:
    double cornerRadius() const override { return kHeight / 2.0; }
    void paintEvent(QPaintEvent *event) override;

private:
    Symbols m_symbols;
};

} // namespace ostrelle
