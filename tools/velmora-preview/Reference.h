// velmora-preview --reference: VelmoraControl's members as a Markdown
// reference, made from the component itself (its properties, defaults,
// methods, signals and help texts), so that the README never drifts.
#pragma once

#include <QString>

QString velmoraReference();
