#pragma once

#include "Common/EffectEditor.h"

// The smallest editor that can look keys up for a graph under test.
class GraphTestEditor : public EffectEditor
{
public:
    using EffectEditor::EffectEditor;
    FUID uid() const override { return {}; }
    void loadUids(std::vector<FUID> &) const override { }
    IComponent *getPlxComponent() const override { return nullptr; }
    void setMemAPI(IMemAPI *) override { }
    void setCh(int, int) override { }
};
