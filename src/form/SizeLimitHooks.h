// Velmora - size limits a window is held to for a while (print sizing lets
// a form grow past the screen while it moves it): a process-wide table of
// hooked windows. Hooking sets the window's minimum and maximum size, and
// remembers what they were; a window hooked twice chains, and unhooking
// removes its last row, putting back what that row found.
#pragma once

class QWidget;

namespace velmora {

class SizeLimitHooks {
public:
    // Limits in twips, converted to pixels (rounded, halves to even).
    static void hookWindow(QWidget *window, int minWidth, int minHeight, int maxWidth, int maxHeight);
    static void unhookWindow(QWidget *window);
    // Drops the window's rows without touching it (it may be going away).
    static void forgetWindow(const QWidget *window);
    // Rows held for the window (0 when it is not hooked).
    static int rowsFor(const QWidget *window);
};

} // namespace velmora
