#pragma once

#include <QRectF>
#include <QWidget>

#include "Common/Widgets/AbstractController.h"

class QPainter;

namespace CommonController_MemAPI {

// A level meter. The host feeds it readings in tenths of a decibel; the
// meter turns a reading into lit segments of the 53-segment table and those
// into a share of its height, and paints a two-zone bar (palette role Mid
// above -18 dB, Dark below) under an over mark (role Light) that lights above
// 0.0 dB. Readings arrive 30 to 60 times a second, so a reading that lights
// the same segments as the last one repaints nothing, and a new one repaints
// only the band of the bar that changed.
class MeterController : public QWidget, public AbstractController
{
    Q_OBJECT
    Q_PROPERTY(int meterLeftMargin READ meterLeftMargin WRITE setMeterLeftMargin)
    Q_PROPERTY(int meterRightMargin READ meterRightMargin WRITE setMeterRightMargin)
    Q_PROPERTY(int meterTopMargin READ meterTopMargin WRITE setMeterTopMargin)
    Q_PROPERTY(int meterBottomMargin READ meterBottomMargin WRITE setMeterBottomMargin)
    Q_PROPERTY(int meterOverMargin READ meterOverMargin WRITE setMeterOverMargin)
    Q_PROPERTY(int meterOverHeight READ meterOverHeight WRITE setMeterOverHeight)
    Q_PROPERTY(MeterType meterType READ meterType WRITE setMeterType)

public:
    // Where the bar starts: -60 dB, -48 dB or -22.5 dB.
    enum MeterType { Minus600 = 0, Minus480 = 1, Minus225 = 2 };
    Q_ENUM(MeterType)

    static constexpr int SilenceValue = -1270;
    static constexpr int SplitValue = -180; // the zone border, -18 dB

    explicit MeterController(QWidget *parent = nullptr);

    int meterLeftMargin() const { return m_leftMargin; }
    void setMeterLeftMargin(int margin);
    int meterRightMargin() const { return m_rightMargin; }
    void setMeterRightMargin(int margin);
    int meterTopMargin() const { return m_topMargin; }
    void setMeterTopMargin(int margin);
    int meterBottomMargin() const { return m_bottomMargin; }
    void setMeterBottomMargin(int margin);
    int meterOverMargin() const { return m_overMargin; }
    void setMeterOverMargin(int margin);
    int meterOverHeight() const { return m_overHeight; }
    void setMeterOverHeight(int height);
    MeterType meterType() const { return m_meterType; }
    void setMeterType(MeterType type);

    // The share of the bar that a reading lights, 0 to 1.
    double convertNormalized(int value) const;
    QRectF scaledMeterRect() const;
    QRectF scaledOverRect() const;

    // The reading as text for assistive technology, e.g. "-12.5 dB".
    virtual QString levelText() const;

    void setScale(double scale) override;

signals:
    void valueChanged(int value);
    void modifiersChange(AbstractController *pController, Qt::KeyboardModifiers modifiers);

public slots:
    void valueChangedRequest() override;

protected:
    // What a paint shows; equal states paint the same picture.
    struct DisplayState
    {
        int level = -1; // lit segments after the meter type's clamping
        bool over = false;
        int extra = -1; // a subclass's own mark (the peak)
        bool operator==(const DisplayState &other) const
        {
            return level == other.level && over == other.over && extra == other.extra;
        }
    };

    void valueChanged() override;
    void notifyModifiersChange(Qt::KeyboardModifiers modifiers) override;

    void paintEvent(QPaintEvent *event) override;

    virtual void drawBackground(QPainter *painter);
    virtual void drawOver(QPainter *painter);
    virtual void drawMeter(QPainter *painter);

    virtual DisplayState displayState() const;
    // The part of the widget that differs between two states.
    virtual QRectF changedArea(const DisplayState &from, const DisplayState &to) const;
    // The height a lit bar reaches (or a reduction bar ends) at share n.
    double levelY(double normalized) const;
    // The segments a reading lights after the type's clamping.
    int clampedSegments(int value) const;
    double normalizedFromSegments(int segments) const;
    // Disabled when disabled, Active with focus, else Inactive.
    QPalette::ColorGroup colorGroup() const;
    // Repaints everything after a change of geometry or look.
    void refresh();

private:
    int typeOffset() const;

    int m_leftMargin = 0;
    int m_rightMargin = 0;
    int m_topMargin = 0;
    int m_bottomMargin = 0;
    int m_overMargin = 3;
    int m_overHeight = 3;
    MeterType m_meterType = Minus600;
    DisplayState m_drawnState;
};

} // namespace CommonController_MemAPI
