#include "run_then.hpp"

#include <kx/serial.hpp>
#include <kxboxlibrary/box_constants.hpp>
#include <kxboxlibrary/box_data.hpp>
#include <kxboxlibrary/box_library_node.hpp>

#include <QMetaType>
#include <boost/make_shared.hpp>

#include <initializer_list>
#include <list>
#include <set>
#include <stdexcept>
#include <utility>

namespace KX {

namespace {

const char* const a_tooltip = "tooltip";
const char* const a_bitmaps = "Bitmaps";
const char* const a_bitmap = "bitmap";
const char* const a_bitmapExpanded = "bitmap_expanded";

/// For the argument of bitmapsChanged() in queued connections.
const int a_bitmapsType = qRegisterMetaType<QList<QString>>("QList<QString>");

/// UTF-8 up to the first NUL.
std::string toText(const QString& string)
{
    return string.toUtf8().constData();
}

/// A tag and attributes as one text, by which an input or output is recognised.
std::string signature(const XmlElement& element, std::initializer_list<const char*> attributes)
{
    std::string text = element.beacon();
    for (const char* const attribute : attributes) {
        text += "/" + element.attribute<std::string>(attribute, std::string());
    }
    return text;
}

} // namespace

BoxData::BoxData(BoxLibraryNode* node) : m_node(node) {}

BoxData::BoxData(BoxLibraryNode* node, const boost::shared_ptr<const XmlElement>& xml)
    : QObject(node), m_node(node)
{
    if (!xml) {
        throw std::invalid_argument("box data need a box element");
    }
    xml->getAttribute(a_tooltip, m_tooltip);
    bool hasBitmaps = false;
    bool hasTimeline = false;
    m_packed = std::make_unique<KR::PackedIos>(*xml, [&](const XmlElement& child) {
        hasTimeline = hasTimeline || child.beacon() == BoxConstants::a_timelineBeacon;
        if (child.beacon() == a_bitmaps && !std::exchange(hasBitmaps, true)) {
            child.visitChildren([this](const XmlElement& bitmap) {
                const auto text = bitmap.beacon() == a_bitmap ? bitmap.text() : nullptr;
                if (text) {
                    m_bitmaps.append(QString::fromUtf8(text->c_str()));
                }
            });
        }
    });
    m_bitmapExpanded = xml->attribute(a_bitmapExpanded, true);
    m_behavior = hasTimeline && isBehavior(xml); // as few are, which takes no other look
}

BoxData::~BoxData() = default;

const BoxData::Ios& BoxData::ios() const
{
    if (m_packed) {
        const KR::PackedIos::Ios ios = m_packed->unpack();
        m_ios = {{ios.inputs.begin(), ios.inputs.end()},
                 {ios.outputs.begin(), ios.outputs.end()},
                 {ios.parameters.begin(), ios.parameters.end()}};
        m_packed.reset();
    }
    return m_ios;
}

void BoxData::updateData(const QString& name, const QString& tooltip, const QList<QString>& bitmaps,
                         bool bitmapExpanded)
{
    const QPointer<BoxData> self(this); // whoever hears of a change may remove the box
    if (m_node) {
        m_node->setName(toText(name));
    }
    if (self) {
        setTooltip(tooltip);
    }
    if (self) {
        setBitmaps(bitmaps);
    }
    if (self) {
        setBitmapExpanded(bitmapExpanded);
    }
}

template <class Value, class Signal>
void BoxData::change(Value& current, bool& isUnwritten, const Value& value, Signal changed,
                     const std::function<void(XmlElement&)>& write)
{
    if (value == current && !isUnwritten) {
        return;
    }
    const auto held = m_node ? m_node->boxData() : nullptr; // whoever reacts to the write
    const bool wasUnwritten = isUnwritten;
    current = value;
    isUnwritten = true; // unless the writing ends
    const auto writeIt = [&] { isUnwritten = !edit(write) && wasUnwritten; };
    runThen(writeIt, [&] { Q_EMIT(this->*changed)(current); });
}

bool BoxData::edit(const std::function<void(XmlElement&)>& write)
{
    const auto box = load();
    if (box) {
        write(*box);
        save(box);
    }
    return box != nullptr;
}

void BoxData::setTooltip(const QString& value)
{
    const auto write = [this](XmlElement& box) {
        box.setAttribute(a_tooltip, Serial::save(m_tooltip), false);
    };
    change(m_tooltip, m_unwritten.tooltip, value, &BoxData::tooltipChanged, write);
}

void BoxData::setBitmaps(const QList<QString>& value)
{
    const auto write = [this](XmlElement& box) {
        std::list<boost::shared_ptr<XmlElement>> bitmaps;
        for (const QString& bitmap : std::as_const(m_bitmaps)) {
            bitmaps.push_back(boost::make_shared<XmlElement>(a_bitmap));
            bitmaps.back()->setText(toText(bitmap), false);
        }
        box.removeChildren(a_bitmap, a_bitmaps);
        box.addChildren(bitmaps, a_bitmaps);
    };
    change(m_bitmaps, m_unwritten.bitmaps, value, &BoxData::bitmapsChanged, write);
}

void BoxData::setBitmapExpanded(bool value)
{
    const auto write = [this](XmlElement& box) {
        box.setAttribute(a_bitmapExpanded, Serial::save(m_bitmapExpanded), false);
    };
    change(m_bitmapExpanded, m_unwritten.bitmapExpanded, value, &BoxData::bitmapExpandedChanged,
           write);
}

void BoxData::saveName(const std::string& name)
{
    edit([&name](XmlElement& box) { box.setAttribute("name", name, false); });
}

void BoxData::save(const boost::shared_ptr<XmlElement>& xml)
{
    if (m_node) {
        m_node->saveBox(xml, m_behavior);
    }
}

boost::shared_ptr<XmlElement> BoxData::load() const
{
    return m_node ? m_node->loadBox() : nullptr;
}

QByteArray BoxData::xmlData() const
{
    return m_node ? m_node->loadBoxData() : QByteArray();
}

boost::shared_ptr<BoxData> BoxData::clone(BoxLibraryNode* node) const
{
    // The constructor is private, which make_shared cannot call.
    boost::shared_ptr<BoxData> copy(new BoxData(node));
    copy->m_tooltip = m_tooltip;
    copy->m_bitmaps = m_bitmaps;
    copy->m_bitmapExpanded = m_bitmapExpanded;
    copy->m_unwritten = m_unwritten;
    copy->m_behavior = m_behavior;
    return copy;
}

bool BoxData::isBehavior(const boost::shared_ptr<const XmlElement>& box)
{
    if (!box) {
        throw std::invalid_argument("only a box element can be a behaviour");
    }
    static const std::set<std::string> expected{"Input/onLoad/1/1/0", "Input/onStart/1/1/2",
                                                "Input/onStop/1/1/3"};
    std::set<std::string> inputs;
    bool hasOutput = false;
    bool hasTimeline = false;
    box->visitChildren([&](const XmlElement& child) {
        if (child.beacon() == BoxConstants::a_timelineBeacon) {
            hasTimeline = true;
        } else if (child.beacon() == BoxConstants::a_inputBeacon) {
            inputs.insert(signature(child, {"name", "type", "type_size", "nature"}));
        } else if (child.beacon() == BoxConstants::a_outputBeacon) {
            hasOutput =
                hasOutput || signature(child, {"type", "type_size", "nature"}) == "Output/1/1/1";
        }
    });
    return hasTimeline && inputs == expected && hasOutput;
}

} // namespace KX
