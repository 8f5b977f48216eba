// Velmora - which component serves a form. A form may carry two (one
// dropped by mistake, or a form put together from pieces that each brought
// one): both would scale it, each undoing the other. The first to claim a
// form serves it; a later one stays passive, says so once, and takes over
// when the first goes.
#pragma once

#include <memory>

class QWidget;
class VelmoraControlPrivate;

namespace velmora {

class FormClaims {
public:
    // `d` asks to serve `form` (nullptr: no form), giving up whatever it
    // claimed before. Returns the form it serves now: `form`, or nullptr
    // while another component serves it.
    static QWidget *claim(VelmoraControlPrivate *d, QWidget *form);
    // `d` serves nothing any more; the next component waiting for its form
    // takes over from the event loop.
    static void release(VelmoraControlPrivate *d) { claim(d, nullptr); }
};

} // namespace velmora
