// Velmora - what ties a control to the image lists it names: it shows each
// item's referenced image at the list's size, and shows them again whenever
// the list, the references or the items change.
//
// One binding per control, a child QObject of it, made on first need. A
// binding can be suspended: the control keeps the icons it shows and stops
// following its lists until it is resumed (the resize pass does this while
// it rebuilds a list, so the control is not redrawn once per image).
#pragma once

#include <QObject>
#include <QPointer>
#include <QVariant>

#include "VelmoraImageList.h"

class QAction;

namespace velmora::widgets {

class ImageListBinding : public QObject {
    Q_OBJECT
public:
    enum Slot { Images, SmallImages };

    static ImageListBinding *of(const QWidget *control);
    static ImageListBinding *ensure(QWidget *control);
    // The property naming the list of a slot: Icons and SmallIcons for a
    // list widget, ImageList (Images only) for any other control.
    static const char *propertyName(const QWidget *control, Slot slot);
    // Whether the control is of a kind whose items can show a list's images.
    static bool bindable(const QWidget *control);
    // Whether an image reference is a number (from 1) rather than a key.
    static bool isNumber(const QVariant &ref);
    // The bound lists that follow every change, across every control.
    static bool anyFollowing(const VelmoraImageList *list);
    static void forget(const VelmoraImageList *list); // it is being destroyed
    ~ImageListBinding() override;

    VelmoraImageList *list(Slot slot) const { return m_lists[slot]; }
    // Names `list` in the control's property and follows it.
    void assign(Slot slot, VelmoraImageList *list);
    // Looks the lists up again by the names the control's properties give.
    void resolve();

    void suspend();
    void resume();
    bool suspended() const { return m_suspended; }

    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit ImageListBinding(QWidget *control);
    void setList(Slot slot, VelmoraImageList *list);
    void scheduleRefresh();
    void follow(Slot slot);
    void unfollow(Slot slot);
    void watchModel();
    void applyItemImages();
    QIcon image(Slot slot, const QVariant &ref) const;
    void refreshAction(QAction *action);

    QPointer<QWidget> m_control;
    QPointer<VelmoraImageList> m_lists[2];
    QMetaObject::Connection m_following[2];
    QMetaObject::Connection m_gone[2];
    const VelmoraImageList *m_followed[2] = {nullptr, nullptr}; // counted among its followers
    bool m_suspended = false;
    bool m_pending = false;
    bool m_refreshing = false;
    bool m_assigning = false;
};

} // namespace velmora::widgets
