// libVelmora's own translation unit: a shared library needs one. Its code
// comes whole from the static libraries of src/widgets, src/qt, src/form,
// src/control and src/pages (and the engine under them).
