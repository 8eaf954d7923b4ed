#pragma once

#include "Common/EffectEditor.h"

// The smallest editor there is: it looks keys up through its model info and
// scales its tree, and has no panel, component or bindings of its own.
class MinimalEditor : public EffectEditor
{
public:
    using EffectEditor::EffectEditor;
    FUID uid() const override { return {}; }
    void loadUids(std::vector<FUID> &) const override { }
    IComponent *getPlxComponent() const override { return nullptr; }
    void setMemAPI(IMemAPI *) override { }
    void setCh(int, int) override { }
};
