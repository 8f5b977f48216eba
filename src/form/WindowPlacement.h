// Velmora - where a form's window first appears and how it stays: centred,
// sized as a share of the screen (or, for an MDI child, of the MDI area),
// a fixed size for MDI children, and above other windows.
#pragma once

class QWidget;

namespace velmora {

namespace qt {
class QtForm;
}

struct WindowPlacement {
    bool CenterX = false, CenterY = false;
    int ScaleX = 0, ScaleY = 0; // percent, 0 to 100; 0 leaves that side alone
    int MdiChildWidth = 0, MdiChildHeight = 0; // twips; 0 or less leaves it alone
    bool StayOnTop = false;

    // Each acts on a window in its normal state only.
    void applyCenterX(qt::QtForm &form) const;
    void applyCenterY(qt::QtForm &form) const;
    void applyInitialSize(qt::QtForm &form) const;
    void applyMdiChildSize(qt::QtForm &form) const;
    // Changes only the stacking: the window is neither hidden nor made anew.
    // Refused (false) for an MDI parent form, which is not a plain form.
    static bool applyStayOnTop(qt::QtForm *form, bool onTop);
    static void applyStayOnTop(QWidget *window, bool onTop);

    static int clampPercent(int percent) { return percent < 0 ? 0 : percent > 100 ? 100 : percent; }
};

} // namespace velmora
