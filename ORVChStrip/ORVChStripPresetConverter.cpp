#include "ORVChStrip/ORVChStripPresetConverter.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QMouseEvent>
#include <QThread>
#include <algorithm>

#include "ORVChStrip/Preset/MyPlxPresetFile.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "ORVChStrip/resources/OrvResources.h"
#include "ui_ORVChStripPresetConverter.h"

using Conversion = ORVChStripPresetConversion;

namespace {

bool isOldPreset(const QString &path)
{
    return MyPlxPresetFile::checkID(path, ORVChStripClassIds::Mono) == 1
        || MyPlxPresetFile::checkID(path, ORVChStripClassIds::Stereo) == 1;
}

// An old preset waits for conversion while its converted copy is missing or
// older than it. The walk skips what the conversion skips: links and
// unreadable or hidden entries.
bool hasPendingPreset(const Conversion::FolderPair &folders)
{
    const QDir source(folders.source);
    QDirIterator it(folders.source, { QStringLiteral("*.plxpreset") },
        QDir::Files | QDir::Readable | QDir::NoSymLinks | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo file(it.next());
        const QFileInfo converted(
            folders.destination + QLatin1Char('/') + source.relativeFilePath(file.filePath()));
        if (converted.exists() && converted.lastModified() >= file.lastModified())
            continue;
        if (isOldPreset(file.filePath()))
            return true;
    }
    return false;
}

} // namespace

ORVChStripPresetConverter::ORVChStripPresetConverter(QWidget *parent)
    : FadingOverlay(parent)
    , m_ui(std::make_unique<Ui::ORVChStripPresetConverter>())
{
    initializeOrvChStripResources();
    m_ui->setupUi(this);
    setOpacity(0.0);
    loadChoice();

    connect(m_ui->m_pYesButton, &QAbstractButton::clicked, this, &ORVChStripPresetConverter::execute);
    connect(m_ui->m_pNoButton, &QAbstractButton::clicked, this, &FadingOverlay::close);
    // The label is part of the check button, as a check box's text is.
    m_ui->m_pAgainLabel->installEventFilter(this);
}

ORVChStripPresetConverter::~ORVChStripPresetConverter()
{
    if (m_pConversion)
        m_pConversion->wait();
}

bool ORVChStripPresetConverter::shouldOfferConversion()
{
    if (!Conversion::askAgain())
        return false;
    const QList<Conversion::FolderPair> pairs = Conversion::folderPairs();
    return std::any_of(pairs.cbegin(), pairs.cend(), hasPendingPreset);
}

void ORVChStripPresetConverter::execute()
{
    if (isConverting())
        return;
    setButtonsEnabled(false);
    // The same conversion as on the GUI thread, file for file and in the same
    // order; only the waiting moves off the GUI thread.
    m_pConversion = QThread::create([] { Conversion::convertAll(); });
    m_pConversion->setParent(this);
    connect(m_pConversion, &QThread::finished, this, &ORVChStripPresetConverter::conversionDone);
    m_pConversion->start();
}

void ORVChStripPresetConverter::conversionDone()
{
    m_pConversion->deleteLater();
    m_pConversion = nullptr;
    setButtonsEnabled(true);
    close();
    emit conversionFinished();
}

void ORVChStripPresetConverter::setButtonsEnabled(bool enabled)
{
    for (QWidget *widget :
        { static_cast<QWidget *>(m_ui->m_pYesButton), static_cast<QWidget *>(m_ui->m_pNoButton),
            static_cast<QWidget *>(m_ui->m_pAgainButton), static_cast<QWidget *>(m_ui->m_pAgainLabel) })
        widget->setEnabled(enabled);
}

void ORVChStripPresetConverter::setOpacity(double opacity)
{
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
    loadChoice(); // another editor may have changed it meanwhile
    FadingOverlay::showEvent(event);
}

void ORVChStripPresetConverter::hideEvent(QHideEvent *event)
{
    // The only place the choice is saved, so every way of leaving saves it.
    Conversion::setAskAgain(!m_ui->m_pAgainButton->isChecked());
    FadingOverlay::hideEvent(event);
}

bool ORVChStripPresetConverter::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->m_pAgainLabel && event->type() == QEvent::MouseButtonRelease
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
