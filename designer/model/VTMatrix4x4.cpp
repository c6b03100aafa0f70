#include "VTMatrix4x4.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kMatrixTolerance = 1e-5;
// The factor of the saved rotations; kept as written so decomposed values match older files.
constexpr double kDegreesPerRadian = 57.29578;
constexpr double kPi = 3.14159265358979323846;

// Element geometry read from a file can be arbitrarily large, and converting a double beyond the
// range of float is undefined; such a value is stored as the infinity it would round to.
float toFloat(double dValue)
{
    constexpr double dMax = std::numeric_limits<float>::max();
    if (dValue > dMax)
        return std::numeric_limits<float>::infinity();
    if (dValue < -dMax)
        return -std::numeric_limits<float>::infinity();
    return static_cast<float>(dValue);
}

double toRadians(double dDegrees)
{
    return dDegrees * kPi / 180.0;
}

using DoubleMatrix = std::array<double, 16>;

// Column-major: entry (row r, column c) is at c * 4 + r.
DoubleMatrix multiplyMatrices(const DoubleMatrix& a, const DoubleMatrix& b)
{
    DoubleMatrix result{};
    for (int c = 0; c < 4; ++c) {
        for (int r = 0; r < 4; ++r) {
            double dSum = 0.0;
            for (int k = 0; k < 4; ++k)
                dSum += a[k * 4 + r] * b[c * 4 + k];
            result[c * 4 + r] = dSum;
        }
    }
    return result;
}

DoubleMatrix identityMatrix()
{
    return {1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0};
}

struct Vector3 final
{
    double dX;
    double dY;
    double dZ;

    double length() const { return std::sqrt(dX * dX + dY * dY + dZ * dZ); }
};

Vector3 cross(const Vector3& a, const Vector3& b)
{
    return {a.dY * b.dZ - a.dZ * b.dY, a.dZ * b.dX - a.dX * b.dZ, a.dX * b.dY - a.dY * b.dX};
}

double dot(const Vector3& a, const Vector3& b)
{
    return a.dX * b.dX + a.dY * b.dY + a.dZ * b.dZ;
}

// The 2 x 2 minors of the first two and of the last two rows of the array read row by row; the
// Laplace expansion by them gives the determinant with 12 products instead of 40.
struct Minors final
{
    explicit Minors(const DoubleMatrix& m)
        : m_arrS{m[0] * m[5] - m[1] * m[4], m[0] * m[6] - m[2] * m[4], m[0] * m[7] - m[3] * m[4],
                 m[1] * m[6] - m[2] * m[5], m[1] * m[7] - m[3] * m[5], m[2] * m[7] - m[3] * m[6]}
        , m_arrC{m[8] * m[13] - m[9] * m[12],  m[8] * m[14] - m[10] * m[12], m[8] * m[15] - m[11] * m[12],
                 m[9] * m[14] - m[10] * m[13], m[9] * m[15] - m[11] * m[13], m[10] * m[15] - m[11] * m[14]}
    {}

    double getDeterminant() const
    {
        return m_arrS[0] * m_arrC[5] - m_arrS[1] * m_arrC[4] + m_arrS[2] * m_arrC[3] + m_arrS[3] * m_arrC[2] -
               m_arrS[4] * m_arrC[1] + m_arrS[5] * m_arrC[0];
    }

    double m_arrS[6];
    double m_arrC[6];
};

} // namespace

VTMatrix4x4::VTMatrix4x4()
{
    identity();
}

void VTMatrix4x4::identity()
{
    assign(identityMatrix());
}

void VTMatrix4x4::set(float f0, float f1, float f2, float f3, float f4, float f5, float f6, float f7,
                      float f8, float f9, float f10, float f11, float f12, float f13, float f14, float f15)
{
    m_arrValues = {f0, f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14, f15};
}

VTMatrix4x4::DoubleMatrix VTMatrix4x4::toDouble() const
{
    DoubleMatrix arrValues;
    std::copy(m_arrValues.begin(), m_arrValues.end(), arrValues.begin());
    return arrValues;
}

void VTMatrix4x4::assign(const DoubleMatrix& arrValues)
{
    for (int i = 0; i < 16; ++i)
        m_arrValues[i] = toFloat(arrValues[i]);
}

void VTMatrix4x4::multiplyRight(const DoubleMatrix& arrOperation)
{
    assign(multiplyMatrices(toDouble(), arrOperation));
}

QPointF VTMatrix4x4::map(double dX, double dY, double dZ) const
{
    const DoubleMatrix m = toDouble();
    const double dMappedX = m[0] * dX + m[4] * dY + m[8] * dZ + m[12];
    const double dMappedY = m[1] * dX + m[5] * dY + m[9] * dZ + m[13];
    const double dW = m[3] * dX + m[7] * dY + m[11] * dZ + m[15];
    if (dW == 0.0 || dW == 1.0)
        return QPointF(dMappedX, dMappedY);
    return QPointF(dMappedX / dW, dMappedY / dW);
}

QRectF VTMatrix4x4::mapRect(const QRectF& rect) const
{
    const QPointF arrCorners[4] = {map(rect.left(), rect.top()), map(rect.right(), rect.top()),
                                   map(rect.right(), rect.bottom()), map(rect.left(), rect.bottom())};
    double dLeft = arrCorners[0].x();
    double dRight = dLeft;
    double dTop = arrCorners[0].y();
    double dBottom = dTop;
    for (const QPointF& ptCorner : arrCorners) {
        dLeft = std::min(dLeft, ptCorner.x());
        dRight = std::max(dRight, ptCorner.x());
        dTop = std::min(dTop, ptCorner.y());
        dBottom = std::max(dBottom, ptCorner.y());
    }
    return QRectF(QPointF(dLeft, dTop), QPointF(dRight, dBottom));
}

void VTMatrix4x4::multiply(const VTMatrix4x4& other)
{
    multiply2(*this, other);
}

void VTMatrix4x4::premultiply(const VTMatrix4x4& other)
{
    multiply2(other, *this);
}

void VTMatrix4x4::multiply2(const VTMatrix4x4& a, const VTMatrix4x4& b)
{
    // Both operands are read into doubles before anything is stored, so aliasing is harmless.
    assign(multiplyMatrices(a.toDouble(), b.toDouble()));
}

double VTMatrix4x4::determinant() const
{
    return Minors(toDouble()).getDeterminant();
}

VTMatrix4x4 VTMatrix4x4::inverted(bool* pbInvertible) const
{
    const DoubleMatrix m = toDouble();
    const Minors minors(m);
    const double dDeterminant = minors.getDeterminant();

    DoubleMatrix arrResult{};
    bool bOk = dDeterminant != 0.0 && std::isfinite(dDeterminant);
    if (bOk) {
        const double dInv = 1.0 / dDeterminant;
        const double dS0 = minors.m_arrS[0], dS1 = minors.m_arrS[1], dS2 = minors.m_arrS[2];
        const double dS3 = minors.m_arrS[3], dS4 = minors.m_arrS[4], dS5 = minors.m_arrS[5];
        const double dC0 = minors.m_arrC[0], dC1 = minors.m_arrC[1], dC2 = minors.m_arrC[2];
        const double dC3 = minors.m_arrC[3], dC4 = minors.m_arrC[4], dC5 = minors.m_arrC[5];
        // The adjugate of the array read row by row, which is the transpose of the matrix; since
        // the inverse of a transpose is the transposed inverse, the result lands in column order.
        arrResult[0] = (m[5] * dC5 - m[6] * dC4 + m[7] * dC3) * dInv;
        arrResult[4] = (-m[4] * dC5 + m[6] * dC2 - m[7] * dC1) * dInv;
        arrResult[8] = (m[4] * dC4 - m[5] * dC2 + m[7] * dC0) * dInv;
        arrResult[12] = (-m[4] * dC3 + m[5] * dC1 - m[6] * dC0) * dInv;
        arrResult[1] = (-m[1] * dC5 + m[2] * dC4 - m[3] * dC3) * dInv;
        arrResult[5] = (m[0] * dC5 - m[2] * dC2 + m[3] * dC1) * dInv;
        arrResult[9] = (-m[0] * dC4 + m[1] * dC2 - m[3] * dC0) * dInv;
        arrResult[13] = (m[0] * dC3 - m[1] * dC1 + m[2] * dC0) * dInv;
        arrResult[2] = (m[13] * dS5 - m[14] * dS4 + m[15] * dS3) * dInv;
        arrResult[6] = (-m[12] * dS5 + m[14] * dS2 - m[15] * dS1) * dInv;
        arrResult[10] = (m[12] * dS4 - m[13] * dS2 + m[15] * dS0) * dInv;
        arrResult[14] = (-m[12] * dS3 + m[13] * dS1 - m[14] * dS0) * dInv;
        arrResult[3] = (-m[9] * dS5 + m[10] * dS4 - m[11] * dS3) * dInv;
        arrResult[7] = (m[8] * dS5 - m[10] * dS2 + m[11] * dS1) * dInv;
        arrResult[11] = (-m[8] * dS4 + m[9] * dS2 - m[11] * dS0) * dInv;
        arrResult[15] = (m[8] * dS3 - m[9] * dS1 + m[10] * dS0) * dInv;
        // A nearly singular matrix can have an inverse that float cannot hold.
        for (double dValue : arrResult)
            bOk = bOk && std::isfinite(toFloat(dValue));
    }
    if (pbInvertible)
        *pbInvertible = bOk;
    VTMatrix4x4 result;
    if (bOk)
        result.assign(arrResult);
    return result;
}

void VTMatrix4x4::translate(double dX, double dY, double dZ)
{
    DoubleMatrix arrOperation = identityMatrix();
    arrOperation[12] = dX;
    arrOperation[13] = dY;
    arrOperation[14] = dZ;
    multiplyRight(arrOperation);
}

void VTMatrix4x4::scale(double dX, double dY, double dZ)
{
    DoubleMatrix arrOperation = identityMatrix();
    arrOperation[0] = dX;
    arrOperation[5] = dY;
    arrOperation[10] = dZ;
    multiplyRight(arrOperation);
}

void VTMatrix4x4::skewX(double dDegrees)
{
    // Row 0, column 1: x' = x + tan(a) y.
    DoubleMatrix arrOperation = identityMatrix();
    arrOperation[4] = std::tan(toRadians(dDegrees));
    multiplyRight(arrOperation);
}

void VTMatrix4x4::skewY(double dDegrees)
{
    // Row 1, column 0: y' = y + tan(a) x.
    DoubleMatrix arrOperation = identityMatrix();
    arrOperation[1] = std::tan(toRadians(dDegrees));
    multiplyRight(arrOperation);
}

void VTMatrix4x4::rotateX(double dDegrees)
{
    const double dCos = std::cos(toRadians(dDegrees));
    const double dSin = std::sin(toRadians(dDegrees));
    DoubleMatrix arrOperation = identityMatrix();
    arrOperation[5] = dCos;
    arrOperation[6] = dSin;
    arrOperation[9] = -dSin;
    arrOperation[10] = dCos;
    multiplyRight(arrOperation);
}

void VTMatrix4x4::rotateY(double dDegrees)
{
    const double dCos = std::cos(toRadians(dDegrees));
    const double dSin = std::sin(toRadians(dDegrees));
    DoubleMatrix arrOperation = identityMatrix();
    arrOperation[0] = dCos;
    arrOperation[2] = -dSin;
    arrOperation[8] = dSin;
    arrOperation[10] = dCos;
    multiplyRight(arrOperation);
}

void VTMatrix4x4::rotateZ(double dDegrees)
{
    const double dCos = std::cos(toRadians(dDegrees));
    const double dSin = std::sin(toRadians(dDegrees));
    DoubleMatrix arrOperation = identityMatrix();
    arrOperation[0] = dCos;
    arrOperation[1] = dSin;
    arrOperation[4] = -dSin;
    arrOperation[5] = dCos;
    multiplyRight(arrOperation);
}

bool VTMatrix4x4::decompose(VTMatrix4x4Component& component) const
{
    DoubleMatrix m = toDouble();
    if (m[15] == 0.0)
        return false;
    const double dW = m[15];
    for (double& dValue : m)
        dValue /= dW;

    Vector3 arrColumns[3];
    double arrScales[3];
    for (int c = 0; c < 3; ++c) {
        arrColumns[c] = {m[c * 4], m[c * 4 + 1], m[c * 4 + 2]};
        arrScales[c] = arrColumns[c].length();
        if (arrScales[c] != 0.0) {
            arrColumns[c].dX /= arrScales[c];
            arrColumns[c].dY /= arrScales[c];
            arrColumns[c].dZ /= arrScales[c];
        }
    }
    // A mirrored basis is read as a negative scale on all three axes, not as a rotation.
    if (dot(arrColumns[0], cross(arrColumns[1], arrColumns[2])) < 0.0) {
        for (int c = 0; c < 3; ++c) {
            arrScales[c] = -arrScales[c];
            arrColumns[c] = {-arrColumns[c].dX, -arrColumns[c].dY, -arrColumns[c].dZ};
        }
    }

    const Vector3& c0 = arrColumns[0];
    const Vector3& c1 = arrColumns[1];
    const Vector3& c2 = arrColumns[2];
    const double dRotateY = std::asin(std::clamp(c2.dX, -1.0, 1.0));
    double dRotateX = 0.0;
    double dRotateZ = 0.0;
    if (std::abs(c2.dX) < 0.99999) {
        dRotateX = std::atan2(-c2.dY, c2.dZ);
        dRotateZ = std::atan2(-c1.dX, c0.dX);
    } else {
        // Gimbal lock: x and z turn about the same axis, so all of it goes to x.
        dRotateX = std::atan2(c1.dZ, c1.dY);
    }

    component.m_fTranslateX = toFloat(m[12]);
    component.m_fTranslateY = toFloat(m[13]);
    component.m_fTranslateZ = toFloat(m[14]);
    component.m_fRotateX = toFloat(dRotateX * kDegreesPerRadian);
    component.m_fRotateY = toFloat(dRotateY * kDegreesPerRadian);
    component.m_fRotateZ = toFloat(dRotateZ * kDegreesPerRadian);
    component.m_fScaleX = toFloat(arrScales[0]);
    component.m_fScaleY = toFloat(arrScales[1]);
    component.m_fScaleZ = toFloat(arrScales[2]);
    return true;
}

QVector3D VTMatrix4x4::getTranslation() const
{
    return QVector3D(m_arrValues[12], m_arrValues[13], m_arrValues[14]);
}

bool VTMatrix4x4::isTranslation() const
{
    for (int c = 0; c < 3; ++c) {
        for (int r = 0; r < 4; ++r) {
            const double dExpected = r == c ? 1.0 : 0.0;
            if (std::abs(static_cast<double>(m_arrValues[c * 4 + r]) - dExpected) > kMatrixTolerance)
                return false;
        }
    }
    return true;
}

bool VTMatrix4x4::canTranslateTo(const VTMatrix4x4& other) const
{
    for (int i = 0; i < 12; ++i) {
        if (std::abs(static_cast<double>(m_arrValues[i]) - other.m_arrValues[i]) > kMatrixTolerance)
            return false;
    }
    return true;
}
