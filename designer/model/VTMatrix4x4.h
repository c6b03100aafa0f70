#pragma once

#include "VTMatrix4x4Component.h"

#include <QPointF>
#include <QRectF>
#include <QVector3D>

#include <array>

// The transform of element geometry, in the convention of CSS 3D transforms: 16 floats in
// column-major order with points as column vectors, so m[12], m[13], m[14] are the translation.
// Products are worked out in double and only the result is rounded to float, so that a long
// chain of element transforms does not pile up float error at every step.
class VTMatrix4x4 final
{
public:
    // The identity.
    VTMatrix4x4();

    void identity();
    // The values in storage order: m[0] to m[3] are the first column.
    void set(float f0, float f1, float f2, float f3, float f4, float f5, float f6, float f7, float f8,
             float f9, float f10, float f11, float f12, float f13, float f14, float f15);

    // The x, y of the mapped point after the division by w. A point that maps to infinity (w = 0)
    // keeps its undivided coordinates, so that callers never see inf or NaN.
    QPointF map(double dX, double dY, double dZ = 0.0) const;
    // The bounding rectangle of the four corners mapped in the plane z = 0.
    QRectF mapRect(const QRectF& rect) const;

    // this = this * other
    void multiply(const VTMatrix4x4& other);
    // this = other * this
    void premultiply(const VTMatrix4x4& other);
    // this = a * b; either may be this matrix.
    void multiply2(const VTMatrix4x4& a, const VTMatrix4x4& b);

    double determinant() const;
    // The inverse, or the identity with *pbInvertible false for a singular matrix.
    VTMatrix4x4 inverted(bool* pbInvertible = nullptr) const;

    // Each of these multiplies this matrix on the right, so the operation called last is the one
    // that acts first on a point. Angles are in degrees.
    void translate(double dX, double dY, double dZ);
    void scale(double dX, double dY, double dZ);
    void skewX(double dDegrees);
    void skewY(double dDegrees);
    void rotateX(double dDegrees);
    void rotateY(double dDegrees);
    void rotateZ(double dDegrees);

    // Translation, rotations in the order x, y, z, and scales; false for m[15] = 0.
    bool decompose(VTMatrix4x4Component& component) const;

    QVector3D getTranslation() const;
    // The linear part is the identity and there is no perspective, within 1e-5.
    bool isTranslation() const;
    // The two matrices differ at most in their translation, within 1e-5.
    bool canTranslateTo(const VTMatrix4x4& other) const;

    float* data() { return m_arrValues.data(); }
    const float* data() const { return m_arrValues.data(); }

private:
    using DoubleMatrix = std::array<double, 16>;

    DoubleMatrix toDouble() const;
    void assign(const DoubleMatrix& arrValues);
    void multiplyRight(const DoubleMatrix& arrOperation);

    std::array<float, 16> m_arrValues;
};
