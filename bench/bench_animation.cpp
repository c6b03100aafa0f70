// Value evaluation of a large animated scene: 2,000 elements with 10 animated properties each
// (position, size, scale, rotation, skew, opacity and background colour, four keys apiece with
// mixed easing), sought across the timeline's duration. Prints property evaluations per second
// for a seek (evaluate and write into every element, what the studio does after each command)
// and for bare evaluation (VTKeyframe::getValue), against a target of 10 million per second.
//
// Usage: bench_animation [ELEMENTS] [SEEKS]   (defaults 2000 and 2000)
#include "VTAnimation.h"
#include "VTAnimationFactory.h"
#include "VTDiv.h"
#include "VTKeyValue.h"
#include "VTKeyframe.h"
#include "VTScene.h"
#include "VTTimeline.h"
#include "VTTimelineManager.h"

#include <QColor>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTextStream>

namespace {

constexpr int kDuration = 10000;

struct PropertyPlan
{
    int nProperty;
    double dFrom;
    double dTo;
};

// Ids: left, top, width, height, scale X, scale Y, rotate Z, skew X, opacity; colour apart.
const PropertyPlan s_plans[] = {{0, 0, 700},   {2, 0, 500},  {4, 40, 200}, {5, 30, 120},  {7, 0.5, 1.5},
                                {8, 0.5, 1.5}, {11, 0, 360}, {9, -20, 20}, {14, 0.0, 1.0}};
const QEasingCurve::Type s_easings[] = {
    QEasingCurve::Linear,  QEasingCurve::InOutQuad, QEasingCurve::OutCubic, QEasingCurve::InOutSine,
    QEasingCurve::OutBack, QEasingCurve::OutBounce, QEasingCurve::InExpo,   QEasingCurve::BezierSpline};

void addKeys(VTKeyframe* pKeyframe, int nIndex, const QVariant& from, const QVariant& to, bool bColor)
{
    for (int k = 0; k < 4; ++k) {
        const int nTime = (k * kDuration / 3 + nIndex * 7) % (kDuration + 1);
        QVariant value;
        if (bColor)
            value = k % 2 ? to : from;
        else
            value = k % 2 ? to.toDouble() : from.toDouble() + k;
        pKeyframe->addKeyValue(new VTKeyValue(nTime, value), s_easings[(nIndex + k) % 8], true);
    }
}

VTScene* buildScene(int nElements)
{
    auto* pScene = new VTScene();
    pScene->initDefault();
    VTTimeline* pTimeline = pScene->getTimelineManager()->getMainTimeline();
    for (int i = 0; i < nElements; ++i) {
        auto* pDiv = new VTDiv();
        pDiv->initDefault();
        pScene->addElement(pDiv);
        VTAnimation* pAnimation = VTAnimationFactory::createAnimation(pDiv);
        for (const PropertyPlan& plan : s_plans) {
            VTKeyframe* pKeyframe = VTKeyframe::createKeyframe(VT::ElementProperty(plan.nProperty), pDiv, {});
            addKeys(pKeyframe, i, plan.dFrom, plan.dTo, false);
            pAnimation->addKeyframe(pKeyframe);
        }
        VTKeyframe* pColor = VTKeyframe::createKeyframe(VT::ElementProperty(18), pDiv, {});
        addKeys(pColor, i, QColor(255, 200, 0), QColor(20, 60, 255, 128), true);
        pAnimation->addKeyframe(pColor);
        pTimeline->addAnimation(pAnimation, VTLayoutKey::base());
    }
    return pScene;
}

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int nElements = arguments.size() > 1 ? qMax(1, arguments.at(1).toInt()) : 2000;
    const int nSeeks = arguments.size() > 2 ? qMax(1, arguments.at(2).toInt()) : 2000;
    const int nProperties = int(std::size(s_plans)) + 1;
    QTextStream out(stdout);

    QElapsedTimer timer;
    timer.start();
    std::unique_ptr<VTScene> pScene(buildScene(nElements));
    VTTimeline* pTimeline = pScene->getTimelineManager()->getMainTimeline();
    out << "scene: " << nElements << " elements x " << nProperties << " animated properties, "
        << pTimeline->totalDuration() << " ms, built in " << timer.elapsed() << " ms\n";

    // The first seek starts the Qt group once; it is not what the figure is about.
    pTimeline->setCurrentTime(0);
    timer.restart();
    for (int s = 0; s < nSeeks; ++s)
        pTimeline->setCurrentTime(int(qint64(s) * kDuration / nSeeks));
    const double dSeekSeconds = timer.nsecsElapsed() / 1e9;
    const double dSeekRate = double(nSeeks) * nElements * nProperties / dSeekSeconds;

    QList<VTKeyframe*> lstKeyframes;
    for (VTAnimation* pAnimation : pTimeline->getLayoutAnimations(VTLayoutKey::base()))
        lstKeyframes += pAnimation->getKeyframes();
    double dSink = 0.0;
    timer.restart();
    for (int s = 0; s < nSeeks; ++s) {
        const int nTime = int(qint64(s) * kDuration / nSeeks);
        for (const VTKeyframe* pKeyframe : qAsConst(lstKeyframes))
            dSink += pKeyframe->getValue(nTime).toDouble();
    }
    const double dEvalSeconds = timer.nsecsElapsed() / 1e9;
    const double dEvalRate = double(nSeeks) * lstKeyframes.size() / dEvalSeconds;

    out << "seek (evaluate and write into the elements): " << nSeeks << " seeks in " << dSeekSeconds * 1000.0
        << " ms, " << dSeekRate / 1e6 << " million property evaluations per second\n";
    out << "evaluation only (VTKeyframe::getValue): " << dEvalRate / 1e6
        << " million property evaluations per second (checksum " << dSink << ")\n";
    out << "target: 10 million per second; seek "
        << (dSeekRate >= 1e7 ? QStringLiteral("meets it") : QStringLiteral("misses it")) << "\n";
    return 0;
}
