#include "ImageListBinding.h"

#include "VelmoraImageList.h"

#include <QAction>
#include <QEvent>
#include <QHash>
#include <QListWidget>
#include <QMainWindow>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace velmora::widgets {

namespace {

const char *const ImageProperty = "Image";
const char *const ItemImagesProperty = "ItemImages";
const char *const WatchedProperty = "_velmora_image_watched";

// How many bindings follow each list right now.
QHash<const VelmoraImageList *, int> &followers()
{
    static QHash<const VelmoraImageList *, int> counts;
    return counts;
}

void setIconSize(QWidget *control, const QSize &size)
{
    const QSize now = control->property("iconSize").toSize();
    if (now == size)
        return;
    // A main window's toolbar takes its size from the form beside it, which
    // it resizes in turn: a pixel either way would go back and forth.
    if (qobject_cast<QToolBar *>(control) && qobject_cast<QMainWindow *>(control->parentWidget())
        && qAbs(now.width() - size.width()) <= 1 && qAbs(now.height() - size.height()) <= 1)
        return;
    control->setProperty("iconSize", size);
}

} // namespace

ImageListBinding::~ImageListBinding()
{
    unfollow(Images);
    unfollow(SmallImages);
}

ImageListBinding::ImageListBinding(QWidget *control)
    : QObject(control)
    , m_control(control)
{
    setObjectName(QStringLiteral("qt_velmora_image_binding"));
    control->installEventFilter(this);
    watchModel();
    applyItemImages();
    resolve();
}

ImageListBinding *ImageListBinding::of(const QWidget *control)
{
    return control ? control->findChild<ImageListBinding *>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

ImageListBinding *ImageListBinding::ensure(QWidget *control)
{
    if (!control)
        return nullptr;
    if (ImageListBinding *b = of(control))
        return b;
    return new ImageListBinding(control);
}

const char *ImageListBinding::propertyName(const QWidget *control, Slot slot)
{
    if (qobject_cast<const QListWidget *>(control))
        return slot == Images ? "Icons" : "SmallIcons";
    return slot == Images ? "ImageList" : nullptr;
}

bool ImageListBinding::bindable(const QWidget *control)
{
    return qobject_cast<const QToolBar *>(control) || qobject_cast<const QToolButton *>(control)
        || qobject_cast<const QTreeWidget *>(control) || qobject_cast<const QListWidget *>(control)
        || qobject_cast<const QTabBar *>(control) || qobject_cast<const QTabWidget *>(control);
}

bool ImageListBinding::isNumber(const QVariant &ref)
{
    switch (ref.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

bool ImageListBinding::anyFollowing(const VelmoraImageList *list)
{
    return followers().value(list) > 0;
}

void ImageListBinding::forget(const VelmoraImageList *list)
{
    followers().remove(list);
}

void ImageListBinding::assign(Slot slot, VelmoraImageList *list)
{
    if (const char *name = propertyName(m_control, slot)) {
        // The pointer decides: the list may have no name, or be on another form.
        m_assigning = true;
        m_control->setProperty(name, list ? QVariant(list->objectName()) : QVariant());
        m_assigning = false;
        setList(slot, list);
    }
}

void ImageListBinding::setList(Slot slot, VelmoraImageList *list)
{
    if (m_lists[slot] == list) {
        if (!m_suspended)
            follow(slot);
        return;
    }
    unfollow(slot);
    m_lists[slot] = list;
    if (!m_suspended)
        follow(slot);
    scheduleRefresh();
}

void ImageListBinding::follow(Slot slot)
{
    VelmoraImageList *list = m_lists[slot];
    if (!list || m_followed[slot])
        return;
    ++followers()[list];
    m_followed[slot] = list;
    m_following[slot] = connect(list, &VelmoraImageList::imagesChanged, this, &ImageListBinding::scheduleRefresh);
    // Gone, it was forgotten with it; another list may take its address.
    m_gone[slot] = connect(list, &QObject::destroyed, this, [this, slot] { m_followed[slot] = nullptr; });
}

void ImageListBinding::unfollow(Slot slot)
{
    if (!m_followed[slot])
        return;
    disconnect(m_following[slot]);
    disconnect(m_gone[slot]);
    // Only addresses are compared: this may run while the list is being
    // deleted (a control bound to it is its child), when it is a list no
    // more; it has been forgotten by then.
    auto &counts = followers();
    if (auto it = counts.find(m_followed[slot]); it != counts.end() && --*it <= 0)
        counts.erase(it);
    m_followed[slot] = nullptr;
}

void ImageListBinding::resolve()
{
    if (!m_control)
        return;
    for (Slot slot : {Images, SmallImages}) {
        const char *name = propertyName(m_control, slot);
        const QString wanted = name ? m_control->property(name).toString() : QString();
        VelmoraImageList *found = nullptr;
        if (m_lists[slot] && !wanted.isEmpty() && m_lists[slot]->objectName() == wanted)
            found = m_lists[slot];
        else if (!wanted.isEmpty())
            found = m_control->window()->findChild<VelmoraImageList *>(wanted);
        setList(slot, found);
    }
}

void ImageListBinding::suspend()
{
    m_suspended = true;
    unfollow(Images);
    unfollow(SmallImages);
}

void ImageListBinding::resume()
{
    if (!m_suspended)
        return;
    m_suspended = false;
    follow(Images);
    follow(SmallImages);
    refresh();
}

void ImageListBinding::scheduleRefresh()
{
    // A list filled image by image announces every image; show them once.
    if (m_pending || m_suspended)
        return;
    m_pending = true;
    QMetaObject::invokeMethod(this, [this] {
        if (m_pending)
            refresh();
    }, Qt::QueuedConnection);
}

QIcon ImageListBinding::image(Slot slot, const QVariant &ref) const
{
    const VelmoraImageList *list = m_lists[slot];
    if (!list || !ref.isValid())
        return QIcon();
    const int index = isNumber(ref) ? ref.toInt() - 1 : list->indexOf(ref.toString());
    const QPixmap pm = list->pixmap(index);
    return pm.isNull() ? QIcon() : QIcon(pm);
}

void ImageListBinding::refreshAction(QAction *action)
{
    if (!action->property(WatchedProperty).toBool()) {
        action->setProperty(WatchedProperty, true);
        action->installEventFilter(this);
    }
    const QVariant ref = action->property(ImageProperty);
    if (ref.isValid())
        action->setIcon(image(Images, ref));
}

void ImageListBinding::refresh()
{
    m_pending = false;
    QWidget *c = m_control;
    if (!c || m_suspended || m_refreshing)
        return;
    m_refreshing = true;
    const QSize size = m_lists[Images] ? m_lists[Images]->imageSize() : QSize();
    if (auto *bar = qobject_cast<QToolBar *>(c)) {
        if (size.isValid())
            setIconSize(c, size);
        for (QAction *a : bar->actions())
            refreshAction(a);
    } else if (auto *button = qobject_cast<QToolButton *>(c)) {
        if (size.isValid())
            setIconSize(c, size);
        if (QAction *a = button->defaultAction())
            refreshAction(a);
        else if (const QVariant ref = button->property(ImageProperty); ref.isValid())
            button->setIcon(image(Images, ref));
    } else if (auto *tree = qobject_cast<QTreeWidget *>(c)) {
        if (size.isValid())
            setIconSize(c, size);
        for (QTreeWidgetItemIterator it(tree); *it; ++it)
            if (const QVariant ref = (*it)->data(0, VelmoraImageList::ImageRole); ref.isValid())
                (*it)->setIcon(0, image(Images, ref));
    } else if (auto *list = qobject_cast<QListWidget *>(c)) {
        const bool icons = list->viewMode() == QListView::IconMode;
        const Slot slot = icons ? Images : SmallImages;
        const int role = icons ? VelmoraImageList::ImageRole : VelmoraImageList::SmallImageRole;
        const int other = icons ? VelmoraImageList::SmallImageRole : VelmoraImageList::ImageRole;
        if (m_lists[slot])
            setIconSize(c, m_lists[slot]->imageSize());
        for (int i = 0; i < list->count(); ++i) {
            QListWidgetItem *item = list->item(i);
            QVariant ref = item->data(role);
            if (!ref.isValid())
                ref = item->data(other);
            if (ref.isValid())
                item->setIcon(image(slot, ref));
        }
    } else if (auto *tabs = qobject_cast<QTabWidget *>(c)) {
        if (size.isValid())
            setIconSize(c, size);
        for (int i = 0; i < tabs->count(); ++i)
            if (QWidget *page = tabs->widget(i))
                if (const QVariant ref = page->property(ImageProperty); ref.isValid())
                    tabs->setTabIcon(i, image(Images, ref));
    } else if (auto *bar = qobject_cast<QTabBar *>(c)) {
        if (size.isValid())
            setIconSize(c, size);
        for (int i = 0; i < bar->count(); ++i)
            if (const QVariant ref = bar->tabData(i); ref.isValid())
                bar->setTabIcon(i, image(Images, ref));
    }
    m_refreshing = false;
}

void ImageListBinding::watchModel()
{
    auto *view = qobject_cast<QAbstractItemView *>(m_control.data());
    if (!view || !(qobject_cast<QTreeWidget *>(view) || qobject_cast<QListWidget *>(view)))
        return;
    QAbstractItemModel *model = view->model();
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &, const QModelIndex &, const QList<int> &roles) {
                if (!m_refreshing
                    && (roles.isEmpty() || roles.contains(VelmoraImageList::ImageRole)
                        || roles.contains(VelmoraImageList::SmallImageRole)))
                    scheduleRefresh();
            });
    connect(model, &QAbstractItemModel::rowsInserted, this, &ImageListBinding::scheduleRefresh);
}

void ImageListBinding::applyItemImages()
{
    // Designer's way of giving items references: once, to items that have
    // none of their own.
    const QStringList refs = m_control->property(ItemImagesProperty).toStringList();
    if (refs.isEmpty())
        return;
    const auto ref = [&](int i) -> QVariant {
        if (i >= refs.size() || refs.at(i).isEmpty())
            return QVariant();
        bool number = false;
        const int n = refs.at(i).toInt(&number);
        return number ? QVariant(n) : QVariant(refs.at(i));
    };
    int i = 0;
    if (auto *tree = qobject_cast<QTreeWidget *>(m_control.data())) {
        for (QTreeWidgetItemIterator it(tree); *it; ++it, ++i)
            if (!(*it)->data(0, VelmoraImageList::ImageRole).isValid() && ref(i).isValid())
                (*it)->setData(0, VelmoraImageList::ImageRole, ref(i));
    } else if (auto *list = qobject_cast<QListWidget *>(m_control.data())) {
        for (; i < list->count(); ++i)
            if (!list->item(i)->data(VelmoraImageList::ImageRole).isValid() && ref(i).isValid())
                list->item(i)->setData(VelmoraImageList::ImageRole, ref(i));
    } else if (auto *tabs = qobject_cast<QTabWidget *>(m_control.data())) {
        for (; i < tabs->count(); ++i)
            if (QWidget *page = tabs->widget(i); page && !page->property(ImageProperty).isValid() && ref(i).isValid())
                page->setProperty(ImageProperty, ref(i));
    } else if (auto *bar = qobject_cast<QTabBar *>(m_control.data())) {
        for (; i < bar->count(); ++i)
            if (!bar->tabData(i).isValid() && ref(i).isValid())
                bar->setTabData(i, ref(i));
    }
}

bool ImageListBinding::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DynamicPropertyChange: {
        const QByteArray name = static_cast<QDynamicPropertyChangeEvent *>(event)->propertyName();
        if (watched == m_control) {
            if (m_assigning)
                break;
            if (name == "ImageList" || name == "Icons" || name == "SmallIcons")
                resolve();
            else if (name == ImageProperty)
                scheduleRefresh();
        } else if (name == ImageProperty) {
            if (auto *action = qobject_cast<QAction *>(watched); action && !m_suspended)
                refreshAction(action);
        }
        break;
    }
    case QEvent::ActionAdded:
        if (watched == m_control)
            scheduleRefresh();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace velmora::widgets
