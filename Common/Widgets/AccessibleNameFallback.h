#pragma once

#include <QString>

class QWidget;

namespace CommonController_MemAPI {

// Gives a control an accessible name until its owner sets one: a text it shows
// or else its object name read as words ("m_pCompressorAttackKnob" reads
// "Compressor Attack Knob"). A name the owner sets is never replaced.
class AccessibleNameFallback
{
public:
    explicit AccessibleNameFallback(QWidget *widget)
        : m_pWidget(widget)
    { }

    // Names the widget `text`, or its object name when `text` is empty.
    void refresh(const QString &text = QString());
    // Names the widget exactly `name` (empty: let the widget's text speak).
    void apply(const QString &name);

    static QString readable(const QString &objectName);

private:
    QWidget *m_pWidget;
    QString m_automatic; // the name set here, which may be replaced
};

} // namespace CommonController_MemAPI
