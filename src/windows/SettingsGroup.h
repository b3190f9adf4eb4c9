#pragma once

#include "notch/controls/ControlContext.h"

#include <QPainterPath>
#include <QWidget>

class QVBoxLayout;

namespace ostrelle {

/// A titled container of rows with a footer below it.
class SettingsGroup : public QWidget
{
    Q_OBJECT
public:
    static constexpr double kRadius = 12;
    /// What a group has below its contents for the container's shadow, logical pixels.
    static constexpr int kShadowRoom = 2;

    enum class FooterKind { Explanation, Warning };
    /// The container without a fill is for content that is its own.
    enum class Container { Card, Bare };

    SettingsGroup(const ControlContext &context, const QString &title, Container container, QWidget *parent);

    /// The parent of its rows.
    QWidget &container() { return m_container; }
    /// Below the others.
    void addRow(QWidget &row);
    /// An empty text takes the footer away.
    void setFooter(const QString &text, FooterKind kind = FooterKind::Explanation);

    /// The outline of a row as a fill of it has it: with the container's corners where it lies in them.
    static QPainterPath rowShape(const QWidget &row);
    /// The line above a row, from `x` to the container's end; none above the first one.
    static void paintDivider(QPainter &painter, const QWidget &row, const NotchAppearance &appearance, double x);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    class Title;
    class Card;
    class Footer;

    ControlContext m_context;
    Container m_style;
    QVBoxLayout &m_layout;
    QWidget &m_container;
    QVBoxLayout &m_rows;
    Footer &m_footer;
};

} // namespace ostrelle
