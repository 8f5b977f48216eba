// Velmora - what every settings page of VelmoraControl does for the window
// that shows it: take the selected controls, apply its edits, and say
// whether it has any.
#pragma once

#include "velmora_export.h"

#include <QList>
#include <QPointer>
#include <QWidget>

class VelmoraControl;

class VELMORA_EXPORT VelmoraPropertyPage : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool changed READ isChanged NOTIFY changedChanged)
public:
    explicit VelmoraPropertyPage(QWidget *parent = nullptr);

    // The controls selected in the host; a page edits the first. A page
    // fills its fields the first time only, however often this is called.
    virtual void selectionChanged(const QList<VelmoraControl *> &selected) = 0;
    // Writes the page's fields to the first selected control, through its
    // setters, and clears the changed flag.
    virtual void applyChanges() = 0;

    bool isChanged() const { return m_changed; }
    // Whether applying would change the control: the page's edits, and
    // anything it found to put right (a settings window's OK applies a
    // page for either).
    virtual bool hasPendingChanges() const { return isChanged(); }
    bool isLoaded() const { return m_loaded; }

Q_SIGNALS:
    void changedChanged(bool changed);

protected:
    // Edits mark the page changed only once it has been filled.
    void markChanged();
    void setChanged(bool changed);
    void setLoaded() { m_loaded = true; }
    // The control the page edits (the first of the selection), if any.
    VelmoraControl *control() const;
    void select(const QList<VelmoraControl *> &selected);

private:
    QList<QPointer<VelmoraControl>> m_selected;
    bool m_changed = false;
    bool m_loaded = false;
};
