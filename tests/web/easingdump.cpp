// Reference numbers for the player's animation engine, straight from Qt.
//
//   easingdump [count]   every easing curve a segment can hold, at count evenly spaced progress
//                        values (101 by default) and a few awkward ones, as JSON:
//                        {"progress": [...], "curves": {"0": [...], ..., "46": [...]}}
//   easingdump path      reads {"paths": [[x0, y0, x1, y1, ...], ...], "percents": [...]} on stdin,
//                        builds each polyline as the motion path keyframe does (a QPainterPath of
//                        straight lines) and prints its length and, at each percent, the point and
//                        the angle: {"paths": [{"length": l, "points": [[x, y], ...], "angles": [...]}]}
//
// The player must agree with these numbers to the last bit where the JavaScript engine's own maths
// allows, so they come from the very classes the model uses and are printed exactly.

#include <QCoreApplication>
#include <QEasingCurve>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainterPath>
#include <QPointF>

#include <cstdio>

namespace {

// The curves as the model builds them for a segment: Qt's defaults, and one spline of each kind.
QEasingCurve createCurve(int nType)
{
    if (nType == QEasingCurve::BezierSpline) {
        QEasingCurve curve(QEasingCurve::BezierSpline);
        curve.addCubicBezierSegment(QPointF(0.4, 0.1), QPointF(0.6, 0.9), QPointF(1.0, 1.0));
        return curve;
    }
    if (nType == QEasingCurve::TCBSpline) {
        QEasingCurve curve(QEasingCurve::TCBSpline);
        curve.addTCBSegment(QPointF(0.0, 0.0), 0.0, 0.0, 0.0);
        curve.addTCBSegment(QPointF(0.3, 0.4), 0.2, 1.0, -0.2);
        curve.addTCBSegment(QPointF(0.7, 0.6), -0.2, 1.0, 0.2);
        curve.addTCBSegment(QPointF(1.0, 1.0), 0.0, 0.0, 0.0);
        return curve;
    }
    return QEasingCurve(QEasingCurve::Type(nType));
}

void print(const QJsonObject& json)
{
    const QByteArray text = QJsonDocument(json).toJson(QJsonDocument::Compact);
    std::fwrite(text.constData(), 1, size_t(text.size()), stdout);
    std::fputc('\n', stdout);
}

int dumpCurves(int nCount)
{
    QVector<double> vecProgress;
    for (int i = 0; i < nCount; ++i)
        vecProgress.append(nCount > 1 ? double(i) / double(nCount - 1) : 0.0);
    // Where the piecewise curves change branch, and values just off the ends.
    for (double dProgress : {4 / 11.0, 8 / 11.0, 10 / 11.0, 2 / 11.0, 1 / 3.0, 2 / 3.0, 0.5 - 1e-9,
                             0.5 + 1e-9, 1e-9, 1 - 1e-9, 0.15, 0.3, 0.7, 0.85, 0.123456789, 0.987654321})
        vecProgress.append(dProgress);

    QJsonArray progress;
    for (double dProgress : qAsConst(vecProgress))
        progress.append(dProgress);
    QJsonObject curves;
    for (int nType = QEasingCurve::Linear; nType < QEasingCurve::Custom; ++nType) {
        const QEasingCurve curve = createCurve(nType);
        QJsonArray values;
        for (double dProgress : qAsConst(vecProgress))
            values.append(curve.valueForProgress(dProgress));
        curves.insert(QString::number(nType), values);
    }
    print(QJsonObject{{QStringLiteral("progress"), progress}, {QStringLiteral("curves"), curves}});
    return 0;
}

int dumpPaths()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 1;
    const QJsonObject request = QJsonDocument::fromJson(input.readAll()).object();
    const QJsonArray percents = request.value(QStringLiteral("percents")).toArray();
    QJsonArray results;
    for (const QJsonValue& item : request.value(QStringLiteral("paths")).toArray()) {
        const QJsonArray coordinates = item.toArray();
        if (coordinates.size() < 2)
            return 1;
        QPainterPath path(QPointF(coordinates.at(0).toDouble(), coordinates.at(1).toDouble()));
        for (int i = 2; i + 1 < coordinates.size(); i += 2)
            path.lineTo(QPointF(coordinates.at(i).toDouble(), coordinates.at(i + 1).toDouble()));
        QJsonArray points;
        QJsonArray angles;
        for (const QJsonValue& percent : percents) {
            const QPointF pt = path.pointAtPercent(percent.toDouble());
            points.append(QJsonArray{pt.x(), pt.y()});
            angles.append(path.angleAtPercent(percent.toDouble()));
        }
        results.append(QJsonObject{{QStringLiteral("length"), path.length()},
                                   {QStringLiteral("points"), points},
                                   {QStringLiteral("angles"), angles}});
    }
    print(QJsonObject{{QStringLiteral("paths"), results}});
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList lstArguments = app.arguments();
    if (lstArguments.value(1) == QLatin1String("path"))
        return dumpPaths();
    bool bOk = true;
    const int nCount = lstArguments.size() > 1 ? lstArguments.at(1).toInt(&bOk) : 101;
    if (!bOk || nCount < 1 || nCount > 1000000) {
        std::fprintf(stderr, "usage: easingdump [count] | easingdump path < request.json\n");
        return 2;
    }
    return dumpCurves(nCount);
}
