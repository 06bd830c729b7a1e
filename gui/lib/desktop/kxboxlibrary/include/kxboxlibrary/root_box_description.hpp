#pragma once

#include <kx/xml_element.hpp>
#include <kxboxlibrary/box_resource_list.hpp>

#include <boost/shared_ptr.hpp>

#include <string>
#include <utility>

namespace KX {

/// What a new box is made from.
class RootBoxDescription
{
public:
    RootBoxDescription(std::string displayName, boost::shared_ptr<const XmlElement> element,
                       boost::shared_ptr<BoxResourceList> resourceList = nullptr)
        : name(std::move(displayName)), box(std::move(element)), resources(std::move(resourceList))
    {
    }

    std::string name;                             ///< the display name that is asked for, UTF-8
    boost::shared_ptr<const XmlElement> box;      ///< the "Box" element; copied, never changed
    boost::shared_ptr<BoxResourceList> resources; ///< the files to copy into the box; may be null
};

} // namespace KX
