#pragma once

#include <kr/io.hpp>
#include <krmodel/export.hpp>

#include <string>
#include <vector>

namespace KR {

/// A setting of a box that its user chooses. Values are kept as the texts of the box file, because
/// only the content type, a code of the program that runs the boxes, says how to read them.
class KRMODEL_EXPORT Parameter final : public IO
{
public:
    /// The properties of a parameter, with the values that an attribute has when it is absent or
    /// is not of its type.
    struct Properties
    {
        bool inheritsFromParent = false;  ///< attribute "inherits_from_parent"
        int contentType = 0;              ///< attribute "content_type": code of the kind of value
        std::string value;                ///< attribute "value"
        std::string defaultValue;         ///< attribute "default_value"
        std::string minimum;              ///< attribute "min"; empty for no bound
        std::string maximum;              ///< attribute "max"; empty for no bound
        bool customChoice = false;        ///< attribute "custom_choice"
        std::vector<std::string> choices; ///< "value" of each child element "Choice" that has one
    };

    Parameter(int id, std::string name, std::string tooltip, Properties properties);
    ~Parameter() override;
    Parameter(const Parameter&) = delete;
    Parameter(Parameter&&) = delete;
    Parameter& operator=(const Parameter&) = delete;
    Parameter& operator=(Parameter&&) = delete;

    /// The value is that of the parameter of the same name of the box around this one.
    bool inheritsFromParent() const { return m_properties.inheritsFromParent; }
    int contentType() const { return m_properties.contentType; }
    const std::string& value() const { return m_properties.value; }
    const std::string& defaultValue() const { return m_properties.defaultValue; }
    const std::string& minimum() const { return m_properties.minimum; }
    const std::string& maximum() const { return m_properties.maximum; }
    /// A value that is none of `choices` may be typed in.
    bool customChoice() const { return m_properties.customChoice; }
    /// The values on offer, in the order of the file; empty when any value will do.
    const std::vector<std::string>& choices() const { return m_properties.choices; }

private:
    Properties m_properties;
};

} // namespace KR
