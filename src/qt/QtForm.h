// Velmora - a Qt widget presented as the form the engine serves.
//
// The form is the widget the component sits on (for a QMainWindow, its
// central widget). Its inner size is measured in its ScaleMode units (the
// dynamic property "ScaleMode", twips by default); window-level members act on
// the window that holds it: the top-level window, or the QMdiSubWindow when
// the form lives in an MDI area.
#pragma once

#include "layout/HostObject.h"

#include <QHash>
#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

namespace velmora::qt {

class FormPictureLayer;

class QtForm : public HostForm, public std::enable_shared_from_this<QtForm> {
public:
    static std::shared_ptr<QtForm> create(QWidget *form);
    ~QtForm() override;

    QWidget *widget() const { return m_form; }
    // The window the form's window-level members act on.
    QWidget *window() const;
    int scaleMode() const;

    std::string typeName() const override { return "Form"; }
    bool isKind(HostKind kind) const override { return kind == HostKind::Form; }
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

    // Brackets a pass so that the form repaints once, when it ends.
    void beginUpdate();
    void endUpdate();
    // Counts the passes bracketed so far.
    unsigned passSerial() const { return m_passSerial; }

private:
    explicit QtForm(QWidget *form);
    void collect(QWidget *parent, std::vector<QWidget *> &out) const;
    void collectMenus(std::vector<QObject *> &out) const;
    QString uniqueName(QObject *object, const QString &wanted);

    QPointer<QWidget> m_form;
    QPointer<FormPictureLayer> m_pictureLayer;
    struct Adapter {
        QPointer<QObject> object;
        HostObjectPtr adapter;
        bool alive() const { return !object.isNull(); }
    };
    QHash<QObject *, Adapter> m_adapters;
    bool m_enumerated = false;
    QHash<QString, QPointer<QObject>> m_keysInUse;
    QHash<QString, int> m_unnamedCount;
    QHash<QString, int> m_nextNumber; // per clashing name: where numbering resumes
    int m_updateDepth = 0;
    unsigned m_passSerial = 0;
};

} // namespace velmora::qt
