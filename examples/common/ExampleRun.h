// What the examples share: run the application as usual, or, given
//   --grab WIDTHxHEIGHT FILE
// (the tests and the README's pictures use it), show the window at that
// size once Velmora has scaled it, save it into FILE, print where every
// named widget landed ("name x y width height", relative to its parent)
// and quit.
#pragma once

#include <VelmoraControl>

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

inline int runExample(QApplication &app, QWidget *window)
{
    const QStringList args = app.arguments();
    const int at = args.indexOf(QStringLiteral("--grab"));
    if (at < 0 || at + 2 >= args.size())
        return app.exec();
    const QStringList size = args.at(at + 1).split(u'x');
    const QSize wanted(size.value(0).toInt(), size.value(1).toInt());
    const auto settle = [&](int ms) {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < ms)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    };
    // Ready once every component has taken its form's layout.
    const auto components = window->findChildren<VelmoraControl *>();
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 5000
           && !std::all_of(components.cbegin(), components.cend(), [](auto *c) { return c->isFormReady(); }))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    window->resize(wanted);
    settle(400); // ResizeOnMouseUp answers 100 ms after the last resize
    if (!window->grab().save(args.at(at + 2)))
        return 1;
    for (QWidget *w : window->findChildren<QWidget *>())
        if (!w->objectName().isEmpty() && !w->objectName().startsWith(QLatin1String("qt_")))
            std::printf("%s %d %d %d %d\n", qPrintable(w->objectName()), w->x(), w->y(), w->width(), w->height());
    return 0;
}
