// Velmora - what the component could not do, as its Error signal reports it.
#pragma once

#include "velmora_export.h"

#include <QMetaType>
#include <QObject>
#include <QString>

// A failure the component absorbed instead of passing it on: the classic
// automation error number (438: no such property or method, 380: invalid
// property value, 383: read-only, 9: index out of range, 424: object
// required, 6: overflow, 5: any other refusal), the toolkit's description,
// and where it arose ("Velmora" for the component's own checks).
class VELMORA_EXPORT VelmoraError {
    Q_GADGET
    Q_PROPERTY(int Number MEMBER Number)
    Q_PROPERTY(QString Description MEMBER Description)
    Q_PROPERTY(QString Source MEMBER Source)
public:
    int Number = 0;
    QString Description;
    QString Source;

    friend bool operator==(const VelmoraError &a, const VelmoraError &b)
    {
        return a.Number == b.Number && a.Description == b.Description && a.Source == b.Source;
    }
    friend bool operator!=(const VelmoraError &a, const VelmoraError &b) { return !(a == b); }
};

Q_DECLARE_METATYPE(VelmoraError)
