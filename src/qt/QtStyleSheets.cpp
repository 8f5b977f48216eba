#include "qt/QtStyleSheets.h"

#include "qt/QtFont.h"
#include "qt/QtUnits.h"

#include <QHash>
#include <QSet>
#include <QMdiSubWindow>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QWidget>

#include <cmath>

namespace velmora::qt {

namespace {

// What Velmora has done to one widget's own sheet.
struct SheetState {
    QString original; // the widget's own text, as the application set it
    QString applied;  // the text Velmora set last
    double lengths = 1.0;
    double fonts = 1.0;
    std::optional<double> pin; // points
    // A sheet that extended would not read as it does alone: left as the
    // application wrote it, until it writes another.
    bool alone = false;
};

QHash<const QWidget *, SheetState> &states()
{
    static QHash<const QWidget *, SheetState> table;
    return table;
}

SheetState *stateOf(QWidget *w, bool create)
{
    auto &table = states();
    auto it = table.find(w);
    if (it == table.end()) {
        if (!create)
            return nullptr;
        it = table.insert(w, SheetState{w->styleSheet(), w->styleSheet(), 1.0, 1.0, std::nullopt, false});
        // Once per widget, however often its state comes and goes.
        static QSet<const QWidget *> watched;
        if (!watched.contains(w)) {
            watched.insert(w);
            QObject::connect(w, &QObject::destroyed, [w] {
                watched.remove(w);
                states().remove(w);
            });
        }
    } else if (w->styleSheet() != it->applied) {
        // The application set a sheet of its own since: that is the
        // original now.
        it->original = it->applied = w->styleSheet();
        it->alone = false;
    }
    return &*it;
}

bool samePoints(double a, double b)
{
    return std::abs(a - b) < 0.005;
}

// Whether a widget shows `wanted` points: a sheet in pixels gives whole
// pixels, and the nearest is as near as it can come.
bool shows(const QFont &font, double wanted)
{
    if (samePoints(QtFont::pointSize(font), wanted))
        return true;
    return font.pixelSize() > 0 && font.pixelSize() == std::lround(wanted * 20.0 / twipsPerPixel(Axis::Y));
}

// A selector for this widget alone, as specific as the sheets usually are
// (a type and, where it is a valid identifier, its name), so that it also
// wins over the widget's own rules by coming last.
QString pinSelector(const QWidget *w)
{
    static const QRegularExpression ident(QStringLiteral("^[A-Za-z_][A-Za-z0-9_-]*$"));
    QString selector = QString::fromLatin1(w->metaObject()->className()).replace(QLatin1String("::"), QLatin1String("--"));
    if (ident.match(w->objectName()).hasMatch())
        selector += u'#' + w->objectName();
    return selector + QStringLiteral("[%1=\"true\"]").arg(QLatin1String(StyleSheets::PinProperty));
}

// Qt says so when it cannot read a sheet, as it reads it.
QStringList *parseFailures = nullptr;
QtMessageHandler previousHandler = nullptr;

void catchParseFailures(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (parseFailures && type == QtWarningMsg && text.startsWith(QLatin1String("Could not parse stylesheet")))
        parseFailures->append(text);
    else if (previousHandler)
        previousHandler(type, context, text);
}

// Sets `text`; false when Qt could not read it.
bool setReadably(QWidget *w, const QString &text)
{
    QStringList failures;
    parseFailures = &failures;
    previousHandler = qInstallMessageHandler(catchParseFailures);
    w->setStyleSheet(text);
    w->ensurePolished(); // a widget never shown reads its sheet only now
    qInstallMessageHandler(previousHandler);
    parseFailures = nullptr;
    return failures.isEmpty();
}

void compose(QWidget *w, SheetState &s)
{
    QString text = s.alone ? s.original : StyleSheets::scaleLengths(s.original, s.lengths, s.fonts);
    const bool pinned = s.pin && !s.alone;
    if (pinned) {
        // A bare list of declarations is a rule for everything; written as
        // one, so that a rule can follow it, the way Qt itself reads it.
        if (StyleSheets::isBare(text))
            text = QStringLiteral("* {%1}").arg(text);
        text += QStringLiteral("\n%1 { font-size: %2pt; }").arg(pinSelector(w)).arg(*s.pin, 0, 'g', 6);
    }
    if (!s.alone && text != s.original && !StyleSheets::isClosed(s.original)) {
        // Something written after an open comment, string or rule would
        // land inside it.
        s.alone = true;
        text = s.original;
    }
    w->setProperty(StyleSheets::PinProperty, s.alone || !pinned ? QVariant() : QVariant(true));
    if (text != w->styleSheet()) {
        const bool read = setReadably(w, text);
        if (text != s.original
            && (!read || (pinned && !samePoints(QtFont::pointSize(w->font()), *s.pin)))) {
            // Qt reads it differently from the sheet it extends: leave that
            // sheet as the application wrote it.
            s.alone = true;
            text = s.original;
            w->setProperty(StyleSheets::PinProperty, QVariant());
            w->setStyleSheet(text);
        }
    }
    s.applied = text;
    // Back to the application's own sheet: nothing of Velmora's is left.
    if (!s.alone && !s.pin && s.lengths == 1.0 && s.fonts == 1.0)
        states().remove(w);
}

} // namespace

QString StyleSheets::replaced(const QString &text, const QRegularExpression &re,
                             const std::function<QString(const QRegularExpressionMatch &)> &by)
{
    QString out;
    qsizetype at = 0;
    for (auto it = re.globalMatch(text); it.hasNext();) {
        const auto m = it.next();
        out += QStringView(text).mid(at, m.capturedStart() - at);
        out += by(m);
        at = m.capturedEnd();
    }
    out += QStringView(text).mid(at);
    return out;
}

QString StyleSheets::scaledFontSize(double size, const QString &unit, double factor)
{
    const double scaled = size * factor;
    const bool pixels = unit.compare(QLatin1String("px"), Qt::CaseInsensitive) == 0;
    return (pixels ? QString::number(std::max(1.0, std::round(scaled)), 'f', 0)
                   : QString::number(std::max(0.01, std::round(scaled * 100) / 100), 'g', 8))
        + unit;
}

bool StyleSheets::isClosed(const QString &sheet)
{
    QChar quote;
    int depth[3] = {0, 0, 0}; // braces, parentheses, brackets
    for (qsizetype i = 0; i < sheet.size(); ++i) {
        const QChar c = sheet.at(i);
        if (!quote.isNull()) {
            if (c == u'\\')
                ++i;
            else if (c == quote)
                quote = QChar();
        } else if (c == u'"' || c == u'\'') {
            quote = c;
        } else if (c == u'/' && sheet.mid(i, 2) == QLatin1String("/*")) {
            const qsizetype end = sheet.indexOf(QLatin1String("*/"), i + 2);
            if (end < 0)
                return false;
            i = end + 1;
        } else {
            const int k = QStringView(u"{}()[]").indexOf(c);
            if (k >= 0 && (depth[k / 2] += k % 2 ? -1 : 1) < 0)
                return false;
        }
    }
    return quote.isNull() && depth[0] == 0 && depth[1] == 0 && depth[2] == 0;
}

bool StyleSheets::isBare(const QString &sheet)
{
    QChar quote;
    for (qsizetype i = 0; i < sheet.size(); ++i) {
        const QChar c = sheet.at(i);
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
        } else if (c == u'"' || c == u'\'') {
            quote = c;
        } else if (c == u'/' && sheet.mid(i, 2) == QLatin1String("/*")) {
            const qsizetype end = sheet.indexOf(QLatin1String("*/"), i + 2);
            i = end < 0 ? sheet.size() : end + 1;
        } else if (c == u'{') {
            return false;
        }
    }
    return !sheet.trimmed().isEmpty();
}

QString StyleSheets::scaleLengths(const QString &sheet, double factor, double fontFactor)
{
    const bool px = sheet.contains(QLatin1String("px"), Qt::CaseInsensitive);
    if ((factor == 1.0 || !px) && (fontFactor == 1.0 || !(px || sheet.contains(QLatin1String("pt"), Qt::CaseInsensitive))))
        return sheet;
    static const QRegularExpression length(QStringLiteral("(?<![\\w.-])(-?)(\\d*\\.?\\d+)px\\b"),
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression fontSize(QStringLiteral("(?<![\\w.-])(\\d*\\.?\\d+)(px|pt)\\b"),
                                             QRegularExpression::CaseInsensitiveOption);
    const auto scaledFont = [&](const QString &text) {
        if (fontFactor == 1.0)
            return text;
        return replaced(text, fontSize, [&](const QRegularExpressionMatch &m) {
            return scaledFontSize(m.captured(1).toDouble(), m.captured(2), fontFactor);
        });
    };
    const auto scaled = [&](const QString &text) {
        if (factor == 1.0)
            return text;
        return replaced(text, length, [&](const QRegularExpressionMatch &m) {
            const double px = m.captured(2).toDouble();
            double n = std::round(px * factor);
            if (px >= 1 && n < 1)
                n = 1;
            return m.captured(1) + QString::number(n, 'f', 0) + QLatin1String("px");
        });
    };

    // Pieces of the sheet: text that may hold lengths, and what is kept
    // verbatim (comments, strings, anything in parentheses such as url()).
    struct Piece {
        QString text;
        bool verbatim;
    };
    std::vector<Piece> pieces;
    for (qsizetype i = 0; i < sheet.size();) {
        qsizetype end = i;
        bool verbatim = true;
        const QChar c = sheet.at(i);
        if (c == u'/' && sheet.mid(i, 2) == QLatin1String("/*")) {
            const qsizetype close = sheet.indexOf(QLatin1String("*/"), i + 2);
            end = close < 0 ? sheet.size() : close + 2;
        } else if (c == u'"' || c == u'\'') {
            const qsizetype close = sheet.indexOf(c, i + 1);
            end = close < 0 ? sheet.size() : close + 1;
        } else if (c == u'(') {
            int depth = 0;
            for (end = i; end < sheet.size(); ++end) {
                depth += sheet.at(end) == u'(' ? 1 : sheet.at(end) == u')' ? -1 : 0;
                if (depth == 0)
                    break;
            }
            end = qMin(end + 1, sheet.size());
        } else {
            verbatim = false;
            while (end < sheet.size() && !QStringView(u"/\"'(").contains(sheet.at(end)))
                ++end;
            if (end == i) // a lone '/'
                ++end;
        }
        pieces.push_back({sheet.mid(i, end - i), verbatim});
        i = end;
    }

    // Declarations are inside braces, or the whole sheet when it has none
    // (a widget's own sheet may be a bare list of declarations). Lengths
    // scale in the values of declarations other than font and font-size.
    const bool braces = !isBare(sheet);
    QString out;
    int depth = 0;
    QString property; // of the declaration being read
    bool inValue = false;
    for (const Piece &p : pieces) {
        if (p.verbatim) {
            out += p.text;
            if (!inValue && (depth > 0 || !braces))
                property += p.text;
            continue;
        }
        QString run; // text of this piece not yet written
        const auto emitRun = [&](bool value) {
            const QString prop = property.trimmed().toLower();
            const bool font = prop == QLatin1String("font") || prop == QLatin1String("font-size");
            out += !value ? run : font ? scaledFont(run) : scaled(run);
            run.clear();
        };
        for (const QChar c : p.text) {
            const bool declaring = depth > 0 || !braces;
            if (c == u'{' || c == u'}') {
                emitRun(declaring && inValue);
                out += c;
                depth += c == u'{' ? 1 : -1;
                property.clear();
                inValue = false;
            } else if (declaring && c == u';') {
                emitRun(inValue);
                out += c;
                property.clear();
                inValue = false;
            } else if (declaring && !inValue && c == u':') {
                emitRun(false);
                out += c;
                inValue = true;
            } else {
                run += c;
                if (declaring && !inValue)
                    property += c;
            }
        }
        emitRun((depth > 0 || !braces) && inValue);
    }
    return out;
}

void StyleSheets::followFont(QWidget *widget, const QFont &font, double designPoints)
{
    const double wanted = QtFont::pointSize(font);
    // A font that scales may take the size the scaled sheets give it when
    // that is within rounding of the widget's own (the sheet's factor is the
    // form's, the widget's comes from its placed size): no pin then, and
    // the sheet's own pseudo-state sizes keep working. One that keeps its
    // design size keeps it exactly.
    const bool scales = designPoints > 0 && !samePoints(wanted, designPoints);
    const auto takes = [&](const QFont &now) {
        return shows(now, wanted)
            || (scales && std::abs(QtFont::pointSize(now) - wanted) <= 0.03 * wanted);
    };
    // No pinned or scaled sheet in the process: nothing to look up.
    SheetState *s = states().isEmpty() ? nullptr : stateOf(widget, false);
    if (!s || !s->pin) {
        // The common case: the size took.
        if (takes(widget->font()))
            return;
        if (!s)
            s = stateOf(widget, true);
    }
    if (s->pin) {
        // What the sheets give without the pin.
        s->pin.reset();
        compose(widget, *s);
        if (takes(widget->font()))
            return;
        s = stateOf(widget, true);
    }
    s->pin = wanted;
    compose(widget, *s);
}

void StyleSheets::dropPins(QWidget *window)
{
    if (states().isEmpty() || !window)
        return;
    QList<QWidget *> pinned;
    for (auto it = states().cbegin(); it != states().cend(); ++it)
        if (it->pin && it.key()->window() == window)
            pinned.append(const_cast<QWidget *>(it.key()));
    for (QWidget *w : pinned)
        if (SheetState *s = stateOf(w, false); s && s->pin) {
            s->pin.reset();
            compose(w, *s);
        }
}

void FormStyleSheets::capture(QWidget *form)
{
    m_widgets.clear();
    m_bases.clear();
    m_fontBases.clear();
    if (!form)
        return;
    // The form's own sheet and its ancestors' up to the window, and every
    // sheet inside that window but in other forms' MDI windows.
    std::vector<QWidget *> found;
    m_holders.clear();
    for (QWidget *w = form; w; w = w->isWindow() ? nullptr : w->parentWidget()) {
        found.push_back(w);
        m_holders.emplace_back(w);
    }
    QWidget *window = found.back();
    std::vector<QWidget *> stack{window};
    while (!stack.empty()) {
        QWidget *w = stack.back();
        stack.pop_back();
        for (QObject *child : w->children()) {
            auto *cw = qobject_cast<QWidget *>(child);
            if (!cw || cw->isWindow() || qobject_cast<QMdiSubWindow *>(cw))
                continue;
            found.push_back(cw);
            stack.push_back(cw);
        }
    }
    for (QWidget *w : found) {
        const SheetState *s = stateOf(w, false);
        if (!s && w->styleSheet().isEmpty())
            continue;
        m_widgets.emplace_back(w);
        m_bases.push_back(s ? s->lengths : 1.0);
        m_fontBases.push_back(s ? s->fonts : 1.0);
    }
}

bool FormStyleSheets::scale(double factor, double fontFactor)
{
    // Sizes a sheet gives the form and what holds it are the form's own
    // limits, not a control's: scaled, they would hold the form at the size
    // it grew to. They stay as they are.
    struct Limits {
        QWidget *w;
        QSize minimum, maximum;
    };
    std::vector<Limits> limits;
    for (QWidget *w : m_holders)
        if (w)
            limits.push_back({w, w->minimumSize(), w->maximumSize()});
    const auto restoreLimits = qScopeGuard([&] {
        for (const Limits &l : limits) {
            if (l.w->minimumSize() != l.minimum)
                l.w->setMinimumSize(l.minimum);
            if (l.w->maximumSize() != l.maximum)
                l.w->setMaximumSize(l.maximum);
        }
    });
    bool changed = false;
    for (std::size_t i = 0; i < m_widgets.size(); ++i) {
        QWidget *w = m_widgets[i];
        if (!w)
            continue;
        const double lengths = m_bases[i] * factor, fonts = m_fontBases[i] * fontFactor;
        SheetState *s = stateOf(w, false);
        if (!s) {
            if ((lengths == 1.0 && fonts == 1.0) || w->styleSheet().isEmpty())
                continue;
            s = stateOf(w, true);
        }
        if (s->lengths == lengths && s->fonts == fonts)
            continue;
        s->lengths = lengths;
        s->fonts = fonts;
        compose(w, *s);
        changed = true;
    }
    return changed;
}

} // namespace velmora::qt
