// A form scaled by an installed Velmora. With an argument, the library
// must have been loaded from under that folder (the install being tested,
// not some other copy). Exits 0 when the form scaled and the Designer
// plugin installed beside the library made the component for a QUiLoader.
#include <VelmoraControl>
#include <VelmoraPropertyDialog>
#include <VelmoraPropertyPage>
#include <VelmoraUiLoader>

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>

#include <dlfcn.h>

#include <cstdio>
#include <functional>
#include <memory>

namespace {

bool waitFor(const std::function<bool()> &done)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

const char *const Form = R"(<ui version="4.0">
 <widget class="QWidget" name="Form">
  <property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>300</height></rect></property>
  <widget class="QLabel" name="lblName">
   <property name="geometry"><rect><x>20</x><y>20</y><width>120</width><height>24</height></rect></property>
   <property name="text"><string>Name</string></property>
  </widget>
  <widget class="VelmoraControl" name="velmora">
   <property name="ResizeOnMouseUp"><bool>false</bool></property>
  </widget>
 </widget>
</ui>)";

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    Dl_info info{};
    if (!dladdr(reinterpret_cast<const void *>(&VelmoraControl::staticMetaObject), &info) || !info.dli_fname) {
        std::fprintf(stderr, "consumer: cannot tell where libVelmora is\n");
        return 1;
    }
    std::printf("consumer: libVelmora %s from %s\n", qPrintable(VelmoraControl::version()), info.dli_fname);
    // Compared as the files they are (/lib is /usr/lib on Debian).
    const QString loaded = QFileInfo(QString::fromLocal8Bit(info.dli_fname)).canonicalFilePath();
    if (argc > 1 && !loaded.startsWith(QFileInfo(QString::fromLocal8Bit(argv[1])).canonicalFilePath() + u'/')) {
        std::fprintf(stderr, "consumer: libVelmora is not the one installed under %s\n", argv[1]);
        return 1;
    }

    QByteArray ui(Form);
    QBuffer buffer(&ui);
    VelmoraUiLoader loader;
    std::unique_ptr<QWidget> form(loader.load(&buffer));
    auto *velmora = form ? form->findChild<VelmoraControl *>() : nullptr;
    auto *label = form ? form->findChild<QLabel *>() : nullptr;
    if (!velmora || !label) {
        std::fprintf(stderr, "consumer: the form did not load: %s\n", qPrintable(loader.errorString()));
        return 1;
    }
    form->show();
    if (!waitFor([&] { return velmora->isFormReady(); })) {
        std::fprintf(stderr, "consumer: the component never got ready\n");
        return 1;
    }
    form->resize(800, 600);
    if (!waitFor([&] { return label->geometry() == QRect(40, 40, 240, 48); })) {
        std::fprintf(stderr, "consumer: the label did not scale (%d,%d %dx%d)\n", label->x(), label->y(),
                     label->width(), label->height());
        return 1;
    }
    std::printf("consumer: the form scaled\n");

    // Its settings window's pages, through the installed headers.
    {
        VelmoraPropertyDialog dialog(velmora);
        const QList<VelmoraPropertyPage *> pages = dialog.pages();
        if (pages.size() != 7 || pages.first()->objectName() != QLatin1String("General") || pages.first()->isChanged()) {
            std::fprintf(stderr, "consumer: the settings window does not show its seven pages\n");
            return 1;
        }
    }

    // The Designer plugin installed with the library: a plain QUiLoader
    // makes the component through it, as this program's own class.
    QUiLoader plain;
    buffer.seek(0);
    std::unique_ptr<QWidget> viaPlugin(plain.load(&buffer));
    if (!viaPlugin || !viaPlugin->findChild<VelmoraControl *>()) {
        std::fprintf(stderr, "consumer: QUiLoader did not make a VelmoraControl through the Designer plugin\n");
        return 1;
    }
    std::printf("consumer: QUiLoader made the component through the Designer plugin\n");
    return 0;
}
