#pragma once

// A matrix taken apart by VTMatrix4x4::decompose: translation, rotations in degrees about x, y
// and z in that order, and scales. Skew is not recovered.
struct VTMatrix4x4Component
{
    float m_fTranslateX = 0.0f;
    float m_fTranslateY = 0.0f;
    float m_fTranslateZ = 0.0f;
    float m_fRotateX = 0.0f;
    float m_fRotateY = 0.0f;
    float m_fRotateZ = 0.0f;
    float m_fScaleX = 1.0f;
    float m_fScaleY = 1.0f;
    float m_fScaleZ = 1.0f;
};
