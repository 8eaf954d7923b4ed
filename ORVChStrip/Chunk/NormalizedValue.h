#pragma once

// How the saved state stores a parameter: its integer value normalised to
// the host's range, as a single-precision float.
namespace NormalizedValue {

// (value - min) / (max - min); 0 for an empty range.
float normalized(int value, int min, int max);
// trunc((max - min) * f + 0.5) + min, the product in single precision;
// NaN and out-of-range products saturate instead of overflowing.
int denormalized(float f, int min, int max);
void writeBigEndianFloat(float value, unsigned char *bytes);
float readBigEndianFloat(const unsigned char *bytes);

} // namespace NormalizedValue
