// code-form: a form built in code, with absolute positions.
//
// One VelmoraControl on the form is all it takes; the form's size when it
// first shows is its design size. Per-control options are set by widget:
// here the logo keeps its size and its place at the top right.
#include "ExampleRun.h"

#include <VelmoraControl>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QWidget form;
    form.setWindowTitle(QStringLiteral("Sign in"));
    form.resize(360, 200);

    auto *user = new QLabel(QStringLiteral("User"), &form);
    user->setObjectName(QStringLiteral("lblUser"));
    user->setGeometry(20, 30, 80, 24);
    auto *userEdit = new QLineEdit(&form);
    userEdit->setObjectName(QStringLiteral("txtUser"));
    userEdit->setGeometry(110, 30, 170, 24);
    auto *password = new QLabel(QStringLiteral("Password"), &form);
    password->setObjectName(QStringLiteral("lblPassword"));
    password->setGeometry(20, 70, 80, 24);
    auto *passwordEdit = new QLineEdit(&form);
    passwordEdit->setObjectName(QStringLiteral("txtPassword"));
    passwordEdit->setEchoMode(QLineEdit::Password);
    passwordEdit->setGeometry(110, 70, 170, 24);
    auto *signIn = new QPushButton(QStringLiteral("Sign in"), &form);
    signIn->setObjectName(QStringLiteral("cmdSignIn"));
    signIn->setGeometry(190, 130, 90, 30);
    auto *logo = new QLabel(QStringLiteral("V"), &form);
    logo->setObjectName(QStringLiteral("lblLogo"));
    logo->setAlignment(Qt::AlignCenter);
    logo->setStyleSheet(QStringLiteral("background: #1d4e89; color: white; font-weight: bold"));
    logo->setGeometry(300, 20, 40, 40);

    auto *velmora = new VelmoraControl(&form);
    velmora->setResizeOnMouseUp(false); // follow the drag, not only its end
    velmora->setOptions(logo, VelmoraControl::DontScaleTop | VelmoraControl::DontScaleWidth
                                  | VelmoraControl::DontScaleHeight | VelmoraControl::DontScaleRight);

    form.show();
    return runExample(app, &form);
}
