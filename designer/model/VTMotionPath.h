#pragma once

#include "VTBezierPath.h"

class QObject;

// The path of a position keyframe. Its anchors with a key time correspond, in order of distinct
// times, to the keys of the keyframe. The parent is the keyframe that owns the path; the path
// only points back at it.
class VTMotionPath final : public VTBezierPath
{
public:
    explicit VTMotionPath(QObject* pParent = nullptr);

    QObject* getParent() const { return m_pParent; }
    void setParent(QObject* pParent) { m_pParent = pParent; }

    // The copy has no parent: it belongs to whoever takes it until that owner sets itself.
    std::unique_ptr<VTBezierPath> clone() const override;
    std::unique_ptr<VTMotionPath> cloneMotionPath() const;

private:
    VTMotionPath(const VTMotionPath& other);

    QObject* m_pParent = nullptr;
};
