#pragma once

#include "Common/EffectEditor.h"
#include "Common/ObservedParameters.h"
#include "Interfaces/IMeterObserver.h"
#include "Interfaces/IPrmObserver.h"

class QLabel;
class ORVChStripComponent;
class ORVChStripCompressorGraph;
class ORVChStripEqualizerGraph;

// The channel strip's editor panel (1015 x 572 design pixels). For now the
// panel shows its frame, section titles and the parts that already exist;
// the controls are placed as they are built.
class ORVChStripEditor : public EffectEditor, public IPrmObserver, public IMeterObserver
{
    Q_OBJECT

public:
    static constexpr int DesignWidth = 1015;
    static constexpr int DesignHeight = 572;

    explicit ORVChStripEditor(QWidget *parent = nullptr);
    ~ORVChStripEditor() override;

    FUID uid() const override;
    void loadUids(std::vector<FUID> &uids) const override;
    // The editor's state component; it follows the editor's model, memory and channel.
    IComponent *getPlxComponent() const override;
    void setModelInfo(IModelInfo *modelInfo) override;
    void setMemAPI(IMemAPI *memAPI) override;
    void setCh(int ch1, int ch2) override;
    void setFs(int fs) override;

    int Update(unsigned short prmId, unsigned short ch, int value, const char *text) override;
    int UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *) override
    {
        return 0;
    }
    void notifyMeterLvlUpdated(unsigned int *, unsigned int) override { }
    void notifyMeterDbUpdated(unsigned int *values, unsigned int count) override;

    IMemAPI *memAPI() const { return m_pMemAPI; }
    int ch1() const { return m_ch1; }
    int ch2() const { return m_ch2; }

private:
    void buildPanel();
    void buildGraphs();
    void unregisterObservers();
    void registerObservers();

    ORVChStripComponent *m_pComponent;
    IMemAPI *m_pMemAPI = nullptr;
    int m_ch1 = 0;
    int m_ch2 = -1;
    ObservedParameters m_observed;
    ORVChStripCompressorGraph *m_pCompressorGraph = nullptr;
    ORVChStripEqualizerGraph *m_pEqualizerGraph = nullptr;
};
