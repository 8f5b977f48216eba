#include "qt/QtFont.h"

#include "layout/MemberNames.h"
#include "qt/QtRichText.h"
#include "qt/QtStyleSheets.h"
#include "qt/QtUnits.h"

#include <QPointer>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTreeView>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <vector>

namespace velmora::qt {

namespace {

// The parts of a Qt widget that show text in a font of their own: under a
// style sheet they keep the font they were polished with, so they are
// given their share of the widget's font explicitly.
std::vector<QWidget *> innerParts(QWidget *w)
{
    std::vector<QWidget *> parts;
    if (auto *tabs = qobject_cast<QTabWidget *>(w)) {
        parts.push_back(tabs->tabBar());
    } else if (auto *table = qobject_cast<QTableView *>(w)) {
        parts.push_back(table->horizontalHeader());
        parts.push_back(table->verticalHeader());
    } else if (auto *tree = qobject_cast<QTreeView *>(w)) {
        parts.push_back(tree->header());
    } else if (qobject_cast<QAbstractSpinBox *>(w) || qobject_cast<QComboBox *>(w)) {
        if (auto *edit = w->findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly))
            parts.push_back(edit);
    }
    return parts;
}

class WidgetFont : public QtFont {
public:
    // Made when the layout is captured: the fonts it has are the design's.
    explicit WidgetFont(QWidget *widget)
        : m_widget(widget)
    {
        if (!m_widget)
            return;
        for (QWidget *part : innerParts(m_widget))
            if (part)
                m_parts.push_back({part, pointSize(part->font())});
        m_designPoints = pointSize(m_widget->font());
        m_followed = !m_parts.empty() || RichText::follows(m_widget);
    }

protected:
    std::optional<QFont> read() const override
    {
        if (!m_widget)
            return std::nullopt;
        return m_widget->font();
    }
    bool write(const QFont &font) override
    {
        if (!m_widget)
            return false;
        m_widget->setFont(font);
        // A style sheet's font size wins over setFont: then the sheet says it.
        StyleSheets::followFont(m_widget, font, m_designPoints);
        follow(font);
        return true;
    }
    // The widget has the font already (a sheet gives it): what follows the
    // font still follows it.
    void unchanged(const QFont &font) override { follow(font); }

private:
    void follow(const QFont &font)
    {
        if (!m_followed || !(m_designPoints > 0) || !m_widget)
            return;
        const double factor = pointSize(font) / m_designPoints;
        followParts(factor);
        // Sizes written inside rich text win over the font too.
        RichText::followFont(m_widget, factor);
    }
    void followParts(double factor)
    {
        for (const Part &p : m_parts) {
            if (!p.widget || !(p.designPoints > 0))
                continue;
            const double wanted = factor == 1.0 ? p.designPoints : p.designPoints * factor;
            if (std::abs(pointSize(p.widget->font()) - wanted) < 0.005)
                continue;
            QFont f = p.widget->font();
            f.setPointSizeF(wanted);
            p.widget->setFont(f);
            StyleSheets::followFont(p.widget, f, p.designPoints);
        }
    }

    struct Part {
        QPointer<QWidget> widget;
        double designPoints;
    };
    QPointer<QWidget> m_widget;
    std::vector<Part> m_parts;
    double m_designPoints = 0;
    bool m_followed = false; // parts or rich text follow the font
};

class FunctionFont : public QtFont {
public:
    FunctionFont(Getter getter, Setter setter) : m_get(std::move(getter)), m_set(std::move(setter)) {}

protected:
    std::optional<QFont> read() const override { return m_get(); }
    bool write(const QFont &font) override { return m_set(font); }

private:
    Getter m_get;
    Setter m_set;
};

} // namespace

std::shared_ptr<QtFont> QtFont::make(Getter getter, Setter setter)
{
    return std::make_shared<FunctionFont>(std::move(getter), std::move(setter));
}

HostObjectPtr QtFont::ofWidget(QWidget *widget)
{
    return std::make_shared<WidgetFont>(widget);
}

double QtFont::pointSize(const QFont &f)
{
    if (f.pointSizeF() > 0)
        return f.pointSizeF();
    // 72 points to the inch; a pixel is twipsPerPixel/20 points.
    return f.pixelSize() > 0 ? f.pixelSize() * twipsPerPixel(Axis::Y) / 20.0 : 0.0;
}

GetResult QtFont::get(std::string_view name)
{
    const auto f = current();
    if (!f)
        return hostError(HostErrc::Failed, "The font's owner is gone");
    if (name == member::Size)
        return Value(static_cast<float>(pointSize(*f)));
    if (name == member::Name)
        return Value(f->family().toStdString());
    if (name == "Bold")
        return Value(f->bold());
    if (name == "Italic")
        return Value(f->italic());
    if (name == "Underline")
        return Value(f->underline());
    if (name == "Strikethrough")
        return Value(f->strikeOut());
    if (name == "Weight")
        return Value(static_cast<int>(f->weight()));
    return noSuchMember(name);
}

SetResult QtFont::set(std::string_view name, const Value &value)
{
    std::function<void(QFont &)> edit;
    if (name == member::Size) {
        const auto size = value.toDouble();
        // QFont ignores sizes it cannot use; refuse them instead so the
        // caller knows the font kept its size.
        if (!size || !(*size > 0) || *size > 16384)
            return hostError(HostErrc::InvalidValue, "Invalid font size");
        const double points = *size;
        // A font given in pixels stays in pixels (whole ones: the size
        // the screen shows is the same on every screen that way).
        edit = [points](QFont &f) {
            if (f.pixelSize() > 0)
                f.setPixelSize(std::max(1, int(std::lround(points * 20.0 / twipsPerPixel(Axis::Y)))));
            else
                f.setPointSizeF(points);
        };
    } else if (name == member::Name) {
        const auto family = value.toText();
        if (!family || family->empty())
            return hostError(HostErrc::InvalidValue, "Invalid font name");
        edit = [family = QString::fromStdString(*family)](QFont &f) { f.setFamily(family); };
    } else if (name == "Bold" || name == "Italic" || name == "Underline" || name == "Strikethrough") {
        const auto on = value.toBool();
        if (!on)
            return hostError(HostErrc::InvalidValue, "Type mismatch");
        void (QFont::*setter)(bool) = name == "Bold" ? &QFont::setBold
            : name == "Italic"                      ? &QFont::setItalic
            : name == "Underline"                   ? &QFont::setUnderline
                                                    : &QFont::setStrikeOut;
        edit = [setter, on = *on](QFont &f) { (f.*setter)(on); };
    } else {
        return noSuchMember(name);
    }
    // A write held back already is changed where it is: the shrink and the
    // real size of one placement cost one copy of the font, not two.
    if (m_pending) {
        edit(*m_pending);
        return Done{};
    }
    auto f = read();
    if (!f)
        return hostError(HostErrc::Failed, "The font's owner is gone");
    edit(*f);
    return apply(std::move(*f));
}

SetResult QtFont::apply(QFont &&font)
{
    if (auto deferral = m_deferral.lock(); deferral && deferral->deferringFonts()) {
        m_pending = std::move(font);
        deferral->fontPending(shared_from_this());
        return Done{};
    }
    if (!write(font))
        return hostError(HostErrc::Failed, "The font could not be applied");
    return Done{};
}

std::optional<QFont> QtFont::takePending()
{
    std::optional<QFont> font;
    font.swap(m_pending);
    // Equal but inherited is not the same: the owner must hold its size
    // itself, or its container's next font would reach it.
    if (font)
        if (const auto now = read(); now && *now == *font && (now->resolveMask() & QFont::SizeResolved)) {
            unchanged(*now);
            font.reset();
        }
    return font;
}

} // namespace velmora::qt
