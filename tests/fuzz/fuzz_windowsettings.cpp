// The saved window state from a hostile settings file. The input's first
// byte chooses the window (bit 0: KeepOnScreen; bit 1: a main window;
// bits 2-3: its WindowName: none, so the title "Fuzz", "Fuzz", "x/../y" or
// "Fenêtre 1"), the rest is the file, as the per-user settings of
// "Velmora" keep it ([Fuzz] WindowLeft=... in twips, WindowState=0..2).
//
// A form with SaveWindowState loads it when shown, saves, and a second form
// of that name loads what the first saved: a window in its normal state
// reopens where the first one was.
#include "FuzzCommon.h"

#include "control/VelmoraControl.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <QPointer>

#include <memory>

namespace {

struct Window {
    std::unique_ptr<QWidget> root;
    QPointer<VelmoraControl> velmora;

    Window(bool mainWindow, bool keepOnScreen, const QString &name)
    {
        QWidget *form = new QWidget;
        if (mainWindow) {
            auto *main = new QMainWindow;
            main->setCentralWidget(form);
            root.reset(main);
        } else {
            root.reset(form);
        }
        root->setWindowTitle(QStringLiteral("Fuzz"));
        root->setGeometry(40, 30, 320, 240);
        (new QLabel(QStringLiteral("label"), form))->setGeometry(10, 10, 150, 24);
        velmora = new VelmoraControl(form);
        velmora->setResizeOnMouseUp(false);
        velmora->setSaveWindowState(true);
        velmora->setWindowName(name);
        velmora->setKeepOnScreen(keepOnScreen);
    }
    bool show()
    {
        root->show();
        for (int i = 0; i < 20 && velmora && !velmora->isFormReady(); ++i)
            fuzz::wait(1);
        fuzz::settle();
        return velmora && velmora->isFormReady();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Bytes in(data, size);
    const int options = in.u8();
    const bool keepOnScreen = options & 1, mainWindow = options & 2;
    static const QString names[] = {QString(), QStringLiteral("Fuzz"), QStringLiteral("x/../y"),
                                    QStringLiteral("Fenêtre 1")};
    const QString name = names[(options >> 2) & 3];

    const QString path = fuzz::settingsFile();
    QDir().mkpath(QFileInfo(path).path());
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        const QByteArray ini = in.take(size);
        // Qt reads a value written "@Variant(...)" with QDataStream as soon as
        // it opens the file, before Velmora sees any value, and a stated
        // length of gigabytes makes it allocate them. Velmora never writes
        // one; such a file is Qt's hazard, not a saved state's.
        if (ini.contains("@Variant("))
            return 0;
        file.write(ini);
        // QSettings reads a file again only when its size or time changed;
        // two inputs within a millisecond must not share a reading.
        static qint64 tick = 0;
        file.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000 + ++tick), QFileDevice::FileModificationTime);
    }

    QRect first;
    bool normal = false;
    {
        Window a(mainWindow, keepOnScreen, name);
        if (a.show()) {
            a.velmora->SaveWindowSettings();
            a.velmora->LoadWindowSettings();
            fuzz::settle();
        }
        normal = a.root->windowState() == Qt::WindowNoState;
        first = a.root->frameGeometry();
    } // deleted unclosed: saved once more
    fuzz::settle();
    Window b(mainWindow, keepOnScreen, name);
    if (b.show() && normal && first.width() <= 10000 && first.height() <= 10000) {
        const QRect second = b.root->frameGeometry();
        FUZZ_CHECK(b.root->windowState() == Qt::WindowNoState
                       && qAbs(second.x() - first.x()) <= 1 && qAbs(second.y() - first.y()) <= 1
                       && qAbs(second.width() - first.width()) <= 1 && qAbs(second.height() - first.height()) <= 1,
                   "the window was left at %d,%d %dx%d and reopens at %d,%d %dx%d (state %d)", first.x(), first.y(),
                   first.width(), first.height(), second.x(), second.y(), second.width(), second.height(),
                   int(b.root->windowState()));
    }
    b.root.reset();
    fuzz::closeAll();
    return 0;
}
