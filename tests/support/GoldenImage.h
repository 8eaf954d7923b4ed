#pragma once

#include <QImage>
#include <QString>

// How far a rendered picture may stray from its golden file: a pixel differs
// when one of its channels is off by more than `channel`, and the pictures
// match while at most `share` of the pixels differ. The defaults let edges
// blend a little differently (a few more levels of antialiasing or another
// rounding of a glyph's edge) but catch a control that is missing, moved or
// drawn in another colour: 0.01 % is 58 pixels of the editor at scale 1.
struct GoldenTolerance
{
    int channel = 64;
    double share = 0.0001;
};

// Compares `actual` with tests/data/golden/<name>.png. On a mismatch it
// writes <name>-actual.png and <name>-diff.png (the differing pixels in red
// over a dimmed copy) to golden-failures/ in the working folder, which CTest
// makes the test's build folder, and says why in `message`. With
// ORV_UPDATE_GOLDEN=1 in the environment the golden file is written from
// `actual` instead, and the comparison fails so that no run that rewrote a
// file passes unnoticed.
bool matchesGolden(
    const QImage &actual, const QString &name, QString *message, GoldenTolerance tolerance = {});
