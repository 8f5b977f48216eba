// The help text of every member of VelmoraControl, as the component has
// always worded them (spacing, trailing blanks and all): code reads them,
// the property pages and the Designer plugin show them as tooltips.
#include "control/VelmoraControl.h"

#include <QHash>

namespace {

struct Entry {
    const char *member;
    const char *text;
};

// In interface order: properties, then methods, then events.
const Entry HelpTexts[] = {
    {"ScaleFonts", "If True, scales all fonts of the controls on the form relative to the forms dimensions. "
                   "ScaleControls must also be set to true."},
    {"CenterX", "Centers form in X dimension."},
    {"CenterY", "Centers form in Y dimension."},
    {"GradientFill", "If True, fills background of form with gradient fill"},
    {"GradientColour", "Sets the starting colour for the gradient fill"},
    {"ScaleControls", "If True, scales all controls on the form relative to the forms dimensions"},
    {"ScaleX", "sets a scale factor of the x dimension of the form as a percentage of  the screen width."},
    {"ScaleY", "Sets a scale factor of the Y dimension of the form as a percentage of  the screen height."},
    {"StayOnTop", "If True, the form will stay on top of all other forms on the screen."},
    {"MinWidth", "Sets Minimum Width for form."},
    {"MinHeight", "Sets Minimum Height for form."},
    {"ScaleBorders", "Scales the borders of controls with BorderWidth property, such as lines and shapes."},
    {"MdiChildWidth", "Sets initial Width of MDI Child Form. Overrides automatic setting by MDI Parent Form."},
    {"MdiChildHeight", "Sets initial Height of MDI Child Form. Overrides automatic setting by MDI Parent Form."},
    {"ResizeOnMouseUp", "Resizes form when mouse button is released, rater than continuously. This is useful for "
                        "forms with a lot of controls on them."},
    {"ScaleGraphics", "If True, scales all the graphics of the controls on the form relative to the scaled "
                      "dimensions of the controls. "},
    {"ReplaceFontsWith", "If not set to <none>, the control will replace all the form's control fonts with the "
                         "specified font name.  Fully scaleable fonts should be used, so the controls will scale "
                         "down to their minimum size."},
    {"SaveWindowState", "If true, saves window state, position, and size for next session. This feature used the "
                        "Caption property of the form to store the settings in the registry. Use unique Captions, "
                        "if using this feature."},
    {"WindowName", "Name for SaveWindowState to use when saving window settings in the registry (Default is "
                   "Form.Caption)"},
    {"FormPicture", "Returns or sets a value indicating how the Picture object of a form is manipulated by "
                    "QxVelmora\u00ae"},
    {"FormClose", "Defines effect to use when closing a Form"},
    {"FormCloseTime", "Defines duration of effect when closing a Form"},
    {"FormOpen", "Defines effect to use when opening a Form"},
    {"FormOpenTime", "Defines duration of effect when opening a Form"},

    {"ScalePicture", "Manually scale a picture object of a control to a ratio of current size."},
    {"SizePicture", "Manually scale a picture object of a control to specific size."},
    {"CenterPicture", "Centers Picture object within Container object"},
    {"TilePicture", "This function can be used to manually tile a picture within a container."},
    {"Reset", "Resets the reference for control, font, and graphic resizing. Reset sizes from the relationship of "
              "the objects to the current size of the form rather than the original size of the form (default)."},
    {"ShowAboutBox", "Shows information about Velmora"},
    {"PrintSize", "Prepares and shows the form at the required dimensions for printing."},

    {"ResizeStarted", "Event fired when Velmora has started it's resizing of the constituent controls."},
    {"ResizeDone", "Event fired when Velmora has completed it's resizing of the constituent controls."},
    {"Error", "Returns information about non-critical errors."},
    {"PrintCancelled", "This event is fired when the Cancel button is pressed on the \"Printing.....\" Dialog Box."},
    // Velmora's own additions.
    {"KeepOnScreen", "If True, a window restored off every screen is brought back onto the nearest one."},
    {"PropertyChanged", "Fired with a setting's name when the setting changes."},
    {"settingsChanged", "Fired when any setting changes."},
};

} // namespace

QString VelmoraControl::helpText(const QString &member)
{
    static const QHash<QString, QString> texts = [] {
        QHash<QString, QString> h;
        for (const Entry &e : HelpTexts)
            h.insert(QString::fromLatin1(e.member), QString::fromUtf8(e.text));
        return h;
    }();
    return texts.value(member);
}
