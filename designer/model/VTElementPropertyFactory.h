#pragma once

class VTElementProperty;

// Makes the layout block that an element kind stores its per-layout values in. An element asks
// here for every block it creates, so that reading, new layouts and initDefault agree on the
// class.
class VTElementPropertyFactory final
{
public:
    VTElementPropertyFactory() = delete;

    // The caller owns the result, a new block with the defaults of a new block. Null for a kind
    // without a block class.
    static VTElementProperty* createElementProperty(int nType);
};
