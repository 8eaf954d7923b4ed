#pragma once

#include <QWidget>
#include <memory>

#include "Common/Widgets/AbstractController.h"
#include "HostModel.h"
#include "ORVChStrip/ORVChStripEditor.h"
#include "ParameterMemory.h"
#include "ValueText.h"

// A host with its model, memory and one editor, driven as a host drives it.
struct EditorHost
{
    explicit EditorHost(HostModel hostModel = HostModel::channelStrip(), int ch2 = 1)
        : model(std::move(hostModel))
        , memory(&model)
        , editor(new ORVChStripEditor)
    {
        editor->setModelInfo(&model);
        editor->initialize();
        editor->setMemAPI(&memory);
        editor->setCh(0, ch2);
    }

    // Offers the stereo strip's spectrum, as the reference host's memory does,
    // so that the spectrum switch takes part.
    void offerSpectrum()
    {
        memory.offerSpectrum(0, 1);
        editor->setMemAPI(&memory);
    }

    template<typename T = QWidget> T *widget(const char *name) const
    {
        return editor->findChild<T *>(QLatin1String(name));
    }
    CommonController_MemAPI::AbstractController *control(const char *name) const
    {
        return dynamic_cast<CommonController_MemAPI::AbstractController *>(widget(name));
    }

    // The text the host shows for the parameter's value now.
    QString valueText(const char *key, int ch = 0) const
    {
        const ParameterDefinition *parameter = model.parameter(model.parameterId(key));
        return parameter ? ValueText::format(*parameter, memory.value(key, ch)) : QString();
    }

    HostModel model;
    ParameterMemory memory;
    std::unique_ptr<ORVChStripEditor> editor;
};
