#pragma once

#include "records/ColorLists.h"

#include <QObject>
#include <QProperty>

#include <functional>
#include <memory>
#include <optional>

namespace ostrelle {

class ColourPicker;
class DefaultsDatabase;
class NotchController;

/// The colour tool's colours: samples them from the screen, keeps recent ones and favorites in the defaults database.
/// Main thread.
class ColorService : public QObject
{
    Q_OBJECT
public:
    using Completion = std::function<void(std::optional<SampledColor> color)>;

    /// All of them outlive this.
    ColorService(DefaultsDatabase &defaults, ColourPicker &picker, NotchController &controller,
                 QObject *parent = nullptr);

    const ColorLists &lists() const { return m_lists.value(); }
    const QList<SampledColor> &recents() const { return lists().recents; }
    const QList<SampledColor> &favorites() const { return lists().favorites; }
    bool isFavorite(const SampledColor &color) const { return favorites().contains(color); }
    /// The loupe is open.
    bool isSampling() const { return m_isSampling.value(); }
    /// For observing.
    QBindable<ColorLists> bindableLists() { return &m_lists; }
    QBindable<bool> bindableIsSampling() { return &m_isSampling; }

    /// Opens the loupe, and keeps the notch open meanwhile. `completion` gets the colour picked last, or nothing; it is
    /// not called while the loupe is open already, or when `context` is gone. All colours picked are recorded.
    void sample(const QObject *context, const Completion &completion);
    /// Closes the loupe as if no color had been picked.
    void cancelSampling();
    void record(const SampledColor &color);
    /// One step of undo.
    void toggleFavorite(const SampledColor &color);
    void clearRecents();
    void clearFavorites();
    /// Writes both lists.
    void persist();

    /// Whether a toggleFavorite() can be taken back: until lapse(), the last one first.
    bool canUndo() const { return !m_undo.isEmpty(); }
    void undo();
    /// The panel closed, or a command changed the favorites.
    void lapse();

Q_SIGNALS:
    void recentsChanged();
    /// The loupe has closed with this colour.
    void sampled(const SampledColor &color);

private:
    void finish(const std::optional<SampledColor> &color);
    void put(const ColorLists &lists);

    DefaultsDatabase &m_defaults;
    ColourPicker &m_picker;
    NotchController &m_controller;
    QProperty<ColorLists> m_lists;
    QProperty<bool> m_isSampling{false};
    /// The loupe closes with it.
    std::unique_ptr<QObject> m_loupe;
    Completion m_completion;           ///< of the open loupe
    QList<QList<SampledColor>> m_undo; ///< the favorites before each change
};

} // namespace ostrelle
