#include "ORVChStrip/ORVChStripPresetConverter.h"

#include <QDir>
#include <QMouseEvent>
#include <QScrollBar>
#include <QShowEvent>
#include <QThread>

#include "Common/Widgets/WidgetScale.h"
#include "ORVChStrip/resources/OrvResources.h"
#include "ui_ORVChStripPresetConverter.h"

using Conversion = ORVChStripPresetConversion;
using Item = PresetConversionItem;

namespace {

// Each file and, below it, what became of it, under a heading per outcome,
// the files that need the user's eye first; paths from the preset folder,
// where the user finds them.
QString resultText(const PresetConversionReport &report)
{
    struct Section
    {
        Item::Outcome outcome;
        const char *heading;
    };
    static const Section sections[] = {
        { Item::Failed, "Not converted" },
        { Item::Skipped, "Skipped" },
        { Item::Converted, "Converted" },
        { Item::Removed, "Cleaned up" },
        { Item::Ignored, "Left alone" },
    };
    const QDir base(Conversion::presetBase());
    QStringList lines;
    for (const Section &section : sections) {
        const int count = report.count(section.outcome);
        if (count == 0)
            continue;
        if (!lines.isEmpty())
            lines << QString();
        lines << QStringLiteral("%1 (%2)").arg(QLatin1String(section.heading)).arg(count);
        for (const Item &item : report.items) {
            if (item.outcome != section.outcome)
                continue;
            lines << QStringLiteral("    ") + QDir::toNativeSeparators(base.relativeFilePath(item.source));
            lines << QStringLiteral("        ") + item.reason;
        }
    }
    for (const QString &error : report.errors)
        lines.prepend(error);
    return lines.join(QLatin1Char('\n'));
}

QString resultHeadline(const PresetConversionReport &report)
{
    QString headline = report.summary();
    headline[0] = headline.at(0).toUpper();
    return headline + QLatin1Char('.');
}

QString resultNote(const PresetConversionReport &report)
{
    if (!report.errors.isEmpty() || report.count(Item::Failed) > 0)
        return QStringLiteral("Some presets could not be written; see why below.");
    if (report.count(Item::Skipped) > 0)
        return QStringLiteral("Skipped files stay where they are; see why below.");
    return QStringLiteral("The old preset folders are left as they were.");
}

} // namespace

ORVChStripPresetConverter::ORVChStripPresetConverter(QWidget *parent)
    : FadingOverlay(parent)
    , m_ui(std::make_unique<Ui::ORVChStripPresetConverter>())
{
    buildContentsWhenNeeded();
}

void ORVChStripPresetConverter::buildContents()
{
    initializeOrvChStripResources();
    m_ui->setupUi(this);
    m_question = { m_ui->m_pMessageLabel1->text(), m_ui->m_pMessageLabel2->text() };
    showQuestion();
    setOpacity(0.0);
    loadChoice();

    connect(m_ui->m_pYesButton, &QAbstractButton::clicked, this, &ORVChStripPresetConverter::execute);
    connect(m_ui->m_pNoButton, &QAbstractButton::clicked, this, &FadingOverlay::close);
    connect(m_ui->m_pCloseButton, &QAbstractButton::clicked, this, &FadingOverlay::close);
    // The label is part of the check button, as a check box's text is.
    m_ui->m_pAgainLabel->installEventFilter(this);
}

ORVChStripPresetConverter::~ORVChStripPresetConverter()
{
    if (m_pConversion)
        m_pConversion->wait();
}

void ORVChStripPresetConverter::execute()
{
    if (isConverting() || !hasContents())
        return;
    setButtonsEnabled(false);
    // The same conversion as on the GUI thread, file for file and in the same
    // order; only the waiting moves off the GUI thread.
    m_pConversion = QThread::create([this] { m_report = Conversion::convertAll(); });
    m_pConversion->setParent(this);
    connect(m_pConversion, &QThread::finished, this, &ORVChStripPresetConverter::conversionDone);
    m_pConversion->start();
}

void ORVChStripPresetConverter::conversionDone()
{
    m_pConversion->deleteLater();
    m_pConversion = nullptr;
    setButtonsEnabled(true);
    showResult();
    emit conversionFinished();
}

void ORVChStripPresetConverter::showQuestion()
{
    m_showingResult = false;
    m_ui->m_pMessageLabel1->setText(m_question.value(0));
    m_ui->m_pMessageLabel2->setText(m_question.value(1));
    for (QWidget *widget :
        { static_cast<QWidget *>(m_ui->m_pYesButton), static_cast<QWidget *>(m_ui->m_pNoButton),
            static_cast<QWidget *>(m_ui->m_pAgainButton), static_cast<QWidget *>(m_ui->m_pAgainLabel) })
        widget->show();
    m_ui->m_pResultText->hide();
    m_ui->m_pCloseButton->hide();
    m_ui->m_pResultText->clear();
}

void ORVChStripPresetConverter::showResult()
{
    m_showingResult = true;
    m_ui->m_pMessageLabel1->setText(resultHeadline(m_report));
    m_ui->m_pMessageLabel2->setText(resultNote(m_report));
    m_ui->m_pResultText->setPlainText(resultText(m_report));
    m_ui->m_pResultText->setVisible(!m_ui->m_pResultText->document()->isEmpty());
    m_ui->m_pCloseButton->show();
    for (QWidget *widget :
        { static_cast<QWidget *>(m_ui->m_pYesButton), static_cast<QWidget *>(m_ui->m_pNoButton),
            static_cast<QWidget *>(m_ui->m_pAgainButton), static_cast<QWidget *>(m_ui->m_pAgainLabel) })
        widget->hide();
    // The panel keeps the keyboard while it is open; the buttons it had are gone.
    if (isVisible())
        m_ui->m_pCloseButton->setFocus(Qt::OtherFocusReason);
}

QList<QWidget *> ORVChStripPresetConverter::questionControls() const
{
    return { m_ui->m_pYesButton, m_ui->m_pNoButton, m_ui->m_pAgainButton, m_ui->m_pAgainLabel };
}

void ORVChStripPresetConverter::setButtonsEnabled(bool enabled)
{
    for (QWidget *widget : questionControls())
        widget->setEnabled(enabled);
}

void ORVChStripPresetConverter::setOpacity(double opacity)
{
    if (!hasContents())
        return;
    QPalette veil = palette();
    veil.setColor(QPalette::Window, veilColor(opacity));
    setPalette(veil);

    QPalette bar = m_ui->m_pBar->palette();
    bar.setColor(QPalette::Window, textColor(opacity));
    m_ui->m_pBar->setPalette(bar);

    for (QWidget *label :
        { m_ui->m_pTitleLabel, m_ui->m_pMessageLabel1, m_ui->m_pMessageLabel2, m_ui->m_pAgainLabel }) {
        QPalette text = label->palette();
        text.setColor(QPalette::WindowText, textColor(opacity));
        label->setPalette(text);
    }

    m_ui->m_pHalvornLogo->setOpacity(opacity);
    m_ui->m_pORVChSTripLogo->setOpacity(opacity);
    m_ui->m_pYesButton->setOpacity(opacity);
    m_ui->m_pNoButton->setOpacity(opacity);
    m_ui->m_pAgainButton->setOpacity(opacity);
    m_ui->m_pCloseButton->setOpacity(opacity);

    // The list lies on a faint sheet of its own so that its edges show.
    QPalette list = m_ui->m_pResultText->palette();
    const QColor text = textColor(opacity);
    QColor sheet = text;
    sheet.setAlphaF(float(text.alphaF() * 0.06));
    for (auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        list.setColor(group, QPalette::Text, text);
        list.setColor(group, QPalette::Base, sheet);
    }
    m_ui->m_pResultText->setPalette(list);
    styleResultList(opacity);
}

void ORVChStripPresetConverter::styleResultList(double opacity)
{
    // A thin rounded slider without arrows, fading with the rest; it and
    // the text's margin follow the editor's scale.
    const double scale = getWidgetScale(this);
    m_ui->m_pResultText->document()->setDocumentMargin(6.0 * scale);
    QColor slider = textColor(opacity);
    slider.setAlphaF(float(slider.alphaF() * 0.35));
    const int width = qRound(6 * scale);
    m_ui->m_pResultText->verticalScrollBar()->setStyleSheet(QStringLiteral(
        "QScrollBar:vertical { background: transparent; width: %1px; margin: 0; }"
        "QScrollBar::handle:vertical { background: %2; border-radius: %3px; min-height: %4px; }"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }")
                                                                .arg(width)
                                                                .arg(slider.name(QColor::HexArgb))
                                                                .arg(width / 2)
                                                                .arg(qRound(16 * scale)));
}

void ORVChStripPresetConverter::resizeEvent(QResizeEvent *event)
{
    FadingOverlay::resizeEvent(event);
    if (hasContents())
        styleResultList(visibleFraction());
}

void ORVChStripPresetConverter::loadChoice()
{
    m_ui->m_pAgainButton->setChecked(!Conversion::askAgain());
}

void ORVChStripPresetConverter::escape()
{
    if (!isConverting())
        close();
}

void ORVChStripPresetConverter::showEvent(QShowEvent *event)
{
    // Opened again, it asks again; a window coming back keeps what it showed.
    if (!event->spontaneous() && m_showingResult)
        showQuestion();
    loadChoice(); // another editor may have changed it meanwhile
    FadingOverlay::showEvent(event);
}

void ORVChStripPresetConverter::hideEvent(QHideEvent *event)
{
    // The only place the choice is saved, so every way of leaving saves it.
    if (hasContents())
        Conversion::setAskAgain(!m_ui->m_pAgainButton->isChecked());
    FadingOverlay::hideEvent(event);
}

bool ORVChStripPresetConverter::eventFilter(QObject *watched, QEvent *event)
{
    if (hasContents() && watched == m_ui->m_pAgainLabel && event->type() == QEvent::MouseButtonRelease
        && m_ui->m_pAgainLabel->isEnabled()) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::LeftButton
            && m_ui->m_pAgainLabel->rect().contains(mouse->position().toPoint())) {
            m_ui->m_pAgainButton->click();
            return true;
        }
    }
    return FadingOverlay::eventFilter(watched, event);
}
