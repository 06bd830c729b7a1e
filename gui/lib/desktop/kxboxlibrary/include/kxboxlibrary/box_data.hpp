#pragma once

#include <kr/input.hpp>
#include <kr/output.hpp>
#include <kr/packed_ios.hpp>
#include <kr/parameter.hpp>
#include <kx/xml_element.hpp>
#include <kxboxlibrary/export.hpp>

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <boost/shared_ptr.hpp>

#include <functional>
#include <memory>
#include <string>

namespace KX {

class BoxLibraryNode;

/// What a library shows of one box: tooltip, bitmaps, inputs, outputs and parameters.
///
/// Tooltip, bitmaps and the expanded flag can be edited: each change is written to the box file at
/// once, through the node, by reading, changing and writing the whole file, and then signalled.
/// Inputs, outputs and parameters are a snapshot of the element that the data was built from.
///
/// Ownership: held by `boost::shared_ptr`, first of all by the node. The node is also the QObject
/// parent of data that was built from an element; when the node dies it lets go of its data, so
/// that whoever else holds them keeps them. Data whose node is gone behave like data without one.
///
/// Used from the library's thread only.
class KXBOXLIBRARY_EXPORT BoxData : public QObject
{
    Q_OBJECT

public:
    /// Reads a "Box" element, which is not kept. `node`, which may be null, becomes the QObject
    /// parent too. A missing or bad "bitmap_expanded" counts as true; bitmaps without text and
    /// inputs, outputs and parameters that KR::XmlManager refuses are left out. Throws
    /// std::invalid_argument when `xml` is null.
    BoxData(BoxLibraryNode* node, const boost::shared_ptr<const XmlElement>& xml);
    ~BoxData() override;
    BoxData(const BoxData&) = delete;
    BoxData& operator=(const BoxData&) = delete;
    BoxData(BoxData&&) = delete;
    BoxData& operator=(BoxData&&) = delete;

    QString tooltip() const { return m_tooltip; }
    /// References to bitmap files, in the order of the box file.
    QList<QString> bitmaps() const { return m_bitmaps; }
    /// Whether the box is shown expanded, with its bitmap.
    bool bitmapExpanded() const { return m_bitmapExpanded; }
    // Each of the three: the same objects with every call.
    QList<boost::shared_ptr<KR::Input>> inputs() const { return ios().inputs; }
    QList<boost::shared_ptr<KR::Output>> outputs() const { return ios().outputs; }
    QList<boost::shared_ptr<KR::Parameter>> parameters() const { return ios().parameters; }

    /// Renames the node (BoxLibraryNode::setName(); `name` ends at its first NUL) and then sets the
    /// other three, each with a write of the box file where the setter writes. Without a node the
    /// renaming is left out. Throws as these do; what was done until then stays.
    void updateData(const QString& name, const QString& tooltip, const QList<QString>& bitmaps,
                    bool bitmapExpanded);

    /// Each of the three: nothing when the value is the current one, unless its writing failed.
    /// Otherwise it becomes the current one, the box file is updated, and the signal is emitted.
    /// Where there is no node, no project or no readable box file, nothing is written, and the
    /// signal comes all the same.
    ///
    /// Throws std::invalid_argument for a text that XML can't hold (control characters other than
    /// tab, line feed and carriage return), and what BoxLibraryNode::saveBox() throws. The box file
    /// is then as before, but the new value is in place and was signalled. Until the value has been
    /// written, setting it to whatever value, the same one too, tries to write it, and signals.
    void setTooltip(const QString& value);
    /// In the file, a bitmap's name ends at its first NUL, and one without a name is lost.
    void setBitmaps(const QList<QString>& value);
    void setBitmapExpanded(bool value);

    /// Writes the box file with `name` as the name of the box element, as far as that goes:
    /// BoxLibraryNode::saveBox() names every box "root". Nothing without a node or a readable box
    /// file. Throws as the setters do. No signal.
    void saveName(const std::string& name);

    /// BoxLibraryNode::saveBox() of the node; nothing without a node.
    void save(const boost::shared_ptr<XmlElement>& xml);
    /// BoxLibraryNode::loadBox() of the node: the file is parsed for every call. Null without one.
    boost::shared_ptr<XmlElement> load() const;
    /// BoxLibraryNode::loadBoxData() of the node; empty without one.
    QByteArray xmlData() const;

    /// Data for another node, without a QObject parent: tooltip, bitmaps and flags are copied,
    /// inputs, outputs and parameters stay empty. No file is read.
    boost::shared_ptr<BoxData> clone(BoxLibraryNode* node) const;

    /// Whether a box is a behaviour: it has a timeline, exactly the start-up inputs onLoad, onStart
    /// and onStop of a stand-alone behaviour, and a completion output, under any name, perhaps
    /// among others. Only direct children of the "Box" element count; the attributes are compared
    /// as texts, so "1" and "01" differ. Throws std::invalid_argument when `box` is null.
    static bool isBehavior(const boost::shared_ptr<const XmlElement>& box);

Q_SIGNALS:
    // Each comes when the value is in place and, where it could be, written.
    void tooltipChanged(const QString& newValue);
    void bitmapsChanged(const QList<QString>& newValue);
    void bitmapExpandedChanged(bool newValue);

private:
    friend class BoxLibrary; // which looks for behaviours
    struct Ios
    {
        QList<boost::shared_ptr<KR::Input>> inputs;
        QList<boost::shared_ptr<KR::Output>> outputs;
        QList<boost::shared_ptr<KR::Parameter>> parameters;
    };
    const Ios& ios() const;
    explicit BoxData(BoxLibraryNode* node);
    /// What the setters have in common; `changed` is the signal.
    template <class Value, class Signal>
    void change(Value& current, bool& isUnwritten, const Value& value, Signal changed,
                const std::function<void(XmlElement&)>& write);
    /// Reads the box file, applies `write` to its box element and writes it back. False, with
    /// nothing done, when there is none that can be read.
    bool edit(const std::function<void(XmlElement&)>& write);

    QPointer<BoxLibraryNode> m_node; // not owned; null once it is gone
    QString m_tooltip;
    QList<QString> m_bitmaps;
    bool m_bitmapExpanded = true;
    bool m_behavior = false;
    struct
    {
        bool tooltip = false;
        bool bitmaps = false;
        bool bitmapExpanded = false;
    } m_unwritten; // which value's writing failed, until one ends
    // Packed until somebody asks for them.
    mutable std::unique_ptr<KR::PackedIos> m_packed;
    mutable Ios m_ios;
};

} // namespace KX
