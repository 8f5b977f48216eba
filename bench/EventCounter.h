// Counts the paint and font-change events each widget receives.
#pragma once

#include <QEvent>
#include <QHash>
#include <QObject>
#include <QWidget>

#include <vector>

namespace bench {

class EventCounter : public QObject {
public:
    struct PerWidget {
        double paints = 0, fontChanges = 0; // mean per widget
        int maxPaints = 0, maxFontChanges = 0, minPaints = 0;
    };

    // Counts from construction to destruction, application-wide.
    EventCounter();
    ~EventCounter() override;

    PerWidget of(const std::vector<QWidget *> &widgets) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QHash<QObject *, int> m_paints, m_fontChanges;
};

} // namespace bench
