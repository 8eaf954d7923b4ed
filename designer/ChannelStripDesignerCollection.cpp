#include "designer/ChannelStripDesignerCollection.h"

#include "Common/Widgets/ButtonGroupController.h"
#include "Common/Widgets/FaderController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PeakMeterController.h"
#include "Common/Widgets/PullDownButtonController.h"
#include "Common/Widgets/PushButtonController.h"
#include "Common/Widgets/RoundGainReductionMeterController.h"
#include "Common/Widgets/RoundMeterController.h"
#include "Common/Widgets/SvgLabel.h"
#include "Common/Widgets/TextEditController.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ORVChStrip/resources/OrvResources.h"
#include "designer/DesignerWidgetInterface.h"

using namespace CommonController_MemAPI;

namespace {

template<class Widget> QWidget *create(QWidget *parent)
{
    return new Widget(parent);
}

QString artwork(const char *file)
{
    return QStringLiteral(":/image/orvchstrip/") + QLatin1String(file);
}

QString svgProperty(const char *name, const char *file)
{
    return QStringLiteral("  <property name=\"%1\"><string notr=\"true\">%2</string></property>\n")
        .arg(QLatin1String(name), artwork(file));
}

QString property(const char *name, const char *typedValue)
{
    return QStringLiteral("  <property name=\"%1\">%2</property>\n")
        .arg(QLatin1String(name), QLatin1String(typedValue));
}

// The defaults are those of the editor form's typical instance of each class.
QList<DesignerWidgetDescription> descriptions()
{
    const QString meterMargins = property("meterTopMargin", "<number>4</number>")
        + property("meterOverHeight", "<number>8</number>")
        + property("meterOverMargin", "<number>6</number>");
    return {
        { QStringLiteral("CommonController_MemAPI::KnobController"), QStringLiteral("QWidget"),
            QStringLiteral("Common/Widgets/KnobController.h"),
            QStringLiteral("A knob drawn from SVG artwork, bound to one host parameter"),
            artwork("knob_comp.svg"), QSize(36, 36),
            svgProperty("knobSvg", "knob_comp.svg") + svgProperty("shadowSvg", "knob_shadow.svg")
                + property("inside", "<double>5.0</double>") + property("outside", "<double>12.0</double>")
                + property("knobDisableOpacity", "<double>0.35</double>"),
            false, &create<KnobController> },
        { QStringLiteral("CommonController_MemAPI::PushButtonController"), QStringLiteral("QPushButton"),
            QStringLiteral("Common/Widgets/PushButtonController.h"),
            QStringLiteral("A push button or switch drawn from SVG artwork, bound to one host parameter"),
            artwork("btn_on.svg"), QSize(22, 22),
            property("checkable", "<bool>true</bool>") + svgProperty("buttonSvg", "btn_off.svg")
                + svgProperty("pushButtonSvg", "btn_off_dw.svg") + svgProperty("onButtonSvg", "btn_on.svg")
                + svgProperty("onPushButtonSvg", "btn_on_dw.svg") + svgProperty("shadowSvg", "btn_shadow.svg")
                + svgProperty("pushShadowSvg", "btn_shadow.svg"),
            false, &create<PushButtonController> },
        { QStringLiteral("CommonController_MemAPI::PullDownButtonController"),
            QStringLiteral("CommonController_MemAPI::PushButtonController"),
            QStringLiteral("Common/Widgets/PullDownButtonController.h"),
            QStringLiteral("A button that opens a menu of a host parameter's value texts"),
            artwork("btn_morph_preset.svg"), QSize(120, 28),
            svgProperty("buttonSvg", "btn_morph_preset.svg")
                + svgProperty("pushButtonSvg", "btn_morph_preset_dw.svg")
                + property("svgAlignment", "<set>Qt::AlignJustify</set>")
                + property("textLeftMargin", "<number>12</number>")
                + property("textRightMargin", "<number>12</number>"),
            false, &create<PullDownButtonController> },
        { QStringLiteral("CommonController_MemAPI::ButtonGroupController"), QStringLiteral("QGroupBox"),
            QStringLiteral("Common/Widgets/ButtonGroupController.h"),
            QStringLiteral("Exclusive buttons that select one value of a host parameter"),
            artwork("btn_knee_frame.svg"), QSize(157, 29),
            property("flat", "<bool>true</bool>") + property("title", "<string notr=\"true\"/>"), true,
            &create<ButtonGroupController> },
        { QStringLiteral("CommonController_MemAPI::FaderController"), QStringLiteral("QWidget"),
            QStringLiteral("Common/Widgets/FaderController.h"),
            QStringLiteral("A fader drawn from SVG artwork, bound to one host parameter"),
            artwork("fader_knob.svg"), QSize(28, 160),
            svgProperty("knobSvg", "fader_knob.svg") + svgProperty("backgroundSvg", "fader_back.svg"), false,
            &create<FaderController> },
        { QStringLiteral("CommonController_MemAPI::TextEditController"), QStringLiteral("QWidget"),
            QStringLiteral("Common/Widgets/TextEditController.h"),
            QStringLiteral("A host parameter's value text, edited in place"), QString(), QSize(60, 14),
            property("alignment", "<set>Qt::AlignCenter</set>") + property("textTrim", "<bool>true</bool>"),
            false, &create<TextEditController> },
        { QStringLiteral("CommonController_MemAPI::RoundMeterController"), QStringLiteral("QWidget"),
            QStringLiteral("Common/Widgets/RoundMeterController.h"),
            QStringLiteral("A level meter with rounded ends and an over indicator"),
            artwork("back_meter_mono.svg"), QSize(12, 318),
            meterMargins + property("meterOverBackgroundWidth", "<number>6</number>")
                + property("meterOverBackgroundHeight", "<number>6</number>")
                + property("meterOverWidth", "<number>4</number>"),
            false, &create<RoundMeterController> },
        { QStringLiteral("CommonController_MemAPI::MeterController"), QStringLiteral("QWidget"),
            QStringLiteral("Common/Widgets/MeterController.h"), QStringLiteral("A plain level meter bar"),
            QString(), QSize(8, 181), QString(), false, &create<MeterController> },
        { QStringLiteral("CommonController_MemAPI::PeakMeterController"),
            QStringLiteral("CommonController_MemAPI::MeterController"),
            QStringLiteral("Common/Widgets/PeakMeterController.h"),
            QStringLiteral("A level meter bar that holds its peak"), QString(), QSize(8, 181), QString(),
            false, &create<PeakMeterController> },
        { QStringLiteral("CommonController_MemAPI::RoundGainReductionMeterController"),
            QStringLiteral("QWidget"), QStringLiteral("Common/Widgets/RoundGainReductionMeterController.h"),
            QStringLiteral("A gain reduction meter with rounded ends, filling downwards"), QString(),
            QSize(6, 181), property("meterWidth", "<number>4</number>"), false,
            &create<RoundGainReductionMeterController> },
        { QStringLiteral("SvgLabel"), QStringLiteral("QLabel"), QStringLiteral("Common/Widgets/SvgLabel.h"),
            QStringLiteral("SVG artwork scaled to the label"), artwork("about_orvcs_logo.svg"), QSize(93, 23),
            svgProperty("svg", "logo_halvorn.svg"), false, &create<SvgLabel> },
        { QStringLiteral("ORVChStripCompressorGraph"), QStringLiteral("QWidget"),
            QStringLiteral("ORVChStrip/ORVChStripCompressorGraph.h"),
            QStringLiteral("The compressor's transfer curve"), QString(), QSize(191, 191), QString(), false,
            &create<ORVChStripCompressorGraph> },
        { QStringLiteral("ORVChStripEqualizerGraph"), QStringLiteral("QWidget"),
            QStringLiteral("ORVChStrip/ORVChStripEqualizerGraph.h"),
            QStringLiteral("The equalizer's response curve with its band handles"), QString(),
            QSize(437, 191), QString(), false, &create<ORVChStripEqualizerGraph> },
    };
}

} // namespace

ChannelStripDesignerCollection::ChannelStripDesignerCollection(QObject *parent)
    : QObject(parent)
{
    // The artwork lives in a static library: its resources are registered
    // by hand before Designer creates the first widget.
    initializeOrvChStripResources();
    const QList<DesignerWidgetDescription> all = descriptions();
    for (const DesignerWidgetDescription &description : all)
        m_widgets.append(new DesignerWidgetInterface(description, this));
}
