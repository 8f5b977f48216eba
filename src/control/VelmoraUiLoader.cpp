#include "control/VelmoraUiLoader.h"

#include "control/VelmoraControl.h"
#include "widgets/VelmoraImageList.h"
#include "widgets/VelmoraLine.h"
#include "widgets/VelmoraShape.h"

VelmoraUiLoader::VelmoraUiLoader(QObject *parent)
    : QUiLoader(parent)
{
}

QStringList VelmoraUiLoader::velmoraClasses()
{
    return {QStringLiteral("VelmoraLine"), QStringLiteral("VelmoraShape"), QStringLiteral("VelmoraImageList"),
            QStringLiteral("VelmoraControl")};
}

QWidget *VelmoraUiLoader::createWidget(const QString &className, QWidget *parent, const QString &name)
{
    QWidget *w = nullptr;
    if (className == QLatin1String("VelmoraLine"))
        w = new VelmoraLine(parent);
    else if (className == QLatin1String("VelmoraShape"))
        w = new VelmoraShape(parent);
    else if (className == QLatin1String("VelmoraImageList"))
        w = new VelmoraImageList(parent);
    else if (className == QLatin1String("VelmoraControl"))
        w = new VelmoraControl(parent);
    else
        return QUiLoader::createWidget(className, parent, name);
    w->setObjectName(name);
    return w;
}
