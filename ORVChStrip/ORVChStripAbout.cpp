#include "ORVChStrip/ORVChStripAbout.h"

#include <QMouseEvent>

#include "ORVChStrip/ORVChStripVersion.h"
#include "ORVChStrip/resources/OrvResources.h"
#include "ui_ORVChStripAbout.h"

ORVChStripAbout::ORVChStripAbout(QWidget *parent)
    : FadingOverlay(parent)
    , m_ui(std::make_unique<Ui::ORVChStripAbout>())
{
    buildContentsWhenNeeded();
}

void ORVChStripAbout::buildContents()
{
    initializeOrvChStripResources();
    m_ui->setupUi(this);
    retranslate();
    setOpacity(0.0);
}

ORVChStripAbout::~ORVChStripAbout() = default;

void ORVChStripAbout::setOpacity(double opacity)
{
    if (!hasContents())
        return;
    QPalette veil = palette();
    veil.setColor(QPalette::Window, veilColor(opacity));
    setPalette(veil);

    m_ui->m_pHalvornLogo->setOpacity(opacity);
    m_ui->m_pORVChSTripLogo->setOpacity(opacity);

    for (QWidget *label : { m_ui->m_pVersionLabel, m_ui->m_pCopyrightLabel }) {
        QPalette text = label->palette();
        text.setColor(QPalette::WindowText, textColor(opacity));
        label->setPalette(text);
    }
}

void ORVChStripAbout::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    close();
}

void ORVChStripAbout::changeEvent(QEvent *event)
{
    FadingOverlay::changeEvent(event);
    if (event->type() == QEvent::LanguageChange && hasContents()) {
        m_ui->retranslateUi(this);
        retranslate();
    }
}

void ORVChStripAbout::retranslate()
{
    // The form's version line leaves the number open; it has one definition.
    m_ui->m_pVersionLabel->setText(
        m_ui->m_pVersionLabel->text().arg(QLatin1String(ORVChStripVersion::Product)));
}
