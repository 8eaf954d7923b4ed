#include "Common/EffectEditor.h"

#include <QScrollArea>
#include <cmath>

#include "Common/EffectFonts.h"
#include "Common/EffectStyle.h"
#include "Common/Widgets/AbstractController.h"

using CommonController_MemAPI::FaderController;
using CommonController_MemAPI::KnobController;

namespace {

QList<QWidget *> childWidgets(const QWidget *widget)
{
    QList<QWidget *> children;
    for (QObject *child : widget->children()) {
        if (child->isWidgetType())
            children.append(static_cast<QWidget *>(child));
    }
    return children;
}

int scaled(int value, double scale)
{
    return static_cast<int>(value * scale + 0.5);
}

template<typename Control> void applyOperationType(QWidget *widget, typename Control::OperationType type)
{
    if (auto *control = qobject_cast<Control *>(widget))
        control->setOperationType(type);
    for (QWidget *child : childWidgets(widget))
        applyOperationType<Control>(child, type);
}

} // namespace

EffectEditor::EffectEditor(QWidget *parent)
    : IQXEffectEditor2(parent)
    , m_pStyle(new EffectStyle)
{
    m_pStyle->setParent(this);
}

EffectEditor::~EffectEditor() = default;

void EffectEditor::setModelInfo(IModelInfo *modelInfo)
{
    m_lookup.setModelInfo(modelInfo);
}

void EffectEditor::initialize()
{
    initializeFontStyle(this);
    initializeFontSize(this);
    initializeStyle(this, m_pStyle);
    initializePalette(this, palette());
    m_widgetInformationList.clear();
    getWidgetInformationList(this, m_widgetInformationList);
    m_initialized = true;
}

bool EffectEditor::getParameter(
    IModelInfo *modelInfo, const char *key, unsigned short *prmId, unsigned short *second)
{
    return ParameterLookup(modelInfo).parameter(key, prmId, second);
}

void EffectEditor::initializeFontStyle(QWidget *widget)
{
    for (QWidget *child : childWidgets(widget))
        initializeFontStyle(child);

    const QFont old = widget->font();
    const EffectFonts::Weight weight = EffectFonts::designWeight(old.family());
    if (weight == EffectFonts::NoDesignFamily)
        return;
    QFont font = EffectFonts::font(weight, old.pointSize() > 0 ? old.pointSize() : 9);
    if (old.pointSize() <= 0 && old.pixelSize() > 0)
        font.setPixelSize(old.pixelSize());
    font.setWeight(old.weight() < 501 ? QFont::Weight(400) : QFont::Weight(700));
    font.setItalic(old.style() != QFont::StyleNormal);
    font.setUnderline(old.underline());
    font.setStrikeOut(old.strikeOut());
    font.setKerning(old.kerning());
    font.setStyleStrategy(QFont::PreferAntialias);
    // The weight above is a coarse hint; the style name keeps the designed
    // face (Medium stays Medium) when the font is matched.
    font.setStyleName(EffectFonts::styleName(weight));
    widget->setFont(font);
}

void EffectEditor::initializeFontSize(QWidget *widget)
{
    QFont font = widget->font();
    if (font.pointSize() > 0) {
        font.setPixelSize(static_cast<int>(font.pointSize() * 1.34 + 0.5));
        widget->setFont(font);
    }
    for (QWidget *child : childWidgets(widget))
        initializeFontSize(child);
}

void EffectEditor::initializeStyle(QWidget *widget, QStyle *style)
{
    widget->setStyle(style);
    for (QWidget *child : childWidgets(widget))
        initializeStyle(child, style);
}

void EffectEditor::initializePalette(QWidget *widget, const QPalette &palette)
{
    initializePalette(widget, palette, true);
}

void EffectEditor::initializePalette(QWidget *widget, const QPalette &palette, bool top)
{
    QPalette result = widget->palette();
    for (int role = 0; role <= 18; ++role) {
        const auto colorRole = static_cast<QPalette::ColorRole>(role);
        if (!result.isBrushSet(QPalette::Disabled, colorRole))
            result.setBrush(QPalette::Disabled, colorRole, palette.brush(QPalette::Disabled, colorRole));
    }
    for (QWidget *child : childWidgets(widget))
        initializePalette(child, result, false);
    // A widget that inherits its palette gets the same colours from its
    // parent's result once that is set; setting them as its own as well
    // would run the propagation through its subtree once more per level.
    const bool inherits = !widget->testAttribute(Qt::WA_SetPalette) && !widget->isWindow()
        && !widget->testAttribute(Qt::WA_StyleSheet);
    if (top || !inherits)
        widget->setPalette(result);
}

void EffectEditor::getWidgetInformationList(QWidget *widget, QList<WidgetInformation> &list)
{
    const QRect geometry = widget->geometry();
    const QFont font = widget->font();
    list.append({ widget, geometry.left(), geometry.top(), geometry.right(), geometry.bottom(),
        font.pointSize(), font.pixelSize() });

    if (auto *scrollArea = qobject_cast<QScrollArea *>(widget)) {
        if (QWidget *content = scrollArea->widget())
            getWidgetInformationList(content, list);
        return;
    }
    for (QWidget *child : childWidgets(widget))
        getWidgetInformationList(child, list);
}

void EffectEditor::setScale(double scale)
{
    if (!(scale > 0.0) || !std::isfinite(scale))
        return; // a broken host value must not collapse the panel
    for (const WidgetInformation &info : std::as_const(m_widgetInformationList))
        applyScale(info, scale);
    m_scale = scale;
}

void EffectEditor::applyScale(const WidgetInformation &info, double scale)
{
    QWidget *widget = info.widget;
    widget->setGeometry(scaled(info.left, scale), scaled(info.top, scale),
        scaled(info.right - info.left + 1, scale), scaled(info.bottom - info.top + 1, scale));
    if (info.pixelSize > 0) {
        QFont font = widget->font();
        font.setPixelSize(static_cast<int>(info.pixelSize * scale));
        widget->setFont(font);
    } else if (info.pointSize > 0) {
        QFont font = widget->font();
        font.setPointSize(static_cast<int>(info.pointSize * scale));
        widget->setFont(font);
    }
    if (auto *controller = dynamic_cast<CommonController_MemAPI::AbstractController *>(widget))
        controller->setScale(scale);
}

void EffectEditor::initializeLateWidgets(QWidget *root)
{
    if (!m_initialized)
        return; // initialize() will find them
    initializeFontStyle(root);
    initializeFontSize(root);
    initializeStyle(root, m_pStyle);
    initializePalette(root, root->parentWidget() ? root->parentWidget()->palette() : palette());
    // The root was listed before its contents were built; it is listed
    // again, with the design geometry and font its form gave it.
    m_widgetInformationList.removeIf([root](const WidgetInformation &info) {
        return info.widget == root || root->isAncestorOf(info.widget);
    });
    const qsizetype first = m_widgetInformationList.size();
    getWidgetInformationList(root, m_widgetInformationList);
    for (qsizetype i = first; i < m_widgetInformationList.size(); ++i)
        applyScale(m_widgetInformationList.at(i), m_scale);
}

KnobController::OperationType EffectEditor::knobOperationType(int dialEditMode)
{
    switch (dialEditMode) {
    case 2: return KnobController::Linear;
    case 1: return KnobController::RelativeCircular;
    default: return KnobController::Circular;
    }
}

FaderController::OperationType EffectEditor::faderOperationType(int sliderEditMode)
{
    switch (sliderEditMode) {
    case 0: return FaderController::Relative;
    case 1: return FaderController::Jump;
    case 3: return FaderController::Ramp;
    default: return FaderController::Touch;
    }
}

void EffectEditor::setDialEditMode(int mode)
{
    setDialEditMode(this, mode);
}

void EffectEditor::setSliderEditMode(int mode)
{
    setSliderEditMode(this, mode);
}

void EffectEditor::setDialEditMode(QWidget *widget, int mode)
{
    applyOperationType<KnobController>(widget, knobOperationType(mode));
}

void EffectEditor::setSliderEditMode(QWidget *widget, int mode)
{
    applyOperationType<FaderController>(widget, faderOperationType(mode));
}
