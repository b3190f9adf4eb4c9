#include "inspectors/ColorModuleView.h"

#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "inspectors/ColorReadout.h"
#include "inspectors/ColorService.h"
#include "inspectors/ColorTextField.h"
#include "inspectors/SwatchShelves.h"
#include "notch/ContentFade.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ActionPrompt.h"
#include "notch/controls/FilledButton.h"
#include "notch/controls/GlyphButton.h"
#include "notch/controls/NotchMenu.h"
#include "platform/ClipboardPort.h"
#include "platform/ClipboardText.h"
#include "platform/Haptics.h"
#include "platform/Popups.h"
#include "records/ColorText.h"
#include "records/Motion.h"

#include <QApplication>
#include <QKeyEvent>

#include <chrono>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

/// Header and tool strip.
constexpr double kAboveColors = 106;
constexpr int kPromptHeight = 150;
constexpr double kPromptSymbolSize = 26;
constexpr QSize kInvitedField{300, 36};
constexpr double kPageResponse = 0.22;
constexpr std::chrono::milliseconds kCopiedTime = 1400ms;
/// More is no colour, and the field shows what was pasted.
constexpr qsizetype kMostPasted = 60;

} // namespace

ColorModuleView::ColorModuleView(const Surroundings &surroundings, const ControlContext &context, QWidget *parent)
    : ToolView(parent)
    , m_around(surroundings)
    , m_context(context)
    , m_prompt(makeChild<ActionPrompt>(
          this, context,
          ActionPrompt::Content{.symbol = QStringLiteral("eyedropper"),
                                .message = QStringLiteral("Pick a color from anywhere on your screen"),
                                .action = QStringLiteral("Pick Color"),
                                .symbolSize = kPromptSymbolSize}))
    , m_readout(makeChild<ColorReadout>(this, context))
    , m_shelves(makeChild<SwatchShelves>(this, context))
    , m_field(makeChild<ColorTextField>(this, context, surroundings.clipboard))
    , m_another(makeChild<GlyphButton>(
          this, context,
          GlyphButton::Content{.symbol = QStringLiteral("eyedropper"), .help = QStringLiteral("Pick another color")}))
    , m_promptFade(makeChild<ContentFade>(&m_prompt))
    , m_readoutFade(makeChild<ContentFade>(&m_readout))
    , m_page(context, 0, [this] { applyPage(); })
    , m_listsWatch(surroundings.colors.bindableLists().addNotifier([this] { followLists(); }))
{
    // The chrome shows it when it takes it over.
    m_another.hide();
    m_prompt.setGraphicsEffect(&m_promptFade);
    m_readout.setGraphicsEffect(&m_readoutFade);
    listen();
    followLists();
    showRecent();
    applyPage();
}

ColorModuleView::~ColorModuleView() = default;

void ColorModuleView::listen()
{
    for (QAbstractButton *button :
         {static_cast<QAbstractButton *>(&m_prompt.button()), static_cast<QAbstractButton *>(&m_another)})
        connect(button, &QAbstractButton::clicked, this, &ColorModuleView::sample);
    connect(&m_readout, &ColorReadout::pickWanted, this, &ColorModuleView::sample);
    connect(&m_readout, &ColorReadout::copyWanted, this, &ColorModuleView::copy);
    connect(&m_readout, &ColorReadout::favoriteToggled, this, [this] { m_around.colors.toggleFavorite(*m_current); });
    connect(&m_readout, &ColorReadout::menuRequested, this,
            [this](QWidget *anchor, const QPointF &position) { openMenu(*m_current, *anchor, position); });
    connect(&m_shelves, &SwatchShelves::chosen, this, &ColorModuleView::setCurrent);
    connect(&m_shelves, &SwatchShelves::menuRequested, this,
            [this](const SampledColor &color, QWidget *anchor, const QPointF &position) {
                openMenu(color, *anchor, position);
            });
    connect(&m_field, &ColorTextField::accepted, this, &ColorModuleView::take);
    connect(&m_field, &ColorTextField::closed, this, &ColorModuleView::followField);
    // Whoever opened the loupe.
    connect(&m_around.colors, &ColorService::sampled, this, &ColorModuleView::setCurrent);
    // Buttons would keep arrow keys for themselves; the one in the header is not in this view.
    for (QWidget *widget : m_readout.focusOrder() + QList<QWidget *>{&m_prompt.button(), &m_another})
        widget->installEventFilter(this);
}

std::optional<double> ColorModuleView::wantedBodyHeight() const
{
    return kAboveColors + (m_current ? ColorReadout::kHeight : kPromptHeight) + m_shelves.wantedHeight();
}

QList<QWidget *> ColorModuleView::headerActions()
{
    return m_current ? QList<QWidget *>{&m_another} : QList<QWidget *>{};
}

void ColorModuleView::appeared()
{
    showRecent();
    setFocus(Qt::OtherFocusReason);
}

void ColorModuleView::showRecent()
{
    if (!m_current && !m_around.colors.recents().isEmpty())
        setCurrent(m_around.colors.recents().first());
}

void ColorModuleView::setCurrent(const SampledColor &color)
{
    if (color == m_current)
        return;
    const bool isFirst = !m_current;
    m_current = color;
    m_copied.cancel();
    m_readout.setCopied(std::nullopt);
    m_readout.setColor(color);
    m_readout.setFavorite(m_around.colors.isFavorite(color));
    m_shelves.setCurrent(color);
    if (!isFirst)
        return;
    if (m_prompt.button().hasFocus())
        setFocus(Qt::OtherFocusReason);
    m_page.animateTo(1, Motion::damped(kPageResponse));
    // A view that is not on screen yet has nothing to fade from.
    if (!isVisible())
        m_page.jumpTo(1);
    applyPage();
    m_another.setVisible(m_another.parentWidget() != this);
    Q_EMIT headerActionsChanged();
    tellHeight();
}

void ColorModuleView::followLists()
{
    const bool hadFocus = m_shelves.isAncestorOf(QApplication::focusWidget());
    m_shelves.setLists(m_around.colors.lists());
    if (m_current)
        m_readout.setFavorite(m_around.colors.isFavorite(*m_current));
    // The last swatch of a shelf may have had it.
    if (hadFocus && !m_shelves.isAncestorOf(QApplication::focusWidget()))
        setFocus(Qt::OtherFocusReason);
    setFocusOrder();
    arrange();
    tellHeight();
}

/// By itself the Tab key follows the order in which the widgets were made.
void ColorModuleView::setFocusOrder()
{
    QWidget *previous = nullptr;
    for (QWidget *widget : m_readout.focusOrder() + m_shelves.focusOrder()) {
        if (previous != nullptr)
            setTabOrder(previous, widget);
        previous = widget;
    }
}

void ColorModuleView::sample()
{
    m_field.close();
    m_around.colors.sample(this, {});
}

void ColorModuleView::copy(ColorForm form)
{
    if (!m_current)
        return;
    copyText(colorText(*m_current, form));
    m_readout.setCopied(form);
    m_copied = m_around.scheduler.after(kCopiedTime, this, [this] { m_readout.setCopied(std::nullopt); });
}

void ColorModuleView::copyText(const QString &text)
{
    m_around.clipboard.write(text);
    m_around.haptics.tick();
}

void ColorModuleView::openMenu(const SampledColor &color, QWidget &anchor, const QPointF &position)
{
    m_menu = std::make_unique<NotchMenu>(m_context.appearance, this);
    for (const ColorForm form : kAllColorForms)
        m_menu->addEntry(QStringLiteral("Copy ") + colorFormLabel(form), this,
                         [this, text = colorText(color, form)] { copyText(text); });
    m_menu->addSeparator();
    m_menu->addEntry(m_around.colors.isFavorite(color) ? QStringLiteral("Remove from Favorites")
                                                       : QStringLiteral("Add to Favorites"),
                     this, [this, color] { m_around.colors.toggleFavorite(color); });
    m_around.popups.openMenu(*m_menu, anchor, position);
}

void ColorModuleView::undo()
{
    m_around.colors.undo();
}

bool ColorModuleView::handleKey(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Undo))
        undo();
    else if (event.matches(QKeySequence::Paste))
        paste();
    else
        return !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) &&
               handlePlainKey(event);
    return true;
}

bool ColorModuleView::handlePlainKey(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
        return m_shelves.walk(event.key());
    case Qt::Key_Delete: {
        const auto favorite = m_shelves.focusedFavorite();
        if (favorite)
            m_around.colors.toggleFavorite(*favorite);
        return favorite.has_value();
    }
    default:
        break;
    }
    const QString text = event.text();
    const int digit = text.isEmpty() ? -1 : text.front().digitValue();
    if (digit >= 1 && digit <= static_cast<int>(kAllColorForms.size()))
        copy(kAllColorForms[static_cast<std::size_t>(digit) - 1]);
    else if (!text.isEmpty() && (text.front() == u'#' || text.front().isLetter()))
        type(text);
    else
        return false;
    return true;
}

void ColorModuleView::type(const QString &text)
{
    m_beforeField = QApplication::focusWidget();
    m_field.open(text);
    followField();
}

void ColorModuleView::paste()
{
    readClipboardText(m_around.clipboard, this, [this](const QString &text) { takePasted(text); });
}

void ColorModuleView::takePasted(const QString &text)
{
    const QString shown = text.left(kMostPasted).simplified();
    if (m_field.isOpen()) {
        m_field.insert(shown);
    } else if (const auto color = colorFromText(text)) {
        take(*color);
    } else if (!shown.isEmpty()) {
        type(shown);
        m_field.refuse();
    }
}

void ColorModuleView::take(const SampledColor &written)
{
    ColorService &colors = m_around.colors;
    const SampledColor color = meantColor(colors.recents() + colors.favorites(), written);
    setCurrent(color);
    colors.record(color);
}

/// It stands where the text of a colour is, or where the button is that invites to pick one.
void ColorModuleView::followField()
{
    const bool isOpen = m_field.isOpen();
    m_readout.setFirstRowShown(!isOpen);
    m_prompt.button().setVisible(!isOpen);
    arrange();
    if (!isOpen && m_field.isAncestorOf(QApplication::focusWidget()))
        (m_beforeField && m_beforeField->isVisible() ? m_beforeField.data() : this)->setFocus(Qt::OtherFocusReason);
}

void ColorModuleView::applyPage()
{
    const double readout = m_page.value();
    m_prompt.setVisible(readout < 1 || !m_current);
    m_readout.setVisible(readout > 0 || m_current);
    const QRectF everything(rect());
    m_promptFade.setLook(1 - readout, everything);
    m_readoutFade.setLook(readout, everything);
    m_promptFade.setEnabled(m_page.isMoving());
    m_readoutFade.setEnabled(m_page.isMoving());
    m_prompt.update();
    m_readout.update();
    arrange();
}

void ColorModuleView::tellHeight()
{
    const double height = *wantedBodyHeight();
    if (std::exchange(m_wantedHeight, height) != height)
        Q_EMIT wantedBodyHeightChanged();
}

void ColorModuleView::arrange()
{
    m_prompt.setGeometry(0, 0, width(), kPromptHeight);
    m_readout.setGeometry(0, 0, width(), ColorReadout::kHeight);
    // The swatches travel while the one gives way to the other.
    const double shown = m_context.appearance.reducesMotion() ? m_page.target() : m_page.value();
    const int above = static_cast<int>(std::lround(kPromptHeight + (ColorReadout::kHeight - kPromptHeight) * shown));
    m_shelves.setGeometry(0, above, width(), m_shelves.wantedHeight());
    if (m_current)
        m_field.setGeometry(m_readout.firstRow());
    else
        m_field.setGeometry(QRect(QPoint((width() - kInvitedField.width()) / 2, m_prompt.button().y()), kInvitedField));
}

bool ColorModuleView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && handleKey(*static_cast<QKeyEvent *>(event)))
        return true;
    return ToolView::eventFilter(watched, event);
}

void ColorModuleView::keyPressEvent(QKeyEvent *event)
{
    if (!handleKey(*event))
        ToolView::keyPressEvent(event);
}

void ColorModuleView::resizeEvent(QResizeEvent *)
{
    arrange();
}

} // namespace ostrelle
