#pragma once

#include <memory>

#include "ORVChStrip/FadingOverlay.h"

class QThread;

namespace Ui {
class ORVChStripPresetConverter;
}

// The overlay that offers to convert the presets of older versions into the
// folders the current version loads from. "Yes" converts on a worker thread,
// so the editor and its meters keep moving, and fades out when done; "Not
// Now" fades out. The "Don't ask me again" choice is saved whenever the
// overlay hides.
class ORVChStripPresetConverter : public FadingOverlay
{
    Q_OBJECT

public:
    explicit ORVChStripPresetConverter(QWidget *parent = nullptr);
    // Waits for a running conversion: its files are being written.
    ~ORVChStripPresetConverter() override;

    // True when the setting asks again and at least one old preset in the
    // source folders has not been converted yet (its converted copy is
    // missing or older than it).
    static bool shouldOfferConversion();

    bool isConverting() const { return m_pConversion != nullptr; }

public slots:
    // Converts both folder pairs, then fades out. Ignored while converting.
    void execute();
    void setOpacity(double opacity) override;

    // Escape answers "no"; a conversion under way runs to its end.
    void escape() override;

signals:
    void conversionFinished();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void loadChoice();
    void conversionDone();
    void setButtonsEnabled(bool enabled);

    std::unique_ptr<Ui::ORVChStripPresetConverter> m_ui;
    QThread *m_pConversion = nullptr; // a child while it runs
};
