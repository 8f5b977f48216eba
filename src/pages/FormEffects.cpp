#include "pages/FormEffects.h"

#include "control/VelmoraControl.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace VelmoraPages {

namespace {

const QStringList &effectNames()
{
    static const QStringList names = {QStringLiteral("None"), QStringLiteral("Wipe Left"),
                                      QStringLiteral("Wipe Right"), QStringLiteral("Wipe Up"),
                                      QStringLiteral("Wipe Down"), QStringLiteral("Wipe Vertical"),
                                      QStringLiteral("Wipe Horizontal"), QStringLiteral("Fold")};
    return names;
}

const QStringList &pictureNames()
{
    static const QStringList names = {QStringLiteral("None"), QStringLiteral("Fit to Form"),
                                      QStringLiteral("Center in Form"), QStringLiteral("Tile in Form")};
    return names;
}

// A duration as stored: what cannot be read is none, and never beyond the
// page's range.
double seconds(const QLineEdit *box)
{
    bool ok = false;
    const double v = box->text().trimmed().toDouble(&ok);
    return ok ? qBound(0.0, v, FormEffects::LongestSeconds) : 0.0;
}

} // namespace

FormEffects::FormEffects(QWidget *parent)
    : VelmoraPropertyPage(parent)
{
    setObjectName(QStringLiteral("FormEffects"));
    auto *grid = new QGridLayout(this);
    int row = 0;
    const auto combo = [&](const char *name, const char *label) {
        auto *box = new QComboBox(this);
        box->setObjectName(QLatin1String(name));
        box->setToolTip(VelmoraControl::helpText(QLatin1String(name + 3)));
        auto *caption = new QLabel(QLatin1String(label), this);
        caption->setBuddy(box);
        grid->addWidget(caption, row, 0);
        grid->addWidget(box, row++, 1);
        connect(box, QOverload<int>::of(&QComboBox::activated), this, &FormEffects::markChanged);
        return box;
    };
    const auto duration = [&](const char *name, const char *label) {
        auto *box = new QLineEdit(this);
        box->setObjectName(QLatin1String(name));
        box->setToolTip(VelmoraControl::helpText(QLatin1String(name + 3)));
        auto *caption = new QLabel(QLatin1String(label), this);
        caption->setBuddy(box);
        grid->addWidget(caption, row, 0);
        grid->addWidget(box, row, 1);
        grid->addWidget(new QLabel(QStringLiteral("Secs"), this), row++, 2);
        connect(box, &QLineEdit::textEdited, this, [this, box] { durationEdited(box); });
        connect(box, &QLineEdit::textChanged, this, &FormEffects::markChanged);
        box->installEventFilter(this);
        return box;
    };
    cmbFormOpen = combo("cmbFormOpen", "Form Open");
    txtFormOpenTime = duration("txtFormOpenTime", "Form Open Time");
    cmbFormClose = combo("cmbFormClose", "Form Close");
    txtFormCloseTime = duration("txtFormCloseTime", "Form Close Time");
    cmbFormPicture = combo("cmbFormPicture", "Form Picture");
    grid->setRowStretch(row, 1);
    grid->setColumnStretch(1, 1);
}

void FormEffects::durationEdited(QLineEdit *box)
{
    // Kept within 0 to 10 seconds while it is typed.
    const QString text = box->text();
    if (text == QLatin1String(".")) {
        box->setText(QStringLiteral("0."));
        box->setCursorPosition(2);
        return;
    }
    bool ok = false;
    const double v = text.toDouble(&ok);
    if (text.isEmpty() || !ok)
        return;
    if (v < 0)
        box->setText(QStringLiteral("0"));
    else if (v > LongestSeconds)
        box->setText(QStringLiteral("10"));
    else
        return;
    box->setCursorPosition(qMin(2, int(box->text().size())));
}

bool FormEffects::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && (watched == txtFormOpenTime || watched == txtFormCloseTime)) {
        auto *box = static_cast<QLineEdit *>(watched);
        if (box->text().isEmpty())
            box->setText(QStringLiteral("0"));
    }
    return VelmoraPropertyPage::eventFilter(watched, event);
}

void FormEffects::selectionChanged(const QList<VelmoraControl *> &selected)
{
    select(selected);
    VelmoraControl *c = control();
    if (isLoaded() || !c)
        return;
    // The list index is the setting's value.
    cmbFormOpen->clear();
    cmbFormOpen->addItems(effectNames());
    cmbFormOpen->setCurrentIndex(c->FormOpen());
    cmbFormClose->clear();
    cmbFormClose->addItems(effectNames());
    cmbFormClose->setCurrentIndex(c->FormClose());
    cmbFormPicture->clear();
    cmbFormPicture->addItems(pictureNames());
    cmbFormPicture->setCurrentIndex(c->FormPicture());
    txtFormOpenTime->setText(QString::number(c->FormOpenTime()));
    txtFormCloseTime->setText(QString::number(c->FormCloseTime()));
    setLoaded();
}

void FormEffects::applyChanges()
{
    VelmoraControl *c = control();
    if (!c)
        return;
    c->setFormOpen(VelmoraControl::FormOpenEffects(qMax(0, cmbFormOpen->currentIndex())));
    c->setFormClose(VelmoraControl::FormCloseEffects(qMax(0, cmbFormClose->currentIndex())));
    c->setFormPicture(VelmoraControl::FormPictureEffects(qMax(0, cmbFormPicture->currentIndex())));
    c->setFormOpenTime(seconds(txtFormOpenTime));
    c->setFormCloseTime(seconds(txtFormCloseTime));
    setChanged(false);
}

} // namespace VelmoraPages
