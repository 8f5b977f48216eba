// .ui files, as bytes, through VelmoraUiLoader and through the preview's
// loader (custom classes, cyclic bases, placeholders). A form that loads
// is shown offscreen with a component, brought to two sizes and back to its
// design size, and deleted.
//
// The two sizes are the first two "size=WxH" in the input (a comment
// serves), each side 0 to 4000 pixels; without them they come from a hash
// of the input.
#include "FuzzCommon.h"

#include "PreviewSession.h"
#include "control/VelmoraControl.h"
#include "control/VelmoraUiLoader.h"

#include <QBuffer>
#include <QFile>
#include <QRegularExpression>

#include <memory>

namespace {

QList<QSize> sizesOf(const QByteArray &ui)
{
    QList<QSize> sizes;
    static const QRegularExpression given(QStringLiteral("size=(\\d{1,5})x(\\d{1,5})"));
    for (auto it = given.globalMatch(QString::fromLatin1(ui)); it.hasNext() && sizes.size() < 2;) {
        const auto m = it.next();
        sizes.append(QSize(m.captured(1).toInt() % 4001, m.captured(2).toInt() % 4001));
    }
    const size_t h = qHash(ui);
    while (sizes.size() < 2)
        sizes.append(QSize(int(h >> (sizes.size() * 24)) % 2000, int(h >> (sizes.size() * 24 + 12)) % 1500));
    return sizes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray ui(reinterpret_cast<const char *>(data), qsizetype(size));
    // A window a form saved in one input must not place the next one.
    QFile::remove(fuzz::settingsFile());
    {
        QBuffer buffer;
        buffer.setData(ui);
        buffer.open(QIODevice::ReadOnly);
        VelmoraUiLoader loader;
        loader.clearPluginPaths(); // this build's classes only, never an installed plugin's
        delete loader.load(&buffer);
    }

    static const QString path = fuzz::privatePath(QStringLiteral("input.ui"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(ui) != ui.size())
        return 0;
    file.close();
    PreviewSession session;
    QString error;
    if (session.load(path, &error)) {
        QWidget *root = session.root();
        VelmoraControl *velmora = session.control();
        // Passes at once rather than 100 ms after the last resize, and wipes
        // (up to 10 s each) kept short: each input a fraction of a second.
        velmora->setResizeOnMouseUp(false);
        velmora->setFormOpenTime(qMin(velmora->FormOpenTime(), 0.05));
        velmora->setFormCloseTime(qMin(velmora->FormCloseTime(), 0.05));
        // A window of 100 000 pixels a side is a backing store Qt cannot
        // allocate, whatever the component does.
        root->resize(root->size().boundedTo(QSize(4000, 4000)));
        session.show();
        for (int i = 0; i < 20 && session.control() && !session.control()->isFormReady(); ++i)
            fuzz::wait(1);
        if (session.root() && session.form()) {
            const QList<QSize> sizes = sizesOf(ui) << session.form()->size();
            for (const QSize &s : sizes)
                if (session.root())
                    session.resizeForm(s);
        }
    }
    fuzz::closeAll();
    return 0;
}
