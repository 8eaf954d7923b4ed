#pragma once

#include <memory>

#include "ORVChStrip/FadingOverlay.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"

class QThread;

namespace Ui {
class ORVChStripPresetConverter;
}

// The overlay that offers to convert the presets of older versions into the
// folders the current version loads from. "Yes" converts on a worker thread,
// so the editor and its meters keep moving, and then shows what was converted
// and what was skipped and why, until "Close"; "Not Now" fades out. The
// "Don't ask me again" choice is saved whenever the overlay hides. Whether to
// offer it at all is ORVChStripPresetConversion::shouldOfferConversion().
class ORVChStripPresetConverter : public FadingOverlay
{
    Q_OBJECT

public:
    explicit ORVChStripPresetConverter(QWidget *parent = nullptr);
    // Waits for a running conversion: its files are being written.
    ~ORVChStripPresetConverter() override;

    bool isConverting() const { return m_pConversion != nullptr; }
    // Whether the overlay shows the outcome of a conversion rather than the
    // question; it asks again the next time it opens.
    bool isShowingResult() const { return m_showingResult; }

public slots:
    // Converts both folder pairs, then shows the outcome. Ignored while converting, and before the panel has
    // its contents.
    void execute();
    void setOpacity(double opacity) override;

    // Escape answers "no", or closes the outcome; a conversion under way runs to its end.
    void escape() override;

signals:
    void conversionFinished();

protected:
    void buildContents() override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void loadChoice();
    void conversionDone();
    void setButtonsEnabled(bool enabled);
    QList<QWidget *> questionControls() const;
    void showQuestion();
    void showResult();
    void styleResultList(double opacity);

    std::unique_ptr<Ui::ORVChStripPresetConverter> m_ui;
    QThread *m_pConversion = nullptr; // a child while it runs
    PresetConversionReport m_report;  // written by the worker, read once it has finished
    bool m_showingResult = false;
    QStringList m_question; // the form's two lines, for when it asks again
};
