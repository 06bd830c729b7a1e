#pragma once

#include <kr/input.hpp>
#include <kr/output.hpp>
#include <kr/parameter.hpp>
#include <krmodel/export.hpp>
#include <kx/xml_element.hpp>

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace KR {

/// The inputs, outputs and parameters of one box as its element has them, in little memory and for
/// little effort: of the thousands of boxes of a library few are looked into.
class KRMODEL_EXPORT PackedIos
{
public:
    /// As XmlManager makes them, in the order of the element.
    struct Ios
    {
        std::vector<boost::shared_ptr<Input>> inputs;
        std::vector<boost::shared_ptr<Output>> outputs;
        std::vector<boost::shared_ptr<Parameter>> parameters;
    };

    PackedIos() = default;
    /// Takes over what the children of `box` say, which is not kept. Shows those that are neither
    /// input nor output nor parameter to `visitOther`, as XmlElement::visitChildren() does, so that
    /// one look at a box is enough.
    explicit PackedIos(const KX::XmlElement& box,
                       const KX::XmlElement::ChildVisitor& visitOther = nullptr);

    /// Makes all inputs, then the outputs, then the parameters; other objects with each call.
    Ios unpack() const;

private:
    std::string m_texts;
};

} // namespace KR
