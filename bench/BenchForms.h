// Forms the benchmarks resize. Every builder makes the same widgets in the
// same order for the same arguments, so contenders working on separate
// copies can be compared widget by widget.
#pragma once

#include <QWidget>

#include <memory>
#include <vector>

namespace bench {

enum class Shape {
    Mixed,  // labels, edits, buttons, check boxes, combo boxes; 10 % in group boxes
    Flat,   // plain frames side by side
    Nested, // a chain of frames, each inside the previous one
};

struct Form {
    std::unique_ptr<QWidget> window; // what is shown and resized
    QWidget *form = nullptr;         // the form the contender scales
    std::vector<QWidget *> widgets;  // the form's widgets, containers first
};

// `count` widgets of `shape` (Mixed wants a multiple of 100). With `child`,
// the form is a child widget filling a top-level window instead of the
// window itself. With `gridLayout`, grid layouts place the widgets instead
// of absolute geometry (Mixed only).
Form makeForm(Shape shape, int count, bool child, bool gridLayout = false);

const char *shapeName(Shape shape);

} // namespace bench
