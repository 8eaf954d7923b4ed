#pragma once

class ORVD_Data;

// One visible row of the morph data list: an entry and its depth (0 for the
// top level, 1 for the contents of an open folder). The entry is not owned.
class ORVD_Select
{
public:
    ORVD_Select(ORVD_Data *data, int layerNo)
        : m_pData(data)
        , m_layerNo(layerNo)
    { }

    ORVD_Data *GetData() const { return m_pData; }
    int GetLayerNo() const { return m_layerNo; }

private:
    ORVD_Data *m_pData;
    int m_layerNo;
};
