// Velmora - the ReplaceFontsWith page: the one typeface for every control,
// or "<none>".
#pragma once

#include "pages/VelmoraPropertyPage.h"

class QListWidget;

namespace VelmoraPages {

class ReplaceFontsWith : public VelmoraPropertyPage {
    Q_OBJECT
    // As the component has always described its pages (all but FormEffects).
    Q_CLASSINFO("Description", "Velmora Property Page")
public:
    explicit ReplaceFontsWith(QWidget *parent = nullptr);

    void selectionChanged(const QList<VelmoraControl *> &selected) override;
    void applyChanges() override;

    // "<none>", then the installed families as the font database gives
    // them.
    static void fillFontList(QListWidget *list);

    QListWidget *List1;
};

} // namespace VelmoraPages
