// Velmora - the wipes a form opens and closes with: the window's visible
// region, step by step, growing from nothing to the whole window or
// shrinking from the whole window to nothing.
#pragma once

#include <QRect>

#include <functional>
#include <optional>

namespace velmora {

class WipeEffect {
public:
    enum Kind { None = 0, WipeLeft, WipeRight, WipeUp, WipeDown, WipeVertical, WipeHorizontal, Fold };

    // `window`: the window's outer rectangle in screen pixels; `seconds`: the
    // duration (0 or less: as fast as it goes, 100 steps; at most MaxSeconds).
    WipeEffect(bool opening, int kind, const QRect &window, double seconds);
    static constexpr double MaxSeconds = 10;

    int steps() const { return m_steps; }
    double secondsPerStep() const { return m_stepT; }
    // The visible rectangle at step i (1..steps) in the window's own pixels,
    // frame included (empty: nothing shows); nothing when this step changes
    // nothing.
    std::optional<QRect> region(int i) const;

    // Plays it: `apply` gets each region, `idle` runs while a step waits and
    // after each step (the host's pending events) and ends the wipe where it
    // stands when it returns false (the window went meanwhile).
    void play(const std::function<void(const QRect &corners)> &apply, const std::function<bool()> &idle) const;

private:
    bool m_opening;
    int m_kind;
    int m_steps;
    double m_stepX, m_stepY, m_stepT;
    double m_right, m_bottom; // the window's far edges in screen pixels, used as they stand
    double m_stripL, m_stripR;
};

} // namespace velmora
