// An operation storm driven by the input: the preview's sample form or a
// small form built here, a second form beside it, and operations on them
// (resizes from 0x0 to 4000x4000, widgets added, deleted, moved to another
// parent, renamed, hidden, fonts, style sheets, Reset, per-widget options,
// PrintSize and its Cancel, every setting, the component deleted, made anew
// or moved to the other form, the form closed or made anew). Operations may
// be armed on the component's signals (ResizeStarted, ResizeDone,
// PrintCancelled, Error, PropertyChanged) or scheduled on a timer: they then
// run inside the pass, the print dialog or a wipe.
//
// Input: byte 0 bit 0 chooses the sample form; then operations, each an
// operation byte and its arguments (see Storm::step). Nothing may crash,
// leak or hang; an effect time out of range must be held in 0 to 10 s.
#include "FuzzCommon.h"

#include "PreviewSession.h"
#include "control/VelmoraControl.h"
#include "widgets/VelmoraImageList.h"
#include "widgets/VelmoraLine.h"
#include "widgets/VelmoraShape.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QApplication>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

namespace {

constexpr int MostSteps = 40;      // operations per input, not counting re-entries
constexpr int MostReentries = 32;  // operations run from signals and timers
constexpr int MostDepth = 6;       // of operations run from inside others
constexpr int MostWaitMs = 200;    // event loop time an input may ask for
constexpr double ShortEffect = 0.05; // seconds: the longest wipe an input plays to its end

QWidget *smallForm()
{
    auto *form = new QWidget;
    form->setObjectName(QStringLiteral("frmSmall"));
    form->setWindowTitle(QStringLiteral("Small"));
    form->resize(400, 300);
    const auto place = [](QWidget *w, const char *name, int x, int y, int width, int height) {
        w->setObjectName(QLatin1String(name));
        w->setGeometry(x, y, width, height);
        return w;
    };
    place(new QLabel(QStringLiteral("Title"), form), "lblTitle", 10, 10, 200, 24);
    place(new QPushButton(QStringLiteral("OK"), form), "cmdOk", 300, 260, 80, 30);
    place(new QLineEdit(form), "txtName", 10, 40, 180, 24);
    auto *group = static_cast<QGroupBox *>(place(new QGroupBox(QStringLiteral("Options"), form), "fraOptions", 10, 80, 180, 90));
    place(new QCheckBox(QStringLiteral("One"), group), "chkOne", 10, 30, 120, 24);
    auto *tabs = static_cast<QTabWidget *>(place(new QTabWidget(form), "tabPages", 200, 40, 190, 110));
    auto *page = new QWidget;
    page->setObjectName(QStringLiteral("pagGeneral"));
    tabs->addTab(page, QStringLiteral("General"));
    place(new QComboBox(page), "cboKind", 10, 10, 120, 24);
    auto *line = static_cast<VelmoraLine *>(place(new VelmoraLine(form), "linRule", 0, 0, 1, 1));
    line->setPoints(QPoint(10, 180), QPoint(390, 180));
    place(new VelmoraShape(form), "shpBadge", 330, 190, 50, 40);
    auto *images = static_cast<VelmoraImageList *>(place(new VelmoraImageList(form), "imlIcons", 0, 0, 32, 32));
    for (const auto &[key, colour] : {std::pair{"one", Qt::red}, std::pair{"two", Qt::blue}}) {
        QPixmap pm(16, 16);
        pm.fill(colour);
        images->add(pm, QLatin1String(key));
    }
    auto *tree = static_cast<QTreeWidget *>(place(new QTreeWidget(form), "tvwFiles", 10, 190, 300, 100));
    for (const QVariant &ref : {QVariant(QStringLiteral("one")), QVariant(2), QVariant(QStringLiteral("none"))})
        (new QTreeWidgetItem(tree, {ref.toString()}))->setData(0, VelmoraImageList::ImageRole, ref);
    VelmoraImageList::setImageList(tree, images);
    return form;
}

QWidget *otherForm()
{
    auto *form = new QWidget;
    form->setObjectName(QStringLiteral("frmOther"));
    form->setGeometry(500, 100, 300, 200);
    auto *frame = new QGroupBox(QStringLiteral("Frame"), form);
    frame->setObjectName(QStringLiteral("fraOther"));
    frame->setGeometry(10, 10, 200, 120);
    (new QLabel(QStringLiteral("Other"), frame))->setGeometry(10, 30, 100, 20);
    return form;
}

// 0 to 10 s (most of them too short to see), or a value out of range.
double effectTime(fuzz::Bytes &in)
{
    const int b = in.u8();
    static const double odd[] = {10, 1e9, -1, std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN(), 9.9995, 1e-300, -1e308};
    return b < 240 ? b * 0.0002 : odd[(b - 240) % 8];
}

// Twips of a size limit: none, negative, the extremes, or up to 4000 pixels.
int limitTwips(fuzz::Bytes &in)
{
    const int b = in.u8();
    static const int odd[] = {0, -1, 1, std::numeric_limits<int>::min(), -60000, 15};
    return b < 200 ? int(in.u16() % 4001) * 15 : odd[(b - 200) % 6];
}

class Storm {
public:
    explicit Storm(fuzz::Bytes &in)
        : m_in(in)
    {
        m_sample = in.u8() & 1;
        m_watchdog.setInterval(20);
        // A wipe of more than a moment is there to be cut short: its window
        // goes, and the wipe must end with it.
        QObject::connect(&m_watchdog, &QTimer::timeout, [this] {
            for (QPointer<QWidget> *w : {&m_root, &m_other})
                if (*w && !(*w)->mask().isEmpty())
                    delete w->data();
        });
        newForm();
        m_other = otherForm();
        m_other->show();
    }

    void run()
    {
        for (int i = 0; i < MostSteps && !m_in.atEnd(); ++i)
            step(m_in);
    }

private:
    fuzz::Bytes &m_in;
    bool m_sample = false;
    std::unique_ptr<PreviewSession> m_session;
    QPointer<QWidget> m_root, m_form, m_other;
    QPointer<VelmoraControl> m_velmora;
    QTimer m_watchdog;
    QObject m_timers; // what the scheduled operations run on; goes with the storm
    QByteArray m_armed[5];
    int m_depth = 0, m_reentries = 0, m_waited = 0;

    void newForm()
    {
        if (m_sample) {
            m_session = std::make_unique<PreviewSession>();
            QString error;
            if (!m_session->load(QString(), &error))
                return;
            m_root = m_session->root();
            m_form = m_session->form();
            m_velmora = m_session->control();
        } else {
            m_root = m_form = smallForm();
            m_root->setAttribute(Qt::WA_DeleteOnClose);
            m_velmora = new VelmoraControl(m_form);
        }
        adopt();
        m_root->show();
        fuzz::settle();
    }

    void adopt()
    {
        VelmoraControl *v = m_velmora;
        v->setResizeOnMouseUp(false);
        v->setFormOpenTime(0);
        v->setFormCloseTime(0);
        QObject::connect(v, &VelmoraControl::ResizeStarted, v, [this] { reenter(m_armed[0]); });
        QObject::connect(v, &VelmoraControl::ResizeDone, v, [this] { reenter(m_armed[1]); });
        QObject::connect(v, &VelmoraControl::PrintCancelled, v, [this] { reenter(m_armed[2]); });
        QObject::connect(v, &VelmoraControl::Error, v, [this] { reenter(m_armed[3]); });
        QObject::connect(v, &VelmoraControl::PropertyChanged, v, [this] { reenter(m_armed[4]); });
    }

    // Runs the operation `bytes` from inside a signal or a timer.
    void reenter(QByteArray bytes) // a copy: the operation may arm the signal anew
    {
        if (m_reentries >= MostReentries || bytes.isEmpty())
            return;
        // What a slot asks for while the component is busy runs after it;
        // a signal that comes again from inside its own slot, deeper and
        // deeper, would do so for ever in an application.
        FUZZ_CHECK(m_depth < MostDepth, "operations run from signals and timers nest %d deep", m_depth);
        if (m_depth >= MostDepth)
            return;
        ++m_reentries;
        ++m_depth;
        fuzz::Bytes in(reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size()));
        step(in);
        --m_depth;
    }

    QList<QWidget *> widgets() const
    {
        QList<QWidget *> out;
        for (QWidget *root : {m_root.data(), m_other.data()}) {
            if (!root)
                continue;
            for (QWidget *w : root->findChildren<QWidget *>()) {
                // What a form's author places: children of forms, plain
                // containers, tab pages and main windows. Qt's own parts
                // (a tab bar's scroll buttons, a combo box's popup) are
                // Qt's to delete.
                const QWidget *parent = w->parentWidget();
                const QByteArray parentClass = parent->metaObject()->className();
                const bool placed = parentClass == "QWidget" || parentClass == "QGroupBox" || parentClass == "QFrame"
                    || parentClass == "QMainWindow" || parent->objectName() == QLatin1String("qt_tabwidget_stackedwidget");
                if (placed && !w->objectName().isEmpty() && !w->objectName().startsWith(QLatin1String("qt_"))
                    && !w->isWindow() && !qobject_cast<VelmoraControl *>(w))
                    out.append(w);
            }
        }
        return out;
    }
    QWidget *widget(fuzz::Bytes &in) const
    {
        const QList<QWidget *> all = widgets();
        const int i = in.u8();
        return all.isEmpty() ? nullptr : all[i % all.size()];
    }
    // A parent for a widget: the forms, their containers, or none.
    QWidget *container(fuzz::Bytes &in) const
    {
        QList<QWidget *> all{m_form, m_other};
        for (QWidget *w : widgets())
            if (qobject_cast<QGroupBox *>(w) || w->objectName().startsWith(QLatin1String("pag"))
                || w->objectName().endsWith(QLatin1String("Page")))
                all.append(w);
        all.append(nullptr);
        return all[in.u8() % all.size()];
    }

    void setting(fuzz::Bytes &in);
    void step(fuzz::Bytes &in);
};

void Storm::setting(fuzz::Bytes &in)
{
    VelmoraControl *v = m_velmora;
    const int which = in.u8() % 28;
    const bool on = in.flag();
    switch (which) {
    case 0: v->setScaleControls(on); break;
    case 1: v->setScaleFonts(on); break;
    case 2: v->setScaleBorders(on); break;
    case 3: v->setScaleGraphics(on); break;
    case 4: v->setResizeOnMouseUp(on); break;
    case 5: v->setGradientFill(on); break;
    case 6: v->setGradientColour(int(in.u32())); break;
    case 7: v->setCenterX(on); break;
    case 8: v->setCenterY(on); break;
    case 9: v->setScaleX(int(qint8(in.u8()))); break;
    case 10: v->setScaleY(int(qint8(in.u8()))); break;
    case 11: v->setStayOnTop(on); break;
    case 12: v->setMinWidth(limitTwips(in)); break;
    case 13: v->setMinHeight(limitTwips(in)); break;
    case 14: v->setMaxWidth(on ? std::numeric_limits<int>::max() : limitTwips(in)); break;
    case 15: v->setMaxHeight(on ? std::numeric_limits<int>::max() : limitTwips(in)); break;
    case 16: v->setFormOpen(VelmoraControl::FormOpenEffects(in.u8() % 10 - 1)); break;
    case 17: v->setFormClose(VelmoraControl::FormCloseEffects(in.u8() % 10 - 1)); break;
    case 18:
    case 19: {
        const double t = effectTime(in);
        which == 18 ? v->setFormOpenTime(t) : v->setFormCloseTime(t);
        const double held = which == 18 ? v->FormOpenTime() : v->FormCloseTime();
        FUZZ_CHECK(held >= 0 && held <= 10, "an effect time of %g s is held as %g s", t, held);
        if (held > ShortEffect)
            m_watchdog.start();
        break;
    }
    case 20: v->setReplaceFontsWith(on ? QStringLiteral("DejaVu Serif") : QStringLiteral("<none>")); break;
    case 21: v->setSaveWindowState(on); break;
    case 22: v->setWindowName(on ? QStringLiteral("Storm") : QString()); break;
    case 23: v->setKeepOnScreen(on); break;
    case 24: v->setControlFlagCount(int(in.u16() % 40) - 4); break;
    case 25: {
        static const char *const keys[] = {"lblTitle", "cmdOk", "tvwFiles", "imlIcons", "", "nameEdit", "filesTree",
                                           "x(1)"};
        v->setControlFlagControlKey(int(in.u8() % 40) - 4, QLatin1String(keys[in.u8() % 8]));
        break;
    }
    case 26: {
        // One of the ten switches of an entry, by its Q_PROPERTY-like name.
        const int index = int(in.u8() % 40) - 4, f = in.u8() % 10;
        using Setter = void (VelmoraControl::*)(int, bool, bool *);
        static const Setter setters[] = {
            &VelmoraControl::setControlFlagDontScaleControl, &VelmoraControl::setControlFlagDontScaleFont,
            &VelmoraControl::setControlFlagDontScaleBorder, &VelmoraControl::setControlFlagDontScaleGraphic,
            &VelmoraControl::setControlFlagDontScaleLeft, &VelmoraControl::setControlFlagDontScaleTop,
            &VelmoraControl::setControlFlagDontScaleWidth, &VelmoraControl::setControlFlagDontScaleHeight,
            &VelmoraControl::setControlFlagDontScaleRight, &VelmoraControl::setControlFlagDontScaleBottom};
        (v->*setters[f])(index, on, nullptr);
        break;
    }
    case 27: {
        static const double sizes[] = {0, 3000, 6000, 9000, 15000};
        const double s = sizes[in.u8() % 5];
        on ? v->setDesignFormWidth(s) : v->setDesignFormHeight(s);
        break;
    }
    }
}

void Storm::step(fuzz::Bytes &in)
{
    const int op = in.u8() % 26;
    if (fuzz::verbose())
        qDebug("storm: operation %d (depth %d)%s", op, m_depth, m_velmora ? "" : ", no component");
    if (!m_root && op != 20)
        return; // nothing to act on until a form is made anew
    switch (op) {
    case 0:
    case 1: { // resize the window, 1x1 to 4000x4000
        // Not to no area: Qt 6.4 offscreen paints such a window from an
        // expose sent for its earlier size into a backing store of none and
        // crashes in the style, with no component on the window at all.
        // Forms collapsing to nothing are the suite's (tst_formbinding).
        const int w = 1 + in.u16() % 4000, h = 1 + in.u16() % 4000;
        m_root->resize(w, h);
        break;
    }
    case 2: // back to where it started
        m_root->setWindowState(Qt::WindowNoState);
        m_root->resize(m_sample ? QSize(960, 520) : QSize(400, 300));
        break;
    case 3: {
        static const Qt::WindowStates states[] = {Qt::WindowNoState, Qt::WindowMinimized, Qt::WindowMaximized,
                                                  Qt::WindowFullScreen};
        m_root->setWindowState(states[in.u8() % 4]);
        break;
    }
    case 4: { // a widget added
        QWidget *parent = container(in);
        QWidget *w = in.flag() ? static_cast<QWidget *>(new QLabel(QStringLiteral("added"), parent))
                               : new QPushButton(QStringLiteral("added"), parent);
        w->setObjectName(QStringLiteral("added%1").arg(in.u8() % 4));
        w->setGeometry(in.u8() * 2, in.u8() * 2, 1 + in.u8(), 1 + in.u8() / 4);
        w->show();
        break;
    }
    case 5: // a widget deleted: an image list, a container, anything named
        delete widget(in);
        break;
    case 6: { // a widget moved to another parent (never into itself)
        QWidget *w = widget(in), *parent = container(in);
        if (w && w != parent && !w->isAncestorOf(parent)) {
            w->setParent(parent);
            w->setVisible(parent != nullptr);
        }
        break;
    }
    case 7:
        if (QWidget *w = widget(in)) {
            static const char *const names[] = {"renamed0", "renamed1", "lblTitle", "", "imlIcons", "x(1)"};
            w->setObjectName(QLatin1String(names[in.u8() % 6]));
        }
        break;
    case 8:
        if (QWidget *w = widget(in))
            w->setVisible(!w->isVisible());
        break;
    case 9: { // a font on a widget or the form
        QWidget *w = in.flag() ? m_form.data() : widget(in);
        const int size = in.u8();
        if (w) {
            QFont f = w->font();
            size < 200 ? f.setPointSizeF(1 + size % 72 + (size & 1) * 0.5) : f.setPixelSize(1 + size % 50);
            w->setFont(f);
        }
        break;
    }
    case 10: { // a style sheet
        static const char *const sheets[] = {"", "QLabel { font: 12pt; }", "padding: 3px; border: 2px solid red",
                                             "QPushButton { min-width: 120px; }", "font-size: 20px",
                                             "c:(());.", "* { font: bold 9pt; margin: 1px }",
                                             "QGroupBox { border: 3px solid; margin-top: 12px; }"};
        QWidget *w = in.flag() ? m_root.data() : widget(in);
        if (w)
            w->setStyleSheet(QLatin1String(sheets[in.u8() % 8]));
        break;
    }
    case 11:
        if (m_velmora)
            m_velmora->Reset();
        break;
    case 12:
        if (QWidget *w = widget(in); w && m_velmora)
            m_velmora->setOptions(w, VelmoraControl::Options(in.u16() & 0x3ff));
        break;
    case 13: { // PrintSize(true): up to 4000 pixels a side, in any of the units
        const int mode = int(in.u8() % 10) - 1;
        const double pixels[2] = {double(in.u16() % 4001), double(in.u16() % 4001)};
        static const double perPixel[] = {1, 15, 0.75, 1, 1 / 8.0, 1 / 96.0, 25.4 / 96, 2.54 / 96, 1, 1};
        const int flags = in.u8();
        if (m_velmora)
            m_velmora->PrintSize(true, pixels[0] * perPixel[mode + 1], pixels[1] * perPixel[mode + 1], mode,
                                 flags & 1, flags & 2, flags & 4);
        break;
    }
    case 14:
        if (m_velmora)
            m_velmora->PrintSize(false);
        break;
    case 15: // the "Printing..." window's Cancel
        for (QWidget *w : QApplication::topLevelWidgets())
            if (w->objectName() == QLatin1String("frmDialog") && w->isVisible())
                if (auto *cancel = w->findChild<QPushButton *>(QStringLiteral("cmdCancel")))
                    cancel->click();
        break;
    case 16:
        if (m_velmora)
            setting(in);
        break;
    case 17:
        delete m_velmora.data();
        break;
    case 18: // a component made anew, on the form or the other form
        if (!m_velmora) {
            QWidget *on = in.flag() && m_other ? m_other.data() : m_form.data();
            if (on) {
                m_velmora = new VelmoraControl(on);
                adopt();
            }
        }
        break;
    case 19: // the component moved to another form, or a container
        if (m_velmora)
            m_velmora->setParent(container(in));
        break;
    case 20: // the form closed (and deleted), or made anew once it is gone
        if (m_root)
            m_root->close();
        else
            newForm();
        break;
    case 21: { // operations armed on a signal: they run each time it comes
        const int s = in.u8() % 5;
        m_armed[s] = in.take(1 + in.u8() % 8);
        break;
    }
    case 22: { // an operation on a timer: it runs inside whatever is going on then
        const int ms = in.u8() % 50;
        const QByteArray bytes = in.take(1 + in.u8() % 8);
        QTimer::singleShot(ms, &m_timers, [this, bytes] { reenter(bytes); });
        break;
    }
    case 23: {
        const int ms = in.u8() % 50;
        if (m_waited + ms <= MostWaitMs) {
            m_waited += ms;
            fuzz::wait(ms);
        }
        break;
    }
    case 24:
        fuzz::settle();
        break;
    case 25: // the other form, made anew once it is gone
        if (!m_other) {
            m_other = otherForm();
            m_other->show();
        }
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Windows one input saved must not place the next one's.
    QFile::remove(fuzz::settingsFile());
    fuzz::Bytes in(data, size);
    Storm storm(in);
    storm.run();
    fuzz::settle();
    // Before the storm goes: deleting a form may still signal to it.
    fuzz::closeAll();
    return 0;
}
