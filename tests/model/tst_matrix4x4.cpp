#include "VTMatrix4x4.h"

#include <QtTest>

#include <array>
#include <cmath>

namespace {

using Values = std::array<double, 16>;

// Empty when every entry is within the tolerance, else the first entry that is not.
QString findDifference(const VTMatrix4x4& matrix, const Values& arrExpected, double dTolerance = 0.0)
{
    for (int i = 0; i < 16; ++i) {
        const double dActual = matrix.data()[i];
        if (!(std::abs(dActual - arrExpected[i]) <= dTolerance))
            return QStringLiteral("m[%1] is %2, expected %3")
                .arg(i)
                .arg(dActual, 0, 'g', 9)
                .arg(arrExpected[i]);
    }
    return QString();
}

#define VERIFY_MATRIX(matrix, ...)                                                                           \
    do {                                                                                                     \
        const QString difference = findDifference(matrix, __VA_ARGS__);                                      \
        QVERIFY2(difference.isEmpty(), qPrintable(difference));                                              \
    } while (false)

bool isNear(const QPointF& a, const QPointF& b, double dTolerance = 1e-4)
{
    return std::abs(a.x() - b.x()) <= dTolerance && std::abs(a.y() - b.y()) <= dTolerance;
}

VTMatrix4x4 makeSequence()
{
    // Columns (1, 2, 3, 4), (5, 6, 7, 8), (9, 10, 11, 12), (13, 14, 15, 16).
    VTMatrix4x4 matrix;
    matrix.set(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    return matrix;
}

VTMatrix4x4 makeColumnOfOnes()
{
    // The identity with a last column of ones.
    VTMatrix4x4 matrix;
    matrix.set(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 1, 1, 1);
    return matrix;
}

QList<float> toList(const VTMatrix4x4Component& c)
{
    return {c.m_fTranslateX, c.m_fTranslateY, c.m_fTranslateZ, c.m_fRotateX, c.m_fRotateY,
            c.m_fRotateZ,    c.m_fScaleX,     c.m_fScaleY,     c.m_fScaleZ};
}

const Values kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

} // namespace

class TestMatrix4x4 : public QObject
{
    Q_OBJECT
private slots:
    void productsAndOrder();
    void mappingPoints();
    void determinantAndInverse();
    void decomposition();
    void translationChecks();
};

void TestMatrix4x4::productsAndOrder()
{
    VERIFY_MATRIX(VTMatrix4x4(), kIdentity);

    // A * B: columns 0 to 2 stay, column 3 becomes the sum of A's columns.
    VTMatrix4x4 product = makeSequence();
    product.multiply(makeColumnOfOnes());
    VERIFY_MATRIX(product, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 28, 32, 36, 40});
    // B * A: each column (a0, a1, a2, a3) becomes (a0 + a3, a1 + a3, a2 + a3, a3).
    VTMatrix4x4 premultiplied = makeSequence();
    premultiplied.premultiply(makeColumnOfOnes());
    const Values arrBA{5, 6, 7, 4, 13, 14, 15, 8, 21, 22, 23, 12, 29, 30, 31, 16};
    VERIFY_MATRIX(premultiplied, arrBA);
    VTMatrix4x4 twoOperands;
    twoOperands.multiply2(makeColumnOfOnes(), makeSequence());
    VERIFY_MATRIX(twoOperands, arrBA);

    // Squaring in place reads both operands before it writes.
    VTMatrix4x4 square = makeColumnOfOnes();
    square.multiply2(square, square);
    VERIFY_MATRIX(square, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 2, 2, 1});

    VTMatrix4x4 translateThenScale;
    translateThenScale.translate(10, 20, 30);
    translateThenScale.scale(2, 3, 4);
    VERIFY_MATRIX(translateThenScale, {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 10, 20, 30, 1});
    VTMatrix4x4 scaleThenTranslate;
    scaleThenTranslate.scale(2, 3, 4);
    scaleThenTranslate.translate(10, 20, 30);
    VERIFY_MATRIX(scaleThenTranslate, {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 20, 60, 120, 1});

    scaleThenTranslate.identity();
    VERIFY_MATRIX(scaleThenTranslate, kIdentity);
}

void TestMatrix4x4::mappingPoints()
{
    // skewX adds tan(a) of y to x, skewY adds tan(a) of x to y.
    VTMatrix4x4 skew;
    skew.skewX(45);
    QVERIFY(isNear(skew.map(0, 10), QPointF(10, 10)));
    skew.identity();
    skew.skewY(45);
    QVERIFY(isNear(skew.map(10, 0), QPointF(10, 10)));
    QVERIFY(isNear(skew.map(0, 10), QPointF(0, 10)));

    // The CSS senses: rotateZ turns +x to +y, rotateX turns +z to -y, rotateY turns +z to +x.
    VTMatrix4x4 rotation;
    rotation.rotateZ(90);
    QVERIFY(isNear(rotation.map(10, 0), QPointF(0, 10)));
    rotation.identity();
    rotation.rotateX(90);
    QVERIFY(isNear(rotation.map(0, 0, 10), QPointF(0, -10)));
    rotation.identity();
    rotation.rotateY(90);
    QVERIFY(isNear(rotation.map(0, 0, 10), QPointF(10, 0)));
    // Operations multiply on the right: the last one called acts first.
    rotation.identity();
    rotation.translate(100, 0, 0);
    rotation.rotateZ(30);
    QVERIFY(isNear(rotation.map(2, 0), QPointF(100 + std::sqrt(3.0), 1)));

    // Perspective 1024 seen at z = 512: w = 1/2, so x and y double.
    VTMatrix4x4 perspective;
    perspective.data()[11] = -1.0f / 1024;
    QVERIFY(isNear(perspective.map(100, 50, 512), QPointF(200, 100)));
    // At w = 0 the point is left undivided rather than sent to infinity.
    QCOMPARE(perspective.map(100, 50, 1024), QPointF(100, 50));

    // The bounds of the turned corners, not the turned rectangle's own corners.
    VTMatrix4x4 turn;
    turn.rotateZ(90);
    const QRectF turned = turn.mapRect(QRectF(0, 0, 100, 50));
    QVERIFY(isNear(turned.topLeft(), QPointF(-50, 0)));
    QVERIFY(isNear(turned.bottomRight(), QPointF(0, 100)));
    turn.identity();
    turn.translate(10, 10, 0);
    turn.rotateZ(45);
    const QRectF diamond = turn.mapRect(QRectF(0, 0, 10, 10));
    const double dHalfDiagonal = 10 / std::sqrt(2.0);
    QVERIFY(isNear(diamond.topLeft(), QPointF(10 - dHalfDiagonal, 10)));
    QVERIFY(isNear(diamond.bottomRight(), QPointF(10 + dHalfDiagonal, 10 + 2 * dHalfDiagonal)));
}

void TestMatrix4x4::determinantAndInverse()
{
    QCOMPARE(makeSequence().determinant(), 0.0);
    VTMatrix4x4 diagonal;
    diagonal.scale(2, 3, 4);
    QCOMPARE(diagonal.determinant(), 24.0);

    // Two 2 x 2 blocks, [[1, 2], [3, 4]] and [[5, 6], [7, 8]] by rows: det = (-2) (-2) = 4, and
    // the inverse is made of the blocks' inverses [[-2, 1], [1.5, -0.5]] and [[-4, 3], [3.5, -2.5]].
    VTMatrix4x4 blocks;
    blocks.set(1, 3, 0, 0, 2, 4, 0, 0, 0, 0, 5, 7, 0, 0, 6, 8);
    QCOMPARE(blocks.determinant(), 4.0);
    bool bInvertible = false;
    VERIFY_MATRIX(blocks.inverted(&bInvertible),
                  {-2, 1.5, 0, 0, 1, -0.5, 0, 0, 0, 0, -4, 3.5, 0, 0, 3, -2.5});
    QVERIFY(bInvertible);

    // A matrix with a row mixed into every entry, inverted and multiplied back. Its determinant,
    // -8 by cofactor expansion along the first row, needs every term of the expansion with its
    // sign; a mirror of one axis has -1.
    VTMatrix4x4 general;
    general.set(2, -1, 0, 0.5, 1, 3, -2, 0, 0, 1, 4, -1, 7, -3, 2, 1);
    QCOMPARE(general.determinant(), -8.0);
    const VTMatrix4x4 inverse = general.inverted(&bInvertible);
    QVERIFY(bInvertible);
    QVERIFY(std::abs(inverse.determinant() + 0.125) < 1e-7);
    VTMatrix4x4 mirror;
    mirror.scale(1, -1, 1);
    QCOMPARE(mirror.determinant(), -1.0);
    VTMatrix4x4 roundTrip = general;
    roundTrip.multiply(inverse);
    VERIFY_MATRIX(roundTrip, kIdentity, 1e-5);

    VTMatrix4x4 element;
    element.translate(120, -40, 0);
    element.rotateZ(30);
    element.skewX(20);
    element.scale(2, 0.5, 1);
    const QPointF ptStage = element.map(13, 17);
    const QPointF ptLocal = element.inverted().map(ptStage.x(), ptStage.y());
    QVERIFY(isNear(ptLocal, QPointF(13, 17)));

    // Singular: no inverse, the identity comes back and says so.
    bInvertible = true;
    VERIFY_MATRIX(makeSequence().inverted(&bInvertible), kIdentity);
    QVERIFY(!bInvertible);
    // Invertible in theory, but the inverse overflows float.
    VTMatrix4x4 tiny;
    tiny.scale(1e-40, 1, 1);
    tiny.inverted(&bInvertible);
    QVERIFY(!bInvertible);
}

void TestMatrix4x4::decomposition()
{
    VTMatrix4x4Component component;
    VTMatrix4x4 translation;
    translation.translate(1, 2, 3);
    QVERIFY(translation.decompose(component));
    QCOMPARE(toList(component), (QList<float>{1, 2, 3, 0, 0, 0, 1, 1, 1}));

    // The element chain: translate, rotate x, y, z, scale. Decomposing gives the pieces back.
    VTMatrix4x4 chain;
    chain.translate(5, -6, 7);
    chain.rotateX(10);
    chain.rotateY(-20);
    chain.rotateZ(30);
    chain.scale(2, 3, 0.5);
    QVERIFY(chain.decompose(component));
    const QList<float> lstExpected{5, -6, 7, 10, -20, 30, 2, 3, 0.5f};
    for (int i = 0; i < 9; ++i)
        QVERIFY2(std::abs(toList(component).at(i) - lstExpected.at(i)) < 1e-3,
                 qPrintable(QString::number(i)));

    // At rotation y = 90 degrees x and z turn about one axis; all of it is read as x.
    VTMatrix4x4 locked;
    locked.rotateX(25);
    locked.rotateY(90);
    locked.rotateZ(15);
    QVERIFY(locked.decompose(component));
    QCOMPARE(component.m_fRotateZ, 0.0f);
    QVERIFY(std::abs(component.m_fRotateY - 90.0f) < 1e-2);
    QVERIFY(std::abs(component.m_fRotateX - 40.0f) < 1e-2);

    // A mirror is read as three negative scales with a half turn about x.
    VTMatrix4x4 mirror;
    mirror.scale(-1, 1, 1);
    QVERIFY(mirror.decompose(component));
    QCOMPARE(toList(component).mid(6), (QList<float>{-1, -1, -1}));
    QVERIFY(std::abs(std::abs(component.m_fRotateX) - 180.0f) < 1e-3);
    QCOMPARE(component.m_fRotateZ, 0.0f);

    // Homogeneous: everything is divided by m[15] first; m[15] = 0 cannot be read.
    VTMatrix4x4 weighted;
    weighted.set(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 4, 6, 2);
    QVERIFY(weighted.decompose(component));
    QCOMPARE(component.m_fTranslateY, 2.0f);
    QCOMPARE(component.m_fScaleX, 0.5f);
    weighted.data()[15] = 0.0f;
    component = VTMatrix4x4Component();
    QVERIFY(!weighted.decompose(component));
    QCOMPARE(component.m_fTranslateX, 0.0f);
}

void TestMatrix4x4::translationChecks()
{
    VTMatrix4x4 matrix;
    matrix.translate(3, -4, 5);
    matrix.translate(1, 1, 1);
    QCOMPARE(matrix.getTranslation(), QVector3D(4, -3, 6));
    QVERIFY(matrix.isTranslation());

    // The tolerance is 1e-5 on each entry, perspective entries included.
    matrix.data()[1] = 5e-6f;
    QVERIFY(matrix.isTranslation());
    matrix.data()[1] = 2e-5f;
    QVERIFY(!matrix.isTranslation());
    matrix.data()[1] = 0.0f;
    matrix.data()[11] = 2e-5f;
    QVERIFY(!matrix.isTranslation());
    matrix.data()[11] = 0.0f;
    matrix.data()[15] = 3.0f;
    QVERIFY(matrix.isTranslation());
    matrix.rotateZ(0.01);
    QVERIFY(!matrix.isTranslation());

    VTMatrix4x4 placed;
    placed.translate(10, 20, 0);
    placed.rotateZ(30);
    placed.scale(2, 2, 1);
    VTMatrix4x4 moved;
    moved.translate(-500, 7, 3);
    moved.rotateZ(30);
    moved.scale(2, 2, 1);
    moved.data()[15] = 4.0f;
    QVERIFY(placed.canTranslateTo(moved));
    moved.scale(1.0001, 1, 1);
    QVERIFY(!placed.canTranslateTo(moved));
    VTMatrix4x4 tilted = placed;
    tilted.data()[3] = 1e-4f;
    QVERIFY(!placed.canTranslateTo(tilted));
}

QTEST_APPLESS_MAIN(TestMatrix4x4)
#include "tst_matrix4x4.moc"
