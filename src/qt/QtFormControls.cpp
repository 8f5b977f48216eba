// Which widgets and menus of a form are its controls, and their adapters.
#include "qt/QtForm.h"

#include "qt/QtControl.h"
#include "qt/QtMenuItem.h"

#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QAction>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QSizeGrip>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolBox>

#include <unordered_map>

namespace velmora::qt {

namespace {

bool isQtInternal(const QObject *o)
{
    // A status bar's size grip is its own, unnamed.
    return o->objectName().startsWith(QLatin1String("qt_")) || qobject_cast<const QSizeGrip *>(o);
}

// Widgets whose children are their own machinery, not the developer's.
bool isComposite(const QWidget *w)
{
    return qobject_cast<const QAbstractScrollArea *>(w) || qobject_cast<const QAbstractSpinBox *>(w)
        || qobject_cast<const QComboBox *>(w) || qobject_cast<const QCalendarWidget *>(w)
        || qobject_cast<const QDialogButtonBox *>(w) || qobject_cast<const QLineEdit *>(w)
        || qobject_cast<const QTabBar *>(w) || qobject_cast<const QMenuBar *>(w)
        || qobject_cast<const QToolBar *>(w) // its buttons show its actions
        || qobject_cast<const QStatusBar *>(w) // what it shows takes its font
        || w->inherits("VelmoraControl");
}

QMenuBar *menuBarOf(QWidget *form)
{
    QWidget *top = form->window();
    if (auto *holder = qobject_cast<QMainWindow *>(form->parentWidget()))
        if (auto *bar = qobject_cast<QMenuBar *>(holder->menuWidget()))
            return bar;
    if (auto *main = qobject_cast<QMainWindow *>(top))
        if (auto *bar = qobject_cast<QMenuBar *>(main->menuWidget()))
            return bar;
    for (QWidget *w : {form, top})
        for (QObject *child : w->children())
            if (auto *bar = qobject_cast<QMenuBar *>(child))
                return bar;
    return nullptr;
}

void collectActions(const QList<QAction *> &actions, std::vector<QObject *> &out)
{
    for (QAction *a : actions) {
        if (a->isSeparator())
            continue;
        if (QMenu *menu = a->menu()) {
            if (!menu->objectName().isEmpty() && !isQtInternal(menu))
                out.push_back(menu);
            collectActions(menu->actions(), out);
        } else if (!a->objectName().isEmpty() && !isQtInternal(a)) {
            out.push_back(a);
        }
    }
}

// The controls of an MDI parent are what the developer put on the main
// window around its area: not the area (its windows are forms of their
// own), nor the menu bar (its menus are), nor the tab bars the main window
// makes for tabbed docks.
bool onMdiParent(const QWidget *w)
{
    auto *main = static_cast<const QMainWindow *>(w->parentWidget());
    if (w == main->centralWidget() || w == main->menuWidget())
        return false;
    return !(qobject_cast<const QTabBar *>(w) && w->objectName().isEmpty());
}

} // namespace

namespace {

// How the walk treats the children of a widget of some class; learnt once
// per class, since every pass walks every widget.
enum class Inside { Controls, TabPages, ToolBoxPages, ScrollContent, Machinery };

Inside insideOf(const QWidget *w)
{
    static std::unordered_map<const QMetaObject *, Inside> known;
    const QMetaObject *mo = w->metaObject();
    if (auto it = known.find(mo); it != known.end())
        return it->second;
    Inside inside = Inside::Controls;
    if (qobject_cast<const QTabWidget *>(w))
        inside = Inside::TabPages;
    else if (qobject_cast<const QToolBox *>(w))
        inside = Inside::ToolBoxPages;
    else if (qobject_cast<const QScrollArea *>(w))
        inside = Inside::ScrollContent;
    else if (isComposite(w))
        inside = Inside::Machinery;
    known.emplace(mo, inside);
    return inside;
}

} // namespace

void QtForm::collect(QWidget *parent, std::vector<QWidget *> &out) const
{
    for (QObject *child : parent->children()) {
        if (!child->isWidgetType())
            continue;
        auto *w = static_cast<QWidget *>(child);
        if (w->isWindow() || isQtInternal(w))
            continue;
        if (parent == m_form && m_mdiParent && !onMdiParent(w))
            continue;
        out.push_back(w);
        // Pages of tab widgets and tool boxes are not controls; what they
        // hold is.
        switch (insideOf(w)) {
        case Inside::TabPages: {
            auto *tabs = static_cast<QTabWidget *>(w);
            for (int i = 0; i < tabs->count(); ++i)
                if (QWidget *page = tabs->widget(i))
                    collect(page, out);
            break;
        }
        case Inside::ToolBoxPages: {
            auto *box = static_cast<QToolBox *>(w);
            for (int i = 0; i < box->count(); ++i)
                if (QWidget *page = box->widget(i))
                    collect(page, out);
            break;
        }
        case Inside::ScrollContent:
            if (QWidget *content = static_cast<QScrollArea *>(w)->widget(); content && !isQtInternal(content)) {
                out.push_back(content);
                collect(content, out);
            }
            break;
        case Inside::Controls:
            collect(w, out);
            break;
        case Inside::Machinery:
            break;
        }
    }
}

void QtForm::collectForm(std::vector<QWidget *> &out) const
{
    // A form that is itself a tab widget or tool box: its pages are what
    // holds the developer's widgets. Each page is a control (its parent
    // places it) and the container of what it holds; the tab bar is one
    // too, so that its font and icons follow the form.
    QWidget *form = m_form;
    const auto pageAndChildren = [&](QWidget *page) {
        if (!page || isQtInternal(page))
            return;
        out.push_back(page);
        collect(page, out);
    };
    switch (m_mdiParent ? Inside::Controls : insideOf(form)) {
    case Inside::TabPages: {
        auto *tabs = static_cast<QTabWidget *>(form);
        out.push_back(tabs->tabBar());
        for (int i = 0; i < tabs->count(); ++i)
            pageAndChildren(tabs->widget(i));
        break;
    }
    case Inside::ToolBoxPages: {
        auto *box = static_cast<QToolBox *>(form);
        // Its page buttons (its layout places them) show their titles in
        // the form's font: they follow the form as a tab widget's bar does.
        for (QObject *child : box->children())
            if (child->objectName() == QLatin1String("qt_toolbox_toolboxbutton"))
                out.push_back(static_cast<QWidget *>(child));
        for (int i = 0; i < box->count(); ++i)
            pageAndChildren(box->widget(i));
        // Its other children: not the scroll areas that hold its pages.
        for (QObject *child : box->children())
            if (auto *w = qobject_cast<QWidget *>(child); w && !w->isWindow() && !isQtInternal(w)
                && !qobject_cast<QScrollArea *>(w)) {
                out.push_back(w);
                if (insideOf(w) == Inside::Controls)
                    collect(w, out);
            }
        return;
    }
    case Inside::ScrollContent:
        pageAndChildren(static_cast<QScrollArea *>(form)->widget());
        break;
    case Inside::Controls:
    case Inside::Machinery:
        break;
    }
    collect(form, out);
}

void QtForm::collectMenus(std::vector<QObject *> &out) const
{
    if (QMenuBar *bar = menuBarOf(m_form))
        collectActions(bar->actions(), out);
}

QString QtForm::uniqueName(QObject *object, const QString &wanted)
{
    // Keys must be unique on a form; a form built in code may repeat a name
    // or leave widgets unnamed.
    const QVariant indexProperty = object->property("Index");
    bool indexed = false;
    const int index = indexProperty.toInt(&indexed);
    const QString suffix = indexed && index >= 0 ? QStringLiteral("(%1)").arg(index) : QString();
    const QString className = QString::fromLatin1(object->metaObject()->className());
    const QString base = wanted.isEmpty()
        ? className + QLatin1Char('#') + QString::number(++m_unnamedCount[className])
        : wanted;
    // Numbering resumes where the last clash of this name stopped, so a
    // form with thousands of widgets of one name is named in linear time.
    const auto isFree = [&](const QString &key) {
        auto it = m_keysInUse.constFind(key);
        return it == m_keysInUse.cend() || !it.value() || it.value() == object;
    };
    QString name = base;
    if (!isFree(base + suffix)) {
        int &next = m_nextNumber[base + suffix];
        for (int n = qMax(2, next);; ++n) {
            name = base + QLatin1Char('#') + QString::number(n);
            if (isFree(name + suffix)) {
                next = n + 1;
                break;
            }
        }
    }
    // Without a suffix the key shares the objectName's text.
    m_keysInUse.insert(suffix.isEmpty() ? name : name + suffix, object);
    return name == object->objectName() ? QString() : name;
}

HostObjectPtr QtForm::adapterFor(QObject *object)
{
    if (!object)
        return nullptr;
    if (auto it = m_adapters.constFind(object); it != m_adapters.cend() && it->alive())
        return it->adapter;
    HostObjectPtr adapter;
    if (auto *menu = qobject_cast<QMenu *>(object)) {
        adapter = std::make_shared<QtMenuItem>(menu, nullptr);
    } else if (auto *action = qobject_cast<QAction *>(object)) {
        adapter = std::make_shared<QtMenuItem>(nullptr, action);
    } else if (auto *w = qobject_cast<QWidget *>(object)) {
        adapter = std::make_shared<QtControl>(weak_from_this(), w, uniqueName(w, w->objectName()));
    }
    m_adapters.insert(object, Adapter{QPointer<QObject>(object), adapter});
    return adapter;
}

std::vector<HostObjectPtr> QtForm::controls()
{
    std::vector<HostObjectPtr> result;
    if (!m_form)
        return result;
    // Forget adapters of objects that are gone, so that a new object at a
    // recycled address is never mistaken for an old one.
    for (auto it = m_adapters.begin(); it != m_adapters.end();)
        it = it->alive() ? std::next(it) : m_adapters.erase(it);

    std::vector<QWidget *> widgets;
    widgets.reserve(m_adapters.size());
    collectForm(widgets);
    // A main window's toolbars and status bar belong to the form in its
    // central area, as its menus do; the main window places them.
    // (Its parent, not its window: a main window may itself sit in an MDI area.)
    if (auto *main = qobject_cast<QMainWindow *>(m_form->parentWidget()); main && main->centralWidget() == m_form.data())
        for (QObject *child : main->children())
            if ((qobject_cast<QToolBar *>(child) || qobject_cast<QStatusBar *>(child)) && !isQtInternal(child))
                widgets.push_back(static_cast<QWidget *>(child));
    std::vector<QObject *> menus;
    collectMenus(menus);
    result.reserve(widgets.size() + menus.size());
    // Only the controls are containers: an adapter made for some other
    // widget (a page whose size a sheet changed, a widget an option names)
    // must not come between a control and its container.
    for (auto &a : m_adapters)
        a.control = false;
    for (QWidget *w : widgets) {
        HostObjectPtr adapter = adapterFor(w);
        if (auto it = m_adapters.find(w); it != m_adapters.end())
            it->control = true;
        // Keys must stay unique when the application renames a widget.
        if (auto *ctl = dynamic_cast<QtControl *>(adapter.get()); ctl && ctl->renamed())
            ctl->rekey(uniqueName(w, w->objectName()));
        result.push_back(std::move(adapter));
    }
    for (QObject *m : menus)
        result.push_back(adapterFor(m));
    m_enumerated = true;
    return result;
}

HostObjectPtr QtForm::containerOf(QWidget *w)
{
    if (!m_enumerated)
        controls();
    for (QWidget *p = w ? w->parentWidget() : nullptr; p && p != m_form; p = p->parentWidget()) {
        auto it = m_adapters.constFind(p);
        if (it != m_adapters.cend() && it->alive() && it->control && dynamic_cast<QtControl *>(it->adapter.get()))
            return it->adapter;
    }
    return shared_from_this();
}

} // namespace velmora::qt
