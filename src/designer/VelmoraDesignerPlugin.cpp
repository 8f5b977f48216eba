#include "VelmoraDesignerPlugin.h"

#include "FormWatch.h"
#include "DesignerIcons.h"
#include "VelmoraTaskMenu.h"
#include "VelmoraWidgetPlugin.h"

#include "control/VelmoraControl.h"
#include "widgets/VelmoraImageList.h"
#include "widgets/VelmoraLine.h"
#include "widgets/VelmoraShape.h"

#include <QMetaProperty>

namespace {

QString domXml(const char *className, const char *name, const QSize &size)
{
    return QStringLiteral("<ui language=\"c++\">\n"
                          " <widget class=\"%1\" name=\"%2\">\n"
                          "  <property name=\"geometry\">\n"
                          "   <rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect>\n"
                          "  </property>\n"
                          " </widget>\n"
                          "</ui>\n")
        .arg(QLatin1String(className), QLatin1String(name))
        .arg(size.width())
        .arg(size.height());
}

// What's This of the component: each setting Designer shows, with its help
// text.
QString controlWhatsThis()
{
    QString html = QStringLiteral("<p><b>VelmoraControl</b>: drop one onto a form laid out with absolute positions. "
                                  "At run time it has no visible surface; whenever the form is resized it rescales "
                                  "every other widget on it relative to the form as designed. Double-click it for "
                                  "its settings pages.</p><dl>");
    const QMetaObject &mo = VelmoraControl::staticMetaObject;
    for (int i = mo.propertyOffset(); i < mo.propertyCount(); ++i) {
        const QMetaProperty p = mo.property(i);
        const QString help = VelmoraControl::helpText(QLatin1String(p.name()));
        if (p.isDesignable() && !help.isEmpty())
            html += QStringLiteral("<dt>%1</dt><dd>%2</dd>").arg(QLatin1String(p.name()), help.toHtmlEscaped());
    }
    return html + QStringLiteral("</dl>");
}

} // namespace

VelmoraDesignerPlugin::VelmoraDesignerPlugin(QObject *parent)
    : QObject(parent)
{
    using velmora::designer::FormWatch;
    using velmora::designer::VelmoraTaskMenuFactory;

    m_widgets << new VelmoraWidgetPlugin(
        {QStringLiteral("VelmoraControl"), QStringLiteral("control/VelmoraControl.h"),
         QStringLiteral("Velmora: scales every other widget of the form with the form"), controlWhatsThis(),
         &velmora::designer::controlIcon, domXml("VelmoraControl", "velmora", QSize(32, 32)),
         [](QWidget *parent, bool designTime) -> QWidget * {
             auto *control = new VelmoraControl(parent);
             control->setDesignTime(designTime);
             return control;
         },
         [](QDesignerFormEditorInterface *core) {
             VelmoraTaskMenuFactory::install(core);
             FormWatch::install(core);
         }},
        this);
    m_widgets << new VelmoraWidgetPlugin(
        {QStringLiteral("VelmoraLine"), QStringLiteral("widgets/VelmoraLine.h"),
         QStringLiteral("A straight line between two points (X1, Y1) and (X2, Y2)"),
         QStringLiteral("<p><b>VelmoraLine</b>: a line placed by its end points in the form's pixels. "
                        "VelmoraControl moves its ends and scales its BorderWidth with the form.</p>"),
         &velmora::designer::lineIcon, domXml("VelmoraLine", "line", QSize(100, 24)),
         [](QWidget *parent, bool) -> QWidget * { return new VelmoraLine(parent); }, nullptr},
        this);
    m_widgets << new VelmoraWidgetPlugin(
        {QStringLiteral("VelmoraShape"), QStringLiteral("widgets/VelmoraShape.h"),
         QStringLiteral("A rectangle, square, oval, circle or rounded shape"),
         QStringLiteral("<p><b>VelmoraShape</b>: a plain shape drawn inside its rectangle, for panels and badges "
                        "behind other widgets. VelmoraControl scales it and its BorderWidth with the form.</p>"),
         &velmora::designer::shapeIcon, domXml("VelmoraShape", "shape", QSize(100, 60)),
         [](QWidget *parent, bool) -> QWidget * { return new VelmoraShape(parent); }, nullptr},
        this);
    m_widgets << new VelmoraWidgetPlugin(
        {QStringLiteral("VelmoraImageList"), QStringLiteral("widgets/VelmoraImageList.h"),
         QStringLiteral("Images for toolbars, trees, lists and tabs, redrawn at every form size"),
         QStringLiteral("<p><b>VelmoraImageList</b>: an invisible list of images (the Images property, with "
                        "ImageKeys). Toolbars, tool buttons, trees, list widgets and tab widgets naming it in "
                        "their dynamic property ImageList take their icons from it; VelmoraControl redraws the "
                        "images at the scaled size.</p>"),
         &velmora::designer::imageListIcon, domXml("VelmoraImageList", "imageList", QSize(32, 32)),
         [](QWidget *parent, bool designTime) -> QWidget * {
             auto *list = new VelmoraImageList(parent);
             list->setDesignTime(designTime);
             return list;
         },
         nullptr},
        this);
}

QList<QDesignerCustomWidgetInterface *> VelmoraDesignerPlugin::customWidgets() const
{
    return m_widgets;
}
