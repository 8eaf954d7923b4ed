#pragma once

#include <QPixmap>
#include <QWidget>

#include "Common/ObservedParameters.h"
#include "Interfaces/IPrmObserver.h"
#include "ORVChStrip/Filter/CompressorCurve.h"

class EffectEditor;
class IMemAPI;

// The compressor's static transfer curve (output against input level, -60 to
// 0 dB on both axes) for one channel. It keeps no values of its own: every
// paint reads ratio, knee, threshold offset and drive from the host.
class ORVChStripCompressorGraph : public QWidget, public IPrmObserver
{
    Q_OBJECT

public:
    ORVChStripCompressorGraph(QWidget *parent, EffectEditor *editor);
    ~ORVChStripCompressorGraph() override;

    void setMemAPI(IMemAPI *memAPI);
    void setCh(int ch);

    IMemAPI *memAPI() const { return m_pMemAPI; }
    int ch() const { return m_ch; }
    // The host's current values; defaults without a memory.
    CompressorCurve::Settings currentSettings() const;

    int Update(unsigned short prmId, unsigned short ch, int value, const char *text) override;
    int UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *) override
    {
        return 0;
    }

    QSize sizeHint() const override { return QSize(191, 191); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    enum Parameter { Ratio, Knee, ThresholdOffset, Drive, ParameterCount };

    void addObservers();
    void removeObservers();
    bool readValue(Parameter parameter, int *value) const;
    void ensureGridLayer(double devicePixelRatio);

    EffectEditor *m_pEditor;
    IMemAPI *m_pMemAPI = nullptr;
    int m_ch = 0;
    ObservedParameters m_parameters;
    QPixmap m_gridLayer;
};
