// Velmora - a Qt widget presented as the form the engine serves.
//
// The form is the widget the component sits on (for a QMainWindow, its
// central widget). Its inner size is measured in its ScaleMode units (the
// dynamic property "ScaleMode", twips by default); window-level members act on
// the window that holds it: the top-level window, or the QMdiSubWindow when
// the form lives in an MDI area.
//
// An MDI parent form is a QMainWindow whose central widget is a QMdiArea: its
// inner size is the area's, in twips (it has no ScaleMode), its controls are
// the main window's own (toolbars, status bar, docks), and its picture is
// drawn behind the area's child windows.
#pragma once

#include "layout/HostObject.h"
#include "qt/QtFont.h"
#include "qt/QtUnits.h"

#include <QHash>
#include <QMdiArea>
#include <QPixmap>
#include <QPointer>
#include <QWidget>



#include <memory>
#include <vector>

namespace velmora::qt {

class FormPictureLayer;

class QtForm : public HostForm, public FontDeferral, public std::enable_shared_from_this<QtForm> {
public:
    static std::shared_ptr<QtForm> create(QWidget *form);
    ~QtForm() override;

    QWidget *widget() const { return m_form; }
    // The window the form's window-level members act on.
    QWidget *window() const { return windowOf(m_form); }
    static QWidget *windowOf(QWidget *form);
    // The window manager's frame around a window: its own once it has one;
    // while the window is placed before it reaches the screen, the one last
    // noted on a framed window (window-level members count the frame).
    QMargins decorationOf(const QWidget *window) const;
    static void noteDecoration(const QWidget *window);
    void setBeforeScreen(bool on) { m_beforeScreen = on; }
    // The window's outer rectangle, and moving it by that: Qt moves a framed
    // window by its frame, one not framed yet by its inside.
    QRect frameOf(const QWidget *window) const { return window->geometry().marginsAdded(decorationOf(window)); }
    void moveFrameTo(QWidget *window, const QPoint &topLeft) const;
    int scaleMode() const;

    // The MDI area that makes `w` an MDI parent form, or nullptr.
    static QMdiArea *mdiAreaOf(const QWidget *w);
    QMdiArea *mdiArea() const { return m_mdiArea; }
    bool isMdiParent() const { return m_mdiParent; }

    std::string typeName() const override { return m_mdiParent ? "MDIForm" : "Form"; }
    bool isKind(HostKind kind) const override { return kind == (m_mdiParent ? HostKind::MDIForm : HostKind::Form); }
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;
    GetResult call(std::string_view method, const std::vector<Value> &args) override;

    std::vector<HostObjectPtr> controls() override;

    // The adapter of a control widget or menu object (created on first use).
    HostObjectPtr adapterFor(QObject *object);
    // A widget's container: the nearest ancestor that is a control, or the
    // form. Tab pages and Qt's own inner widgets are never containers.
    HostObjectPtr containerOf(QWidget *w);
    bool isFormWidget(const QWidget *w) const { return w == m_form; }

    const QPixmap &picture() const;
    void setPicture(const QPixmap &pixmap);

    // Brackets a pass. Within it the units are read once, the form stops
    // repainting at the first write (so a pass that writes nothing paints
    // nothing, and one that does paints once, when it ends), and font writes
    // are held back until flushFonts().
    void beginPass();
    void endPass();
    bool inPass() const { return m_passDepth > 0; }
    // Counts the passes bracketed so far.
    unsigned passSerial() const { return m_passSerial; }
    // Called before anything on the form is changed.
    void aboutToWrite()
    {
        if (m_passDepth > 0 && !m_updatesOff)
            holdUpdates();
    }
    // Applies the font writes held back, each widget's before its
    // container's, so that no container's font passes through a widget on
    // its way to the widget's own.
    void flushFonts();
    // A control taken off its image lists in this pass; if the pass ends
    // before putting it back (it failed), the control follows them again.
    void bindingSuspended(QWidget *control) { m_suspendedBindings.emplace_back(control); }

    // The factors for lengths on the form (its ScaleMode) and inside
    // containers (twips); read afresh outside a pass.
    const UnitScale &formUnits();
    const UnitScale &twipUnits();

    bool deferringFonts() const override { return m_passDepth > 0; }
    void fontPending(std::shared_ptr<QtFont> font) override { m_pendingFonts.push_back(std::move(font)); }

private:
    explicit QtForm(QWidget *form);
    GetResult getMdiArea(std::string_view name) const;
    void collect(QWidget *parent, std::vector<QWidget *> &out) const;
    void collectForm(std::vector<QWidget *> &out) const;
    void collectMenus(std::vector<QObject *> &out) const;
    QString uniqueName(QObject *object, const QString &wanted);

    QPointer<QWidget> m_form;
    QPointer<QMdiArea> m_mdiArea;
    bool m_mdiParent = false;
    bool m_beforeScreen = false;
    QPointer<FormPictureLayer> m_pictureLayer;
    struct Adapter {
        QPointer<QObject> object;
        HostObjectPtr adapter;
        bool control = false; // one of the form's controls when last enumerated
        bool alive() const { return !object.isNull(); }
    };
    QHash<QObject *, Adapter> m_adapters;
    bool m_enumerated = false;
    QHash<QString, QPointer<QObject>> m_keysInUse;
    QHash<QString, int> m_unnamedCount;
    QHash<QString, int> m_nextNumber; // per clashing name: where numbering resumes
    void holdUpdates();
    void resumeBindings();

    int m_passDepth = 0;
    bool m_updatesOff = false;
    unsigned m_passSerial = 0;
    UnitScale m_formUnits, m_twipUnits; // as read when the pass began, or last asked
    std::vector<std::shared_ptr<QtFont>> m_pendingFonts;
    std::vector<QPointer<QWidget>> m_suspendedBindings;
};

} // namespace velmora::qt
