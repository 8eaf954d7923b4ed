#pragma once

#include <QColor>
#include <QImage>
#include <algorithm>
#include <cstdlib>

// Measures of pictures that tests compare with a tolerance: a grab of the
// screen or of a widget is never exact to the bit across machines.

// The largest difference of one colour channel between two pictures; 255
// when their sizes differ.
inline int largestDifference(const QImage &a, const QImage &b)
{
    if (a.size() != b.size())
        return 255;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({ largest, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                std::abs(qBlue(p) - qBlue(q)) });
        }
    }
    return largest;
}

// The mean grey level, 0 for an empty picture.
inline double meanLuminance(const QImage &image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qGray(image.pixel(x, y));
    }
    return image.isNull() ? 0.0 : sum / (double(image.width()) * image.height());
}

// How many pixels are within `tolerance` of the colour, the channels'
// differences summed.
inline int pixelsNear(const QImage &image, const QColor &color, int tolerance = 0)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = image.pixel(x, y);
            if (std::abs(qRed(p) - color.red()) + std::abs(qGreen(p) - color.green())
                    + std::abs(qBlue(p) - color.blue())
                <= tolerance)
                ++count;
        }
    }
    return count;
}

// Whether every pixel of a picture that is not empty has the colour.
inline bool isFilledWith(const QImage &image, const QColor &color)
{
    return !image.isNull() && pixelsNear(image, color) == image.width() * image.height();
}
