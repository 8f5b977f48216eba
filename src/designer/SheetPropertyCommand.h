// Velmora - an undoable change of one property of a widget in the form Qt
// Designer edits, made through the widget's property sheet: a property the
// property editor hides (the form window's cursor refuses those), or a
// dynamic property added, changed or removed as the property editor would.
#pragma once

#include <QPointer>
#include <QUndoCommand>
#include <QVariant>

class QDesignerFormWindowInterface;
class QWidget;

namespace velmora::designer {

class SheetPropertyCommand : public QUndoCommand {
public:
    // For a dynamic property, an invalid value removes it.
    SheetPropertyCommand(QDesignerFormWindowInterface *form, QWidget *widget, const QString &name,
                         const QVariant &value);

    void redo() override;
    void undo() override;

    // The property's value as the form has it: invalid for a dynamic
    // property it does not have.
    static QVariant valueIn(QDesignerFormWindowInterface *form, QWidget *widget, const QString &name);

private:
    struct State {
        QVariant value;
        bool changed = false; // saved with the form
    };
    State state() const;
    void set(const State &state);

    QPointer<QDesignerFormWindowInterface> m_form;
    QPointer<QWidget> m_widget;
    QString m_name;
    State m_after, m_before;
};

} // namespace velmora::designer
