#pragma once

#include <array>

#include "ORVChStrip/Filter/FILTER2PEQ.h"

// One band of the equalizer graph: its shape, the keys of the parameters
// that set it, the values last read from the host, and the filter whose
// response the graph draws. The three bands differ only in the data they are
// built with, so the graph treats them alike.
class EqualizerGraphBand
{
public:
    enum Shape { LowShelf, Peak, HighShelf };
    // A band's parameters, in the order in which the graph registers them.
    enum Field { On, Quality, Frequency, Gain, FieldCount };

    explicit EqualizerGraphBand(Shape shape);

    Shape shape() const { return m_shape; }
    // The parameter key of a field; null for the shelves' Q.
    const char *key(Field field) const { return m_keys[field]; }

    bool isOn() const { return m_on; }
    double frequency() const { return m_frequency; }
    double gain() const { return m_gain; }
    // 1.0 for the shelves, which have no Q.
    double quality() const { return m_quality; }
    const FILTER2PEQ &filter() const { return m_filter; }

    // Stores the physical value behind a host integer; a value outside its
    // table gives the field's default.
    void applyValue(Field field, int value);
    // Recomputes the filter from the stored values.
    void updateCoefficients(double fs);
    // Prepares the filter for a new rate and recomputes it.
    void setSampleRate(double fs);

    // The range that dragging the band's handle may reach.
    double clampFrequency(double f) const;

private:
    Shape m_shape;
    std::array<const char *, FieldCount> m_keys;
    double m_defaultFrequency;
    double m_minFrequency;
    double m_maxFrequency;

    bool m_on = true;
    double m_quality = 1.0;
    double m_frequency;
    double m_gain = 0.0;
    FILTER2PEQ m_filter;
};

// The low shelf, the middle peak and the high shelf, in that order.
using EqualizerGraphBands = std::array<EqualizerGraphBand, 3>;
