#pragma once

class VTAnimation;
class VTElement;

// Which animation class an element needs: media and symbol instances play on their own time as
// well, so they get playback marks.
class VTAnimationFactory final
{
public:
    // Null for a null element; the caller owns the result.
    static VTAnimation* createAnimation(VTElement* pElement);
};
