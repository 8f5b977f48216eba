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
#pragma once

#include <QIcon>
#include <QPixmap>
#include <QStringList>
#include <QWidget>

#include <memory>

class VelmoraImageListPrivate;

class VelmoraImageList : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int ImageWidth READ imageWidth WRITE setImageWidth NOTIFY imagesChanged)
    Q_PROPERTY(int ImageHeight READ imageHeight WRITE setImageHeight NOTIFY imagesChanged)
    Q_PROPERTY(QStringList Images READ images WRITE setImages)
    Q_PROPERTY(QStringList ImageKeys READ imageKeys WRITE setImageKeys)

public:
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

    void setVisible(bool visible) override;
    QSize sizeHint() const override;

Q_SIGNALS:
    // The images, their keys or their size changed: whatever shows them
    // should fetch them again.
    void imagesChanged();

private:
    void setSide(int &side, int pixels);

    std::unique_ptr<VelmoraImageListPrivate> d;
};
