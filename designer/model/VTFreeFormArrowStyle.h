#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>

class QJsonObject;

// The arrow heads at the two ends of a freeform line: a head type and a size for each end.
class VTFreeFormArrowStyle final
{
    Q_DECLARE_TR_FUNCTIONS(VTFreeFormArrowStyle)
public:
    enum ArrowType : int
    {
        NoArrow = 0,
        Arrow = 1,
        OpenArrow = 2,
        StealthArrow = 3,
        DiamondArrow = 4,
        OvalArrow = 5,
    };
    // The sizes the menus offer, "Size 1" to "Size 9".
    static constexpr int kMinArrowSize = 1;
    static constexpr int kMaxArrowSize = 9;
    static constexpr int kDefaultArrowSize = 4;

    VTFreeFormArrowStyle() = default;
    VTFreeFormArrowStyle(int nStartType, int nStartSize, int nEndType, int nEndSize);
    VTFreeFormArrowStyle(const VTFreeFormArrowStyle&) = default;
    VTFreeFormArrowStyle& operator=(const VTFreeFormArrowStyle&) = default;

    std::unique_ptr<VTFreeFormArrowStyle> clone() const;
    // Two missing styles are equal, a missing one differs from any other.
    static bool isEqual(const VTFreeFormArrowStyle* pA, const VTFreeFormArrowStyle* pB);
    bool operator==(const VTFreeFormArrowStyle& other) const;
    bool operator!=(const VTFreeFormArrowStyle& other) const { return !(*this == other); }

    static bool isValidType(int nType) { return nType >= NoArrow && nType <= OvalArrow; }
    static bool isValidSize(int nSize) { return nSize >= kMinArrowSize && nSize <= kMaxArrowSize; }
    // The translated menu text of a type, or an empty text for an unknown one.
    static QString getArrowTypeName(int nType);
    // The picture of a type at one end, "begin_open_arrow"; empty for an unknown type.
    static QString getArrowTypeImageName(int nType, bool bStart);

    // Setters ignore numbers outside the types and sizes above.
    int getStartArrowType() const { return m_nStartArrowType; }
    void setStartArrowType(int nType);
    int getStartArrowSize() const { return m_nStartArrowSize; }
    void setStartArrowSize(int nSize);
    int getEndArrowType() const { return m_nEndArrowType; }
    void setEndArrowType(int nType);
    int getEndArrowSize() const { return m_nEndArrowSize; }
    void setEndArrowSize(int nSize);
    // Whether either end has a head.
    bool hasArrow() const { return m_nStartArrowType != NoArrow || m_nEndArrowType != NoArrow; }

    void serialize(QJsonObject& json) const;
    // A missing key keeps the present value; so does a damaged one, with a note. Returns false when
    // a value was refused.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);

private:
    int m_nStartArrowType = NoArrow;
    int m_nStartArrowSize = kDefaultArrowSize;
    int m_nEndArrowType = NoArrow;
    int m_nEndArrowSize = kDefaultArrowSize;
};
