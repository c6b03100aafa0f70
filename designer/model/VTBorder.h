#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QObject>
#include <QStringList>

class QJsonArray;
class QJsonObject;

// The outline of an element in one layout. Width and colour are animated through their Qt
// properties.
class VTBorder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int m_nWidth READ getWidth WRITE setWidth)
    Q_PROPERTY(QColor m_clBorderColor READ getColor WRITE setColor)
public:
    enum BorderStyle : int
    {
        None = 0,
        Solid = 1,
        Dotted = 2,
        Dashed = 3,
    };
    Q_ENUM(BorderStyle)

    explicit VTBorder(QObject* parent = nullptr);
    // Values only; the copy has no parent.
    VTBorder(const VTBorder& other);
    VTBorder& operator=(const VTBorder&) = delete;

    static QString getStyleName(int nStyle);

    int getStyle() const { return m_nStyle; }
    // Numbers outside BorderStyle are ignored.
    void setStyle(int nStyle);
    int getWidth() const { return m_nWidth; }
    void setWidth(int nWidth) { m_nWidth = nWidth; }
    QColor getColor() const { return m_clBorderColor; }
    void setColor(const QColor& color) { m_clBorderColor = color; }

    // Colours compare by their ARGB value, the precision the file keeps.
    bool operator==(const VTBorder& other) const;
    bool operator!=(const VTBorder& other) const { return !(*this == other); }

    void serialize(QJsonObject& json) const;
    // Missing keys take the defaults of a file, which differ from those of a new border: the width
    // reads 0. Returns false when a value had to be replaced; the reason goes to pProblems.
    bool parse(const QJsonObject& json, QStringList* pProblems = nullptr);
    // [style, width, red, green, blue, alpha]; nothing for a border without style.
    void serializeToExport(QJsonArray& array) const;

private:
    int m_nStyle = None;
    int m_nWidth = 1;
    QColor m_clBorderColor = Qt::black;
};
