#include "qt/QtRichText.h"

#include "qt/QtStyleSheets.h"

#include <QHash>
#include <QLabel>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

#include <cmath>
#include <vector>

namespace velmora::qt::RichText {

namespace {

struct LabelText {
    QString original; // as the application set it
    QString applied;  // as Velmora set it last
    QMetaObject::Connection watch;
};

QHash<const QLabel *, LabelText> &labels()
{
    static QHash<const QLabel *, LabelText> table;
    return table;
}

bool mayHoldSizes(const QString &text)
{
    return text.contains(QLatin1String("font-size"), Qt::CaseInsensitive) && Qt::mightBeRichText(text);
}

void followLabel(QLabel *label, double factor)
{
    auto &table = labels();
    auto it = table.find(label);
    const QString text = label->text();
    if (it == table.end()) {
        if (factor == 1.0 || label->textFormat() == Qt::PlainText || !mayHoldSizes(text))
            return;
        it = table.insert(label, LabelText{text, text, {}});
        it->watch = QObject::connect(label, &QObject::destroyed, [label] { labels().remove(label); });
    } else if (text != it->applied) {
        it->original = text; // the application's own text since
    }
    const QString wanted = scaleSizes(it->original, factor);
    if (wanted != text)
        label->setText(wanted);
    it->applied = wanted;
    if (factor == 1.0) {
        QObject::disconnect(it->watch);
        table.erase(it);
    }
}

// The design sizes ride along in the character formats (Qt writes no user
// property to HTML), so text typed or inserted next to them inherits them.
constexpr int DesignPoints = QTextFormat::UserProperty + 0x564d;
constexpr int DesignPixels = DesignPoints + 1;

void followDocument(QTextEdit *edit, double factor)
{
    QTextDocument *doc = edit->document();
    struct Change {
        int from, to;
        QTextCharFormat format;
    };
    std::vector<Change> changes;
    for (QTextBlock block = doc->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QTextCharFormat f = fragment.charFormat();
            QTextCharFormat wanted;
            if (factor == 1.0 && !f.hasProperty(DesignPoints) && !f.hasProperty(DesignPixels))
                continue; // never scaled
            // Both may be there (a size in pixels under a body in points):
            // Qt shows the pixels.
            bool change = false;
            if (f.hasProperty(QTextFormat::FontPointSize)) {
                const double design = f.hasProperty(DesignPoints) ? f.doubleProperty(DesignPoints)
                                                                  : f.doubleProperty(QTextFormat::FontPointSize);
                const double points = factor == 1.0 ? design : std::max(0.01, std::round(design * factor * 100) / 100);
                if (points != f.doubleProperty(QTextFormat::FontPointSize) || !f.hasProperty(DesignPoints)) {
                    wanted.setProperty(QTextFormat::FontPointSize, points);
                    wanted.setProperty(DesignPoints, design);
                    change = true;
                }
            }
            if (f.hasProperty(QTextFormat::FontPixelSize)) {
                const int design = f.hasProperty(DesignPixels) ? f.intProperty(DesignPixels)
                                                               : f.intProperty(QTextFormat::FontPixelSize);
                const int pixels = factor == 1.0 ? design : std::max(1, int(std::lround(design * factor)));
                if (pixels != f.intProperty(QTextFormat::FontPixelSize) || !f.hasProperty(DesignPixels)) {
                    wanted.setProperty(QTextFormat::FontPixelSize, pixels);
                    wanted.setProperty(DesignPixels, design);
                    change = true;
                }
            }
            if (!change)
                continue;
            changes.push_back({fragment.position(), fragment.position() + fragment.length(), wanted});
        }
    }
    if (changes.empty())
        return;
    // Not an edit of the user's: no undo step where there is no history
    // yet, no "modified", no textChanged.
    const QSignalBlocker quiet(edit);
    const bool modified = doc->isModified();
    const bool undo = doc->isUndoRedoEnabled() && doc->availableUndoSteps() == 0;
    if (undo)
        doc->setUndoRedoEnabled(false);
    QTextCursor cursor(doc);
    cursor.beginEditBlock();
    for (const Change &c : changes) {
        cursor.setPosition(c.from);
        cursor.setPosition(c.to, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(c.format);
    }
    cursor.endEditBlock();
    if (undo)
        doc->setUndoRedoEnabled(true);
    doc->setModified(modified);
}

} // namespace

QString scaleSizes(const QString &html, double factor)
{
    if (factor == 1.0 || !html.contains(QLatin1String("font-size"), Qt::CaseInsensitive))
        return html;
    static const QRegularExpression size(QStringLiteral("(font-size\\s*:\\s*)(\\d*\\.?\\d+)(pt|px)"),
                                         QRegularExpression::CaseInsensitiveOption);
    return StyleSheets::replaced(html, size, [&](const QRegularExpressionMatch &m) {
        return m.captured(1) + StyleSheets::scaledFontSize(m.captured(2).toDouble(), m.captured(3), factor);
    });
}

bool follows(const QWidget *widget)
{
    return qobject_cast<const QLabel *>(widget) || qobject_cast<const QTextEdit *>(widget);
}

void followFont(QWidget *widget, double factor)
{
    if (!(factor > 0) || !std::isfinite(factor))
        return;
    // The design font read back through a float is the design font.
    if (std::abs(factor - 1.0) < 1e-6)
        factor = 1.0;
    if (auto *label = qobject_cast<QLabel *>(widget))
        followLabel(label, factor);
    else if (auto *edit = qobject_cast<QTextEdit *>(widget))
        followDocument(edit, factor);
}

} // namespace velmora::qt::RichText
