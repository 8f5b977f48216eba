#include "VelmoraImageList.h"

#include "ImageListBinding.h"

#include <QEvent>
#include <QImageReader>
#include <QPainter>
#include <QPointer>
#include <QTabBar>
#include <QWindow>

#include <vector>

namespace {

struct Image {
    QString key;
    QString tag;
    QIcon icon;
    QString source; // what Images named it by, if it came from there
};

QIcon iconFrom(const QString &source)
{
    // QIcon reads its file lazily; ask now, so a wrong path is said once,
    // when it is set.
    if (!QImageReader(source).canRead()) {
        qWarning("VelmoraImageList: cannot read image \"%s\"", qPrintable(source));
        return QIcon();
    }
    return QIcon(source);
}

} // namespace

class VelmoraImageListPrivate {
public:
    std::vector<Image> images;
    QStringList keys; // as Designer gave them, by position
    int width = 16, height = 16;
    QPointer<QWidget> window; // whose showing binds the controls naming the list
    bool bindPending = false;
    bool designTime = false;
    // Images as handed out, by position, for one size and pixel ratio: many
    // items show the same image.
    mutable std::vector<QPixmap> rendered;
    mutable QSize renderedSize;
    mutable qreal renderedRatio = 0;

    bool keyTaken(const QString &key, int except = -1) const
    {
        if (key.isEmpty())
            return false;
        for (int i = 0; i < int(images.size()); ++i)
            if (i != except && images[std::size_t(i)].key == key)
                return true;
        return false;
    }
    void applyKeys()
    {
        for (int i = 0; i < int(images.size()); ++i) {
            const QString key = i < keys.size() ? keys.at(i) : QString();
            if (keyTaken(key, i)) {
                qWarning("VelmoraImageList: key \"%s\" is used twice; image %d keeps no key", qPrintable(key), i + 1);
                images[std::size_t(i)].key.clear();
            } else {
                images[std::size_t(i)].key = key;
            }
        }
    }
};

VelmoraImageList::VelmoraImageList(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<VelmoraImageListPrivate>())
{
    // Whatever changed, the images handed out so far are stale.
    connect(this, &VelmoraImageList::imagesChanged, this, [this] { d->rendered.clear(); });
    setAttribute(Qt::WA_TransparentForMouseEvents);
    QWidget::setVisible(false);
    if (parent) {
        QEvent changed(QEvent::ParentChange);
        event(&changed);
    }
}

VelmoraImageList::~VelmoraImageList()
{
    velmora::widgets::ImageListBinding::forget(this);
}

using velmora::widgets::ImageListBinding;

bool VelmoraImageList::event(QEvent *event)
{
    if (event->type() == QEvent::ParentChange) {
        // Controls naming the list are bound when the form is built (after
        // the loader or setupUi has made them all) and whenever it is shown.
        if (d->window != window()) {
            if (d->window)
                d->window->removeEventFilter(this);
            d->window = window();
            if (d->window != this)
                d->window->installEventFilter(this);
        }
        if (!d->bindPending) {
            d->bindPending = true;
            QMetaObject::invokeMethod(this, [this] { bindWindow(); }, Qt::QueuedConnection);
        }
    }
    return QWidget::event(event);
}

bool VelmoraImageList::eventFilter(QObject *watched, QEvent *event)
{
    // Before the window lays itself out for showing: the icon sizes the
    // lists give decide how tall toolbars and tab bars are.
    if (watched == d->window && (event->type() == QEvent::Polish || event->type() == QEvent::Show))
        bindWindow();
    return QWidget::eventFilter(watched, event);
}

void VelmoraImageList::bindWindow()
{
    d->bindPending = false;
    if (objectName().isEmpty())
        return;
    QWidget *top = window();
    const auto names = [&](QWidget *w) {
        for (const char *property : {"ImageList", "Icons", "SmallIcons"})
            if (w->property(property).toString() == objectName())
                return true;
        return false;
    };
    QList<QWidget *> widgets = top->findChildren<QWidget *>();
    widgets.prepend(top);
    for (QWidget *w : widgets) {
        if (w == this || w->dynamicPropertyNames().isEmpty() || !names(w))
            continue;
        ImageListBinding *b = ImageListBinding::of(w);
        if (b)
            b->resolve();
        else
            b = ImageListBinding::ensure(w);
        b->refresh();
    }
}

void VelmoraImageList::setImageList(QWidget *control, VelmoraImageList *list, const char *which)
{
    if (!control || !which)
        return;
    const QByteArray name(which);
    const ImageListBinding::Slot slot = name == "SmallIcons" ? ImageListBinding::SmallImages : ImageListBinding::Images;
    if (name != ImageListBinding::propertyName(control, slot)) {
        qWarning("VelmoraImageList: a %s has no image list called %s", control->metaObject()->className(), which);
        return;
    }
    ImageListBinding::ensure(control)->assign(slot, list);
}

VelmoraImageList *VelmoraImageList::imageList(QWidget *control, const char *which)
{
    if (!control || !which)
        return nullptr;
    const QByteArray name(which);
    const ImageListBinding::Slot slot = name == "SmallIcons" ? ImageListBinding::SmallImages : ImageListBinding::Images;
    if (name != ImageListBinding::propertyName(control, slot))
        return nullptr;
    ImageListBinding *b = ImageListBinding::of(control);
    const bool named = !control->property(which).toString().isEmpty();
    if (!b && !named)
        return nullptr;
    if (!b)
        b = ImageListBinding::ensure(control);
    else if (!b->list(slot) && named)
        b->resolve(); // named before the list was made
    return b->list(slot);
}

void VelmoraImageList::setTabImage(QTabBar *tabs, int index, const QVariant &image)
{
    if (!tabs || index < 0 || index >= tabs->count())
        return;
    tabs->setTabData(index, image);
    if (ImageListBinding *b = ImageListBinding::of(tabs))
        b->refresh();
}

void VelmoraImageList::refresh(QWidget *control)
{
    if (ImageListBinding *b = ImageListBinding::of(control))
        b->refresh();
}

void VelmoraImageList::setVisible(bool visible)
{
    // A list of images has nothing to show on the form; in an editor, its
    // icon.
    QWidget::setVisible(visible && d->designTime);
}

bool VelmoraImageList::isDesignTime() const { return d->designTime; }

void VelmoraImageList::setDesignTime(bool on)
{
    if (d->designTime == on)
        return;
    d->designTime = on;
    setAttribute(Qt::WA_TransparentForMouseEvents, !on);
    QWidget::setVisible(on && parentWidget());
    update();
}

void VelmoraImageList::paintEvent(QPaintEvent *)
{
    if (!d->designTime)
        return;
    // Three picture frames fanned out: a stack of images.
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(1, 1, -1, -1);
    const qreal w = r.width() * 0.62, h = r.height() * 0.62;
    const qreal pen = r.height() >= 24 ? 1.5 : 1;
    const QColor fills[] = {QColor(0xf4, 0xd0, 0x8a), QColor(0xb8, 0xd8, 0xa8), QColor(0xa8, 0xc8, 0xf0)};
    for (int i = 0; i < 3; ++i) {
        const QRectF frame(r.left() + i * (r.width() - w) / 2, r.top() + i * (r.height() - h) / 2, w, h);
        p.setPen(QPen(QColor(0x1d, 0x4e, 0x89), pen));
        p.setBrush(fills[i]);
        p.drawRect(frame);
    }
    // A hill and a sun on the front picture.
    const QRectF front(r.right() - w, r.bottom() - h, w, h);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x3a, 0x7d, 0x3a));
    p.drawPolygon(QPolygonF({front.bottomLeft() + QPointF(pen, -pen), front.center() + QPointF(0, -h * 0.05),
                             front.bottomRight() + QPointF(-pen, -pen)}));
    p.setBrush(QColor(0xd9, 0x6c, 0x00));
    p.drawEllipse(QPointF(front.left() + w * 0.3, front.top() + h * 0.3), w * 0.11, w * 0.11);
}

QSize VelmoraImageList::sizeHint() const
{
    return QSize(32, 32);
}

int VelmoraImageList::count() const
{
    return int(d->images.size());
}

void VelmoraImageList::clear()
{
    if (d->images.empty())
        return;
    d->images.clear();
    Q_EMIT imagesChanged();
}

int VelmoraImageList::add(const QIcon &picture, const QString &key, int before)
{
    if (d->keyTaken(key))
        return -1;
    const int at = before < 0 || before > count() ? count() : before;
    d->images.insert(d->images.begin() + at, Image{key, QString(), picture, QString()});
    Q_EMIT imagesChanged();
    return at;
}

int VelmoraImageList::add(const QPixmap &picture, const QString &key, int before)
{
    return add(picture.isNull() ? QIcon() : QIcon(picture), key, before);
}

bool VelmoraImageList::remove(int index)
{
    if (index < 0 || index >= count())
        return false;
    d->images.erase(d->images.begin() + index);
    Q_EMIT imagesChanged();
    return true;
}

int VelmoraImageList::indexOf(const QString &key) const
{
    if (key.isEmpty())
        return -1;
    for (int i = 0; i < count(); ++i)
        if (d->images[std::size_t(i)].key == key)
            return i;
    return -1;
}

QString VelmoraImageList::key(int index) const
{
    return index >= 0 && index < count() ? d->images[std::size_t(index)].key : QString();
}

QString VelmoraImageList::tag(int index) const
{
    return index >= 0 && index < count() ? d->images[std::size_t(index)].tag : QString();
}

void VelmoraImageList::setTag(int index, const QString &tag)
{
    if (index >= 0 && index < count())
        d->images[std::size_t(index)].tag = tag;
}

QIcon VelmoraImageList::icon(int index) const
{
    return index >= 0 && index < count() ? d->images[std::size_t(index)].icon : QIcon();
}

QPixmap VelmoraImageList::pixmap(int index) const
{
    const QIcon picture = icon(index);
    if (picture.isNull())
        return QPixmap();
    // Rendered for the screen the form is on, so icons stay sharp at any
    // device pixel ratio; stretched to the list's size like any image list.
    const QWindow *window = this->window() ? this->window()->windowHandle() : nullptr;
    const qreal dpr = window ? window->devicePixelRatio() : devicePixelRatioF();
    const QSize logical = imageSize();
    if (d->renderedSize != logical || d->renderedRatio != dpr || d->rendered.size() != d->images.size()) {
        d->rendered.assign(d->images.size(), QPixmap());
        d->renderedSize = logical;
        d->renderedRatio = dpr;
    }
    QPixmap &best = d->rendered[std::size_t(index)];
    if (!best.isNull())
        return best;
    best = picture.pixmap(logical, dpr);
    const QSize device = (QSizeF(logical) * dpr).toSize();
    if (best.size() != device)
        best = best.scaled(device, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    best.setDevicePixelRatio(dpr);
    return best;
}

int VelmoraImageList::imageWidth() const
{
    return d->width;
}

void VelmoraImageList::setImageWidth(int width)
{
    setSide(d->width, width);
}

void VelmoraImageList::setSide(int &side, int pixels)
{
    pixels = qBound(1, pixels, 4096);
    if (pixels == side)
        return;
    side = pixels;
    Q_EMIT imagesChanged();
}

int VelmoraImageList::imageHeight() const
{
    return d->height;
}

void VelmoraImageList::setImageHeight(int height)
{
    setSide(d->height, height);
}

QStringList VelmoraImageList::images() const
{
    QStringList sources;
    for (const Image &image : d->images)
        sources << image.source;
    return sources;
}

void VelmoraImageList::setImages(const QStringList &sources)
{
    d->images.clear();
    for (const QString &source : sources)
        d->images.push_back(Image{QString(), QString(), source.isEmpty() ? QIcon() : iconFrom(source), source});
    d->applyKeys();
    Q_EMIT imagesChanged();
}

QStringList VelmoraImageList::imageKeys() const
{
    QStringList keys;
    for (const Image &image : d->images)
        keys << image.key;
    // Keys given for images not there yet are kept for when they come.
    for (int i = keys.size(); i < d->keys.size(); ++i)
        keys << d->keys.at(i);
    while (!keys.isEmpty() && keys.last().isEmpty())
        keys.removeLast();
    return keys;
}

void VelmoraImageList::setImageKeys(const QStringList &keys)
{
    d->keys = keys;
    d->applyKeys();
    Q_EMIT imagesChanged();
}
