// velmora-preview: settings given on the command line (--property
// NAME=VALUE) for the form's VelmoraControl.
#pragma once

#include <QString>

class QObject;

// Sets one Q_PROPERTY of `control` from "NAME=VALUE" text. Numbers may be
// hexadecimal (0x...), enumerations given by name or number, switches as
// true/false. On failure returns false and says why in `error`.
bool setControlProperty(QObject *control, const QString &assignment, QString *error);
