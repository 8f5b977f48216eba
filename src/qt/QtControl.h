// Velmora - a QWidget presented as a control of the form.
//
// Geometry is in the container's units: the form's ScaleMode units for a
// control sitting on the form, twips inside any other container, written
// rounded to whole pixels. A widget whose geometry a layout, splitter,
// stacked widget or resizable scroll area manages refuses geometry writes;
// its fonts and pictures still scale; when it is a container, the layouts
// above it settle before its children measure it. Explicit minimum and
// maximum sizes scale with the widget. Members Qt has no notion of are mapped
// per widget class; a PascalCase Q_PROPERTY or dynamic property of the same
// name serves for anything else, so custom widgets can take part.
#pragma once

#include "layout/HostObject.h"
#include "qt/QtUnits.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <array>
#include <memory>
#include <optional>

namespace velmora::qt {

class QtForm;
class QtFont;
class ViewInterior;
class LayoutSpacing;

class QtControl : public HostObject {
public:
    QtControl(std::weak_ptr<QtForm> form, QWidget *widget, QString name);
    ~QtControl() override;

    QWidget *widget() const { return m_widget; }
    QString name() const;
    // A widget renamed since its key was given needs a key checked anew.
    bool renamed() const { return m_widget && m_widget->objectName() != m_keyedAs; }
    void rekey(const QString &nameOverride);

    std::string typeName() const override;
    bool isKind(HostKind kind) const override;
    GetResult get(std::string_view name) override;
    SetResult set(std::string_view name, const Value &value) override;
    GetResult getAt(std::string_view name, int index) override;
    SetResult setAt(std::string_view name, int index, const Value &value) override;
    GetResult call(std::string_view method, const std::vector<Value> &args) override;
    std::uint64_t identity() const override { return m_identity; }
    std::optional<Edges> edges() override;
    std::optional<SetResult> setFontSize(int slot, double size) override;

    // Whether the widget's parent decides its geometry.
    static bool geometryManaged(const QWidget *w);

private:
    enum class Kind { Generic, Label, Button, TabWidget, Frame, Line, Calendar, ImageList };
    enum class Edge { Left, Top, Width, Height };

    // What a pass asks of the widget again and again, taken once per pass
    // (and afresh on every access outside one).
    struct PassState {
        std::weak_ptr<HostObject> container;
        const UnitScale *units = nullptr; // of the lengths it is measured in (the form's)
        unsigned serial = 0; // the pass it belongs to; 0 for none
        bool onForm = true;
        bool managed = false; // its parent decides its geometry
        bool dynamicProperties = false; // the widget has any
    };
    const PassState &state() const;
    void willWrite() const;
    // The form, while it exists (checked without taking a reference: this
    // runs for every access).
    QtForm *liveForm() const { return m_form.expired() ? nullptr : m_formPtr; }
    // A Q_PROPERTY or dynamic property read or written by name; the members
    // most widgets lack fail without a look-up.
    bool surelyLacks(std::string_view name) const;
    bool lacksOptional(int member) const; // by its place in the optional members
    GetResult readBridged(std::string_view name) const;
    SetResult writeBridged(std::string_view name, const Value &value);
    Edges edgesNow() const; // of a widget that exists
    GetResult getEdge(Edge edge) const;
    SetResult setEdge(Edge edge, const Value &value);
    SetResult move(const std::vector<Value> &args);
    GetResult lineEnd(std::string_view name) const;
    SetResult setLineEnd(std::string_view name, const Value &value);
    // Places the widget, first scaling any explicit minimum or maximum size
    // it had at capture so that Qt does not clamp the engine's size.
    void place(const QRect &rect);
    // The limits alone, for a widget its parent's layout places.
    void scaleLimits(const QSize &placed);
    // Its design size scaled as its container's size is now.
    QSize sizeByContainer(const PassState &st, const QSize &fallback) const;
    HostObjectPtr font(int slot);
    GetResult getBorderWidth() const;
    SetResult setBorderWidth(const Value &value);
    // Image lists, item collections and a toolbar's button size; nullopt
    // for a member the widget does not have this way.
    std::optional<GetResult> getItemMember(std::string_view name);
    std::optional<SetResult> setItemMember(std::string_view name, const Value &value);
    // Whether an image list decides the icon size (instead of the control's size).
    bool showsListImages() const;

    std::weak_ptr<QtForm> m_form;
    QtForm *m_formPtr;
    QPointer<QWidget> m_widget;
    QString m_keyedAs; // the widget's objectName when its key was given
    std::string m_name; // the name the engine reads
    HostObjectPtr m_font;
    std::unique_ptr<std::array<HostObjectPtr, 4>> m_calendarFonts; // DayFont ... HeadFont
    // What only some widgets have at design time: explicit size limits, and
    // the icon size of a widget that shows icons of its items.
    struct Design {
        QSize size, minimum, maximum;
        bool limits = false;
        QSize iconSize; // invalid: not such a widget
        QSize formSize; // the form's, for a widget its parent places
    };
    std::unique_ptr<Design> m_design;
    std::unique_ptr<ViewInterior> m_view; // sections and spacing of an item view
    std::unique_ptr<LayoutSpacing> m_layout; // margins and spacing of the layout it holds
    QSize m_designSize; // when the layout was captured
    // Icons of items (view rows, toolbar actions, tabs) are drawn from their
    // QIcons at the widget's icon size: scaling that size scales them, sharp.
    void scaleIconSize();
    // Takes what the widget has now as its design: limits, size, icon size,
    // item view sections, layout spacing.
    void takeDesign();
    std::uint64_t m_identity; // one per adapter, and an adapter per widget
    Kind m_kind = Kind::Generic;
    unsigned m_classLacks = 0; // optional members the widget's class does not declare
    unsigned m_settledInPass = 0; // pass in which its children last measured it
    bool m_nameOverridden = false; // m_name is a key of our own, not the objectName
    mutable PassState m_state;
};

} // namespace velmora::qt
