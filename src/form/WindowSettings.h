// Velmora - where a form's window is kept between runs: the per-user
// settings of organisation and application "Velmora", one group per window
// name, the rectangle in twips and the window state (0 normal, 1 minimised,
// 2 maximised).
#pragma once

#include <QRectF>
#include <QString>

#include <optional>

namespace velmora {

class WindowSettings {
public:
    struct State {
        QRectF rect; // Left, Top, Width, Height in twips: the last normal-state rectangle
        int windowState = 0;
    };

    // The group a window name is kept under: the name percent-encoded, so
    // that "/", "\", ".." or spaces never leave the one group nor reach
    // another application's settings. An empty name has a group of its own.
    static QString groupFor(const QString &windowName);

    static void save(const QString &windowName, const State &state);
    // What was saved, or nothing when a key is missing or does not hold a
    // usable value (text, NaN, sizes no screen has).
    static std::optional<State> load(const QString &windowName);
    static void remove(const QString &windowName);
};

} // namespace velmora
