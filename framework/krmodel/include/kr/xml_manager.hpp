#pragma once

#include <kr/input.hpp>
#include <kr/output.hpp>
#include <kr/parameter.hpp>
#include <krmodel/export.hpp>
#include <kx/xml_element.hpp>

#include <boost/shared_ptr.hpp>

#include <map>

namespace KR {

/// Makes the inputs, outputs and parameters of one box from the elements that describe them.
///
/// `ioById` holds what was made so far for the box; each call adds what it makes, under its number.
/// Its keys are the numbers taken, whatever they map to. The tag of the element is not looked at:
/// the caller chose the element by it.
///
/// Null, and nothing added, when the element is null or has no "name" or an empty one, when its
/// "id" is not an integer in the range of `int`, or when that number is taken. An element without
/// "id" gets the next free number: the one after the largest taken, at least 1; when `int` ends
/// there, the smallest from 1 on that is free. Numbers that later elements ask for are not known
/// yet, so in a file where only some elements have one, a later element can find its number taken.
///
/// Every other attribute may be absent or bad and then has the value that `Properties` gives it.
class KRMODEL_EXPORT XmlManager
{
public:
    using IoById = std::map<int, boost::shared_ptr<const IO>>;

    static boost::shared_ptr<Input> createInput(boost::shared_ptr<const KX::XmlElement> element,
                                                IoById& ioById);
    static boost::shared_ptr<Output> createOutput(boost::shared_ptr<const KX::XmlElement> element,
                                                  IoById& ioById);
    static boost::shared_ptr<Parameter>
    createParameter(boost::shared_ptr<const KX::XmlElement> element, IoById& ioById);
};

} // namespace KR
