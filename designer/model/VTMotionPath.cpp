#include "VTMotionPath.h"

VTMotionPath::VTMotionPath(QObject* pParent)
    : m_pParent(pParent)
{}

VTMotionPath::VTMotionPath(const VTMotionPath& other)
    : VTBezierPath(other)
{}

std::unique_ptr<VTBezierPath> VTMotionPath::clone() const
{
    return cloneMotionPath();
}

std::unique_ptr<VTMotionPath> VTMotionPath::cloneMotionPath() const
{
    return std::unique_ptr<VTMotionPath>(new VTMotionPath(*this));
}
