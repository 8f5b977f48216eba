// Velmora - an ordered list of images that toolbars, trees, list views and
// tab strips on the same form take their icons from.
//
// Each image has an optional key (unique when not empty), a tag for the
// application's own use, and a picture kept as a QIcon: the list hands its
// images out at ImageWidth x ImageHeight pixels, rendered from the icon at
// that size (the size that suits best of a multi-size icon, sharp on HiDPI
// screens), never from a copy already scaled.
//
// At run time the widget is never shown. In Qt Designer its images come from
// the string-list property Images (files or ":/" resources), keyed by the
// matching entries of ImageKeys; from code, add() takes icons or pixmaps.
//
// Controls take their icons from a list they name by its objectName, in the
// property ImageList (a list widget names two: Icons for icon mode,
// SmallIcons for list mode). Their items refer to an image by key (text) or
// number (from 1):
//   - a toolbar's or tool button's action: its property "Image";
//   - a tree widget item: data(0, VelmoraImageList::ImageRole);
//   - a list widget item: data(ImageRole) in icon mode, data(SmallImageRole)
//     in list mode (either one serves when the other is not set);
//   - a tab widget's tab: its page's property "Image"; a tab bar's tab: its
//     tabData (set it with setTabImage()).
// In Designer, where items cannot carry such data, a tree, list or tab bar
// may give its items' references in order in the string-list property
// ItemImages. A bound control shows each referenced image at the list's
// image size and follows the list whenever its images or size change; items
// without a reference keep whatever icon they have.
#pragma once

#include "velmora_export.h"

#include <QIcon>
#include <QPixmap>
#include <QStringList>
#include <QWidget>

#include <memory>

class QTabBar;
class VelmoraImageListPrivate;

class VELMORA_EXPORT VelmoraImageList : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int ImageWidth READ imageWidth WRITE setImageWidth NOTIFY imagesChanged)
    Q_PROPERTY(int ImageHeight READ imageHeight WRITE setImageHeight NOTIFY imagesChanged)
    Q_PROPERTY(QStringList Images READ images WRITE setImages)
    Q_PROPERTY(QStringList ImageKeys READ imageKeys WRITE setImageKeys)

public:
    // Item data roles of a tree or list widget item's image reference.
    enum ItemDataRole { ImageRole = Qt::UserRole + 0x5649, SmallImageRole };
    Q_ENUM(ItemDataRole)

    explicit VelmoraImageList(QWidget *parent = nullptr);
    ~VelmoraImageList() override;

    int count() const;
    void clear();
    // Inserts before position `before` (0-based; out of range or -1:
    // appends). Returns the new image's position, or -1 when `key` is not
    // empty and another image has it already.
    int add(const QIcon &picture, const QString &key = QString(), int before = -1);
    int add(const QPixmap &picture, const QString &key = QString(), int before = -1);
    bool remove(int index);

    // -1 when no image has the key (an empty key names no image).
    int indexOf(const QString &key) const;
    QString key(int index) const;
    QString tag(int index) const;
    void setTag(int index, const QString &tag);
    // The picture as it was given.
    QIcon icon(int index) const;
    // The picture at ImageWidth x ImageHeight, for this widget's screen.
    QPixmap pixmap(int index) const;

    // The size images are handed out at, in pixels (at least 1).
    int imageWidth() const;
    void setImageWidth(int width);
    int imageHeight() const;
    void setImageHeight(int height);
    QSize imageSize() const { return QSize(imageWidth(), imageHeight()); }

    // What Designer edits: the images' sources and, by position, their keys.
    // Setting Images replaces every image; a source that cannot be read
    // gives an empty image (and one warning) so positions stay as written.
    QStringList images() const;
    void setImages(const QStringList &sources);
    QStringList imageKeys() const;
    void setImageKeys(const QStringList &keys);

    // Binds `control` to `list` under `which` ("ImageList", or "Icons" or
    // "SmallIcons" of a list widget); nullptr unbinds. The list may be on
    // any form; binding by name only finds lists on the control's window.
    static void setImageList(QWidget *control, VelmoraImageList *list, const char *which = "ImageList");
    static VelmoraImageList *imageList(QWidget *control, const char *which = "ImageList");
    static void setTabImage(QTabBar *tabs, int index, const QVariant &image);
    // Shows the bound images of every item again, after changes the control
    // does not announce (tabs added, a list widget's view mode).
    static void refresh(QWidget *control);

    // In a form editor (Qt Designer's plugin sets it) the list shows as an
    // icon, so that it can be selected and moved; where the form runs it is
    // never shown. Off by default.
    bool isDesignTime() const;
    void setDesignTime(bool on);

    void setVisible(bool visible) override;
    QSize sizeHint() const override;

Q_SIGNALS:
    // The images, their keys or their size changed: whatever shows them
    // should fetch them again.
    void imagesChanged();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setSide(int &side, int pixels);
    void bindWindow();

    std::unique_ptr<VelmoraImageListPrivate> d;
};
