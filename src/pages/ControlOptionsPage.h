// Velmora - the pages that exempt single controls of the form from one kind
// of scaling (ScaleFonts, ScaleBorders, ScaleGraphics, ScaleControls): one
// line per control key, checked for the controls to leave alone.
#pragma once

#include "layout/ControlFlagTable.h"
#include "layout/HostObject.h"
#include "pages/VelmoraPropertyPage.h"

#include <QHash>

#include <array>
#include <memory>
#include <vector>

class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace velmora::qt {
class QtForm;
}

namespace VelmoraPages {

class ControlOptionsPage : public VelmoraPropertyPage {
    Q_OBJECT
    // As the component has always described its pages (all but FormEffects).
    Q_CLASSINFO("Description", "Velmora Property Page")
public:
    ~ControlOptionsPage() override;

    void selectionChanged(const QList<VelmoraControl *> &selected) override;
    void applyChanges() override;
    // Besides its own edits: the component's entries are not yet the
    // form's controls in the form's order (a control deleted, raised or
    // lowered since they were written).
    bool hasPendingChanges() const override;

    QListWidget *List1;
    QLabel *lblControlType, *lblScaleControls;
    QPushButton *cmdSelectAll, *cmdSelectNone;

protected:
    // The kinds of scaling a page can exempt a control from.
    enum class Kind { Fonts, Borders, Graphics, Controls };
    ControlOptionsPage(Kind kind, QWidget *parent);

    using Flag = velmora::ControlFlagTable::Flag;
    struct Entry {
        velmora::HostObjectPtr control;
        QString key;
        std::array<bool, velmora::ControlFlagTable::FlagCount> flags{};
    };
    Entry *entryFor(const QListWidgetItem *item);
    Entry *currentEntry();
    // The switches this page reads and writes.
    std::vector<Flag> pageFlags() const;

    virtual void currentChanged();
    virtual void itemChecked(QListWidgetItem *item);
    virtual void selectAll(bool on);

    Kind m_kind;
    bool m_filling = false;
    bool m_tableOutdated = false;

private:
    bool applies(velmora::HostObject &control) const;

    std::vector<Entry> m_entries;
    QHash<QString, int> m_index;
    // The form as the component sees it, held while the page lists it.
    std::shared_ptr<velmora::qt::QtForm> m_formView;
};

class ScaleFonts : public ControlOptionsPage {
    Q_OBJECT
public:
    explicit ScaleFonts(QWidget *parent = nullptr);
};

class ScaleBorders : public ControlOptionsPage {
    Q_OBJECT
public:
    explicit ScaleBorders(QWidget *parent = nullptr);
};

class ScaleGraphics : public ControlOptionsPage {
    Q_OBJECT
public:
    explicit ScaleGraphics(QWidget *parent = nullptr);
};

} // namespace VelmoraPages
