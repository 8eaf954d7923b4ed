#include "GoldenImage.h"

#include <QDir>
#include <QtGlobal>
#include <algorithm>
#include <cstdlib>

namespace {

QString goldenPath(const QString &name)
{
    return QStringLiteral(ORV_TEST_DATA_DIR "/golden/%1.png").arg(name);
}

bool channelsDiffer(QRgb a, QRgb b, int tolerance)
{
    return std::abs(qRed(a) - qRed(b)) > tolerance || std::abs(qGreen(a) - qGreen(b)) > tolerance
        || std::abs(qBlue(a) - qBlue(b)) > tolerance || std::abs(qAlpha(a) - qAlpha(b)) > tolerance;
}

} // namespace

bool matchesGolden(const QImage &actual, const QString &name, QString *message, GoldenTolerance tolerance)
{
    const QImage picture = actual.convertToFormat(QImage::Format_ARGB32);
    if (qEnvironmentVariableIntValue("ORV_UPDATE_GOLDEN") == 1) {
        const bool saved = picture.save(goldenPath(name), "PNG");
        *message = saved
            ? QStringLiteral("rewrote %1; run again without ORV_UPDATE_GOLDEN").arg(goldenPath(name))
            : QStringLiteral("cannot write %1").arg(goldenPath(name));
        return false;
    }
    const QImage golden(goldenPath(name));
    if (golden.isNull()) {
        *message
            = QStringLiteral("no golden picture %1 (ORV_UPDATE_GOLDEN=1 writes it)").arg(goldenPath(name));
        return false;
    }
    const QImage expected = golden.convertToFormat(QImage::Format_ARGB32);
    QImage diff = picture.size() == expected.size() ? picture : QImage();
    int differing = 0;
    for (int y = 0; y < diff.height(); ++y) {
        for (int x = 0; x < diff.width(); ++x) {
            const QRgb a = picture.pixel(x, y);
            const bool differs = channelsDiffer(a, expected.pixel(x, y), tolerance.channel);
            differing += differs ? 1 : 0;
            diff.setPixel(x, y, differs ? qRgb(255, 0, 0) : qRgb(qGray(a) / 4, qGray(a) / 4, qGray(a) / 4));
        }
    }
    const qint64 pixels = qint64(expected.width()) * expected.height();
    if (!diff.isNull() && differing <= tolerance.share * pixels)
        return true;

    QDir().mkpath(QStringLiteral("golden-failures"));
    const QString base = QDir(QStringLiteral("golden-failures")).absoluteFilePath(name);
    picture.save(base + QStringLiteral("-actual.png"));
    if (diff.isNull()) {
        *message = QStringLiteral("%1 is %2 x %3 pixels, the golden picture %4 x %5; see %6-actual.png")
                       .arg(name)
                       .arg(picture.width())
                       .arg(picture.height())
                       .arg(expected.width())
                       .arg(expected.height())
                       .arg(base);
        return false;
    }
    diff.save(base + QStringLiteral("-diff.png"));
    *message = QStringLiteral("%1: %2 of %3 pixels differ; see %4-actual.png and %4-diff.png")
                   .arg(name)
                   .arg(differing)
                   .arg(pixels)
                   .arg(base);
    return false;
}
