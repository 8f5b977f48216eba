// The ways of bringing a form to a new size that the comparison measures.
// Each works inside the form's Resize event (Velmora answers it from the
// event loop, ahead of the repaint, as it always does).
#pragma once

#include "BenchForms.h"

#include <QFont>
#include <QRect>

#include <map>
#include <memory>
#include <string>
#include <vector>

class VelmoraControl;

namespace bench {

// Where every widget ends up for one form size.
struct Targets {
    std::vector<QRect> geometry;
    std::vector<qreal> pointSize;
};

class Contender {
public:
    virtual ~Contender();
    virtual std::string name() const = 0;

    const Form &form() const { return m_form; }
    // Resizes the window by `scale` of its design size and returns once the
    // contender has done its work (the repaint is still to come).
    virtual void resizeTo(double scale);
    void show();

protected:
    explicit Contender(Form form) : m_form(std::move(form)) {}
    Form m_form;
    QSize m_designWindow;
};

// Velmora on the form, passes at once (no waiting for the mouse).
class VelmoraContender : public Contender {
public:
    explicit VelmoraContender(Form form);
    std::string name() const override { return "Velmora"; }
    void resizeTo(double scale) override;
    // A pass at the size the form already has.
    void passAtSameSize();
    Targets snapshot() const;
    VelmoraControl *control() const { return m_control; }

private:
    VelmoraControl *m_control;
};

// The hand-written loop: the final geometries and fonts, applied in order.
class LoopContender : public Contender {
public:
    LoopContender(Form form, bool updatesOff);
    ~LoopContender() override;
    std::string name() const override { return m_updatesOff ? "floor" : "naive"; }
    // What to apply when the form reaches each scale.
    void setTargets(double scale, Targets targets) { m_targets[scale] = std::move(targets); }
    void resizeTo(double scale) override;
    // Gives every widget a font of its own, innermost first, so that the
    // first timed round is not the one in which containers' fonts travel
    // down through everything they hold.
    void prime();

private:
    class Filter;
    void apply();

    bool m_updatesOff;
    double m_pending = 0;
    std::map<double, Targets> m_targets;
    std::unique_ptr<Filter> m_filter;
};

// Grid layouts place the same widgets; fonts are not scaled.
class GridContender : public Contender {
public:
    explicit GridContender(Form form) : Contender(std::move(form)) {}
    std::string name() const override { return "QGridLayout"; }
};

} // namespace bench
