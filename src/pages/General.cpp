#include "pages/General.h"

#include "control/VelmoraControl.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include <climits>
#include <cmath>

namespace VelmoraPages {

namespace {

// Whole numbers as the settings take them; what is not a number is not
// applied (only the boxes the page checks are set to "0" first).
bool wholeOf(const QLineEdit *box, int &out)
{
    bool ok = false;
    const double v = box->text().trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v) || v < double(INT_MIN) || v > double(INT_MAX))
        return false;
    out = int(std::nearbyint(v)); // halves to the even neighbour
    return true;
}

bool numeric(const QString &text)
{
    bool ok = false;
    text.trimmed().toDouble(&ok);
    return ok;
}

} // namespace

General::General(QWidget *parent)
    : VelmoraPropertyPage(parent)
{
    setObjectName(QStringLiteral("General"));
    auto *grid = new QGridLayout(this);
    const auto check = [&](const char *name, int row, int column) {
        auto *box = new QCheckBox(QLatin1String(name + 3), this); // captioned with the setting's name
        box->setObjectName(QLatin1String(name));
        box->setToolTip(VelmoraControl::helpText(QLatin1String(name + 3)));
        grid->addWidget(box, row, column);
        connect(box, &QCheckBox::clicked, this, &General::markChanged);
        return box;
    };
    chkScaleControls = check("chkScaleControls", 0, 0);
    chkScaleFonts = check("chkScaleFonts", 1, 0);
    chkScaleBorders = check("chkScaleBorders", 2, 0);
    chkScaleGraphics = check("chkScaleGraphics", 3, 0);
    chkResizeOnMouseUp = check("chkResizeOnMouseUp", 4, 0);
    chkCenterX = check("chkCenterX", 5, 0);
    chkCenterY = check("chkCenterY", 6, 0);
    chkStayOnTop = check("chkStayOnTop", 7, 0);
    chkGradientFill = check("chkGradientFill", 8, 0);
    chkSaveWindowState = check("chkSaveWindowState", 9, 0);
    const auto text = [&](const char *name, const char *label, int row) {
        auto *caption = new QLabel(QLatin1String(label), this);
        auto *box = new QLineEdit(this);
        box->setObjectName(QLatin1String(name));
        box->setToolTip(VelmoraControl::helpText(QLatin1String(name + 3)));
        caption->setBuddy(box);
        grid->addWidget(caption, row, 1);
        grid->addWidget(box, row, 2);
        connect(box, &QLineEdit::textChanged, this, &General::markChanged);
        return box;
    };
    txtScaleX = text("txtScaleX", "ScaleX:", 0);
    txtScaleY = text("txtScaleY", "ScaleY:", 1);
    txtMinWidth = text("txtMinWidth", "MinWidth", 2);
    txtMinHeight = text("txtMinHeight", "MinHeight", 3);
    txtMaxWidth = text("txtMaxWidth", "MaxWidth", 4);
    txtMaxHeight = text("txtMaxHeight", "MaxHeight", 5);
    txtMdiChildWidth = text("txtMdiChildWidth", "MdiChildWidth", 6);
    txtMdiChildHeight = text("txtMdiChildHeight", "MdiChildHeight", 7);
    txtWindowName = text("txtWindowName", "WindowName:", 8);
    grid->setRowStretch(10, 1);
}

void General::selectionChanged(const QList<VelmoraControl *> &selected)
{
    select(selected);
    VelmoraControl *c = control();
    if (isLoaded() || !c)
        return;
    chkGradientFill->setChecked(c->GradientFill());
    txtMdiChildHeight->setText(QString::number(c->MdiChildHeight()));
    txtMdiChildWidth->setText(QString::number(c->MdiChildWidth()));
    txtWindowName->setText(c->WindowName());
    chkSaveWindowState->setChecked(c->SaveWindowState());
    chkScaleGraphics->setChecked(c->ScaleGraphics());
    chkScaleControls->setChecked(c->ScaleControls());
    chkScaleFonts->setChecked(c->ScaleFonts());
    chkScaleBorders->setChecked(c->ScaleBorders());
    chkResizeOnMouseUp->setChecked(c->ResizeOnMouseUp());
    chkStayOnTop->setChecked(c->StayOnTop());
    txtScaleY->setText(QString::number(c->ScaleY()));
    txtScaleX->setText(QString::number(c->ScaleX()));
    txtMinHeight->setText(QString::number(c->MinHeight()));
    txtMinWidth->setText(QString::number(c->MinWidth()));
    txtMaxHeight->setText(QString::number(c->MaxHeight()));
    txtMaxWidth->setText(QString::number(c->MaxWidth()));
    chkCenterY->setChecked(c->CenterY());
    chkCenterX->setChecked(c->CenterX());
    for (QWidget *w : findChildren<QWidget *>())
        w->setEnabled(true);
    setLoaded();
}

void General::applyChanges()
{
    VelmoraControl *c = control();
    if (!c)
        return;
    c->setWindowName(txtWindowName->text());
    c->setSaveWindowState(chkSaveWindowState->isChecked());
    c->setScaleGraphics(chkScaleGraphics->isChecked());
    c->setScaleControls(chkScaleControls->isChecked());
    c->setScaleFonts(chkScaleFonts->isChecked());
    c->setScaleBorders(chkScaleBorders->isChecked());
    c->setGradientFill(chkGradientFill->isChecked());
    c->setResizeOnMouseUp(chkResizeOnMouseUp->isChecked());
    c->setStayOnTop(chkStayOnTop->isChecked());
    // The maximum sizes are not checked here, as the page always was.
    for (QLineEdit *box : {txtScaleY, txtScaleX, txtMinHeight, txtMinWidth, txtMdiChildHeight, txtMdiChildWidth})
        if (!numeric(box->text()))
            box->setText(QStringLiteral("0"));
    int v = 0;
    if (wholeOf(txtScaleY, v))
        c->setScaleY(v);
    if (wholeOf(txtScaleX, v))
        c->setScaleX(v);
    if (wholeOf(txtMinHeight, v))
        c->setMinHeight(v);
    if (wholeOf(txtMinWidth, v))
        c->setMinWidth(v);
    if (wholeOf(txtMaxHeight, v))
        c->setMaxHeight(v);
    if (wholeOf(txtMaxWidth, v))
        c->setMaxWidth(v);
    if (wholeOf(txtMdiChildHeight, v))
        c->setMdiChildHeight(v);
    if (wholeOf(txtMdiChildWidth, v))
        c->setMdiChildWidth(v);
    c->setCenterY(chkCenterY->isChecked());
    c->setCenterX(chkCenterX->isChecked());
    setChanged(false);
}

} // namespace VelmoraPages
