#include "windows/ShortcutRecorder.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "platform/KeyboardLayout.h"
#include "shortcuts/KeyEventCombo.h"
#include "shortcuts/ShortcutService.h"
#include "windows/WindowColors.h"
#include "windows/controls/RecorderButton.h"
#include "windows/controls/RemoveButton.h"
#include "windows/controls/WrappedText.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrelle {
namespace {

constexpr int kGap = 8;
constexpr int kHeight = 24;
constexpr double kConflictLine = 14;
constexpr quint32 kEscapeKey = 53;
constexpr quint32 kDeleteKey = 51;

QFont conflictFont()
{
    return Theme::interfaceFont(10.5, QFont::Normal);
}

bool isModifier(int key)
{
    constexpr std::array kModifiers = {Qt::Key_Shift,   Qt::Key_Control,  Qt::Key_Alt,     Qt::Key_AltGr,
                                       Qt::Key_Meta,    Qt::Key_Super_L,  Qt::Key_Super_R, Qt::Key_Hyper_L,
                                       Qt::Key_Hyper_R, Qt::Key_CapsLock, Qt::Key_NumLock, Qt::Key_ScrollLock};
    return std::find(kModifiers.begin(), kModifiers.end(), key) != kModifiers.end();
}

} // namespace

ShortcutRecorder::ShortcutRecorder(const ControlContext &context, ShortcutService &shortcuts,
                                   const KeyboardLayout &layout, ShortcutAction action, QWidget *parent)
    : QWidget(parent)
    , m_appearance(context.appearance)
    , m_shortcuts(shortcuts)
    , m_layout(layout)
    , m_action(action)
    , m_remove(makeChild<RemoveButton>(this, context, QStringLiteral("Remove shortcut")))
    , m_button(makeChild<RecorderButton>(this, context))
    , m_combosWatch(shortcuts.bindableCombos().addNotifier([this] { showState(); }))
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setTabOrder(&m_button, &m_remove);
    connect(&m_button, &QAbstractButton::clicked, this, [this] { m_isRecording ? stop() : begin(); });
    connect(&m_remove, &QAbstractButton::clicked, this, [this] {
        if (m_remove.hasFocus()) // which is about to vanish
            m_button.setFocus(Qt::TabFocusReason);
        m_shortcuts.set(std::nullopt, m_action);
    });
    connect(&shortcuts, &ShortcutService::keyNamesChanged, this, &ShortcutRecorder::showState);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
    showState();
}

ShortcutRecorder::~ShortcutRecorder()
{
    stop();
}

QString ShortcutRecorder::label() const
{
    if (m_isRecording)
        return QStringLiteral("Press keys…");
    const KeyCombos combos = m_shortcuts.combos();
    const auto combo = combos.constFind(m_action);
    return combo == combos.constEnd() ? QStringLiteral("Not set") : display(*combo, m_shortcuts.keyNames());
}

QString ShortcutRecorder::conflictText() const
{
    return m_conflict && !m_isRecording ? QStringLiteral("Used by ") + title(*m_conflict) : QString();
}

void ShortcutRecorder::begin()
{
    if (m_isRecording)
        return;
    Q_EMIT aboutToBegin();
    m_isRecording = true;
    m_conflict.reset();
    QCoreApplication::instance()->installEventFilter(this);
    m_shortcuts.startRecording(this, [this](const KeyCombo &combo) { record(combo); });
    showState();
}

void ShortcutRecorder::stop()
{
    if (!m_isRecording)
        return;
    m_isRecording = false;
    QCoreApplication::instance()->removeEventFilter(this);
    m_shortcuts.stopRecording();
    showState();
}

bool ShortcutRecorder::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        handleKey(*static_cast<QKeyEvent *>(event));
        return true;
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void ShortcutRecorder::handleKey(const QKeyEvent &event)
{
    if (isModifier(event.key()))
        return;
    const std::optional<quint32> code = m_layout.keyCodeOf(event);
    const bool isBare = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (code == kEscapeKey) {
        stop();
    } else if (code == kDeleteKey || (event.key() == Qt::Key_Delete && isBare)) {
        stop();
        m_shortcuts.set(std::nullopt, m_action);
    } else if (const std::optional<KeyCombo> combo = keyComboFrom(event, m_layout)) {
        record(*combo);
    }
}

void ShortcutRecorder::record(const KeyCombo &combo)
{
    stop();
    m_conflict = m_shortcuts.conflict(combo, m_action);
    if (!m_conflict)
        m_shortcuts.set(combo, m_action);
    showState();
}

bool ShortcutRecorder::event(QEvent *event)
{
    // Keys go to another program from now on.
    if (event->type() == QEvent::WindowDeactivate)
        stop();
    return QWidget::event(event);
}

void ShortcutRecorder::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    stop();
}

void ShortcutRecorder::setProblem(const QString &problem)
{
    m_button.setAccessibleDescription(problem);
}

void ShortcutRecorder::showState()
{
    const bool isSet = m_shortcuts.combos().contains(m_action);
    m_button.setState(label(), m_isRecording ? RecorderButton::State::Recording
                               : isSet       ? RecorderButton::State::Set
                                             : RecorderButton::State::NotSet);
    m_remove.setVisible(isSet && !m_isRecording);
    setAccessibleDescription(conflictText());
    updateGeometry();
    arrange();
    update();
}

QSize ShortcutRecorder::sizeHint() const
{
    double width = m_button.sizeHint().width();
    if (!m_remove.isHidden())
        width += kGap + m_remove.width();
    if (const QString conflict = conflictText(); !conflict.isEmpty())
        width += kGap + QFontMetricsF(conflictFont()).horizontalAdvance(conflict);
    return {static_cast<int>(std::ceil(width)), kHeight};
}

void ShortcutRecorder::resizeEvent(QResizeEvent *)
{
    arrange();
}

void ShortcutRecorder::arrange()
{
    const QSize button = m_button.sizeHint();
    m_button.setGeometry(width() - button.width(), (height() - button.height()) / 2, button.width(), button.height());
    m_remove.move(m_button.x() - kGap - m_remove.width(), (height() - m_remove.height()) / 2);
}

void ShortcutRecorder::paintEvent(QPaintEvent *)
{
    const QString conflict = conflictText();
    if (conflict.isEmpty())
        return;
    const QWidget &next = m_remove.isHidden() ? static_cast<const QWidget &>(m_button) : m_remove;
    const double x = next.x() - kGap - QFontMetricsF(conflictFont()).horizontalAdvance(conflict);
    QPainter painter(this);
    paintLine(painter, conflict, conflictFont(), kConflictLine, {x, (height() - kConflictLine) / 2},
              WindowColors::of(m_appearance).warningInk);
}

} // namespace ostrelle
