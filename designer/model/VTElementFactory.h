#pragma once

class VTElement;

// Makes the element object of a kind, in its default state (initDefault applied). Paste, file
// reading and the insert tools all go through here, so a kind becomes usable everywhere by
// appearing in createElement.
class VTElementFactory final
{
public:
    VTElementFactory() = delete;

    // The caller owns the result. Null for a kind that is not made here: scenes (8) belong to the
    // document, components (10) have no class, and numbers outside VT::ElementType mean nothing.
    static VTElement* createElement(int nType);
};
