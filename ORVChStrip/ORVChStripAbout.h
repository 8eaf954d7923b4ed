#pragma once

#include <memory>

#include "ORVChStrip/FadingOverlay.h"

namespace Ui {
class ORVChStripAbout;
}

// The panel laid over the editor with the maker's and the product's logos,
// the release and the copyright line. Any click on it closes it.
class ORVChStripAbout : public FadingOverlay
{
    Q_OBJECT

public:
    explicit ORVChStripAbout(QWidget *parent = nullptr);
    ~ORVChStripAbout() override;

public slots:
    // Veil, logos and texts follow the opacity together.
    void setOpacity(double opacity) override;

protected:
    void buildContents() override;
    void mousePressEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void retranslate();

    std::unique_ptr<Ui::ORVChStripAbout> m_ui;
};
