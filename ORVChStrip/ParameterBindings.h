#pragma once

#include <QList>

namespace CommonController_MemAPI {
class AbstractController;
}
namespace Ui {
class ORVChStripEditor;
}
class IMemAPI;
class ParameterLookup;

// Which control shows which parameter: each key with its control and, for a
// knob, the value field beside it, which shows the same parameter.
class ParameterBindings
{
public:
    ParameterBindings() = default;
    // The controls of the editor's form, each under its key.
    explicit ParameterBindings(const Ui::ORVChStripEditor &form);

    // A knob given a field speaks its value with the unit the field shows.
    void add(const char *key, CommonController_MemAPI::AbstractController *control,
        CommonController_MemAPI::AbstractController *field = nullptr);

    // Binds every control to its parameter on `ch`. A key the model lacks,
    // or no memory at all, leaves its controls unbound.
    void bind(const ParameterLookup &lookup, IMemAPI *memAPI, unsigned short ch) const;

private:
    struct Binding
    {
        const char *key;
        CommonController_MemAPI::AbstractController *controls[2];
    };
    QList<Binding> m_bindings;
};
