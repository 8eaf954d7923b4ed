#include "ORVChStrip/Chunk/NormalizedValue.h"

#include <QtEndian>
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace NormalizedValue {

float normalized(int value, int min, int max)
{
    if (max == min)
        return 0.0f;
    return static_cast<float>(double(value) - min) / static_cast<float>(double(max) - min);
}

int denormalized(float f, int min, int max)
{
    const float product = static_cast<float>(double(max) - min) * f;
    const double scaled = double(product) + 0.5;
    if (std::isnan(scaled))
        return min;
    const double truncated = std::trunc(std::clamp(scaled, double(INT_MIN), double(INT_MAX)));
    return static_cast<int>(std::clamp<int64_t>(int64_t(truncated) + min, INT_MIN, INT_MAX));
}

void writeBigEndianFloat(float value, unsigned char *bytes)
{
    quint32 bits = 0;
    std::memcpy(&bits, &value, 4);
    qToBigEndian(bits, bytes);
}

float readBigEndianFloat(const unsigned char *bytes)
{
    const quint32 bits = qFromBigEndian<quint32>(bytes);
    float value = 0.0f;
    std::memcpy(&value, &bits, 4);
    return value;
}

} // namespace NormalizedValue
