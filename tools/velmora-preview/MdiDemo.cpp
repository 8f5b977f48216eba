#include "MdiDemo.h"

#include "control/VelmoraControl.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>

namespace {

// A small absolutely placed form, as forms built in code are.
QWidget *notesForm()
{
    auto *form = new QWidget;
    form->setWindowTitle(QStringLiteral("Notes"));
    form->resize(320, 220);
    auto *title = new QLabel(QStringLiteral("Notes"), form);
    title->setGeometry(12, 10, 200, 24);
    QFont big = title->font();
    big.setPointSize(13);
    big.setBold(true);
    title->setFont(big);
    (new QPlainTextEdit(form))->setGeometry(12, 40, 296, 130);
    (new QPushButton(QStringLiteral("Save"), form))->setGeometry(218, 180, 90, 28);
    auto *velmora = new VelmoraControl(form);
    velmora->setMdiChildWidth(360 * 15);
    velmora->setMdiChildHeight(260 * 15);
    return form;
}

QWidget *orderForm()
{
    auto *form = new QWidget;
    form->setWindowTitle(QStringLiteral("Order"));
    form->resize(300, 180);
    const char *labels[] = {"Customer:", "Product:", "Quantity:"};
    for (int i = 0; i < 3; ++i) {
        (new QLabel(QLatin1String(labels[i]), form))->setGeometry(12, 14 + i * 36, 80, 24);
        QWidget *field = i == 1 ? static_cast<QWidget *>(new QComboBox(form)) : new QLineEdit(form);
        field->setGeometry(96, 12 + i * 36, 190, 26);
    }
    (new QPushButton(QStringLiteral("Order"), form))->setGeometry(196, 132, 90, 30);
    auto *velmora = new VelmoraControl(form);
    velmora->setCenterX(true);
    return form;
}

} // namespace

MdiDemo::MdiDemo()
    : m_window(new QMainWindow)
{
    m_window->setObjectName(QStringLiteral("VelmoraMdiDemo"));
    m_window->setWindowTitle(QStringLiteral("Velmora MDI demo"));
    m_window->setAttribute(Qt::WA_DeleteOnClose);
    m_area = new QMdiArea;
    m_window->setCentralWidget(m_area);
    // The MDI parent's own controls, scaled by its own component.
    QToolBar *tools = m_window->addToolBar(QStringLiteral("Windows"));
    tools->setObjectName(QStringLiteral("tbWindows"));
    tools->addAction(QStringLiteral("Cascade"), m_area, &QMdiArea::cascadeSubWindows);
    tools->addAction(QStringLiteral("Tile"), m_area, &QMdiArea::tileSubWindows);
    auto *status = new QLabel(QStringLiteral("Three forms, four components"));
    status->setObjectName(QStringLiteral("lblStatus"));
    m_window->statusBar()->setObjectName(QStringLiteral("sbMain"));
    m_window->statusBar()->addWidget(status);
    new VelmoraControl(m_window);
    m_window->resize(1100, 760);
    // A form without a layout gives its subwindow no size of its own: each
    // starts at its designed size, title bar and borders around it.
    const auto add = [this](QWidget *form, const QPoint &at) {
        QMdiSubWindow *sub = m_area->addSubWindow(form);
        sub->setGeometry(QRect(at, form->size() + QSize(8, 30)));
    };
    QString error;
    if (m_sample.load(QString(), &error)) {
        QWidget *sample = m_sample.root();
        sample->setAttribute(Qt::WA_DeleteOnClose, false);
        add(sample, QPoint(0, 0));
    }
    add(notesForm(), QPoint(560, 360));
    add(orderForm(), QPoint(700, 40));
}

void MdiDemo::setResizeOnMouseUp(bool on)
{
    for (VelmoraControl *control : m_window->findChildren<VelmoraControl *>())
        control->setResizeOnMouseUp(on);
}

MdiDemo::~MdiDemo()
{
    delete m_window.data();
}

void MdiDemo::show()
{
    m_window->show();
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

void MdiDemo::resize(const QSize &size)
{
    // Each child keeps its share of the area.
    const QSize before = m_area->viewport()->size();
    m_window->resize(size);
    QCoreApplication::sendPostedEvents();
    const QSize after = m_area->viewport()->size();
    for (QMdiSubWindow *sub : m_area->subWindowList()) {
        const QRect g = sub->geometry();
        const double fx = double(after.width()) / qMax(1, before.width());
        const double fy = double(after.height()) / qMax(1, before.height());
        sub->setGeometry(QRect(qRound(g.x() * fx), qRound(g.y() * fy), qRound(g.width() * fx), qRound(g.height() * fy)));
    }
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

bool MdiDemo::screenshot(const QString &dir, QString *file) const
{
    QDir().mkpath(dir);
    const QString name = QDir(dir).filePath(
        QStringLiteral("VelmoraMdiDemo-%1x%2.png").arg(m_window->width()).arg(m_window->height()));
    if (file)
        *file = name;
    return m_window->grab().save(name);
}
