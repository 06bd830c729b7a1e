#pragma once

#include <kr/io.hpp>
#include <krmodel/export.hpp>

#include <string>

namespace KR {

/// What inputs and outputs have in common: a link carries values between them. Box files keep the
/// properties as integer codes, whose meanings belong to the program that runs the boxes, so a code
/// that nobody here knows is kept like any other.
class KRMODEL_EXPORT Port : public IO
{
public:
    /// The properties of a port, with the values that an attribute has when it is absent or is not
    /// of its type.
    struct Properties
    {
        int type = 0;       ///< attribute "type": code of the kind of values
        int typeSize = 1;   ///< attribute "type_size": how many of them one event carries
        int nature = 0;     ///< attribute "nature": code of what an event does to the box
        bool inner = false; ///< attribute "inner": links run inside the box, not outside
    };

    Port(int id, std::string name, std::string tooltip, const Properties& properties);
    ~Port() override;

    int type() const { return m_properties.type; }
    int typeSize() const { return m_properties.typeSize; }
    int nature() const { return m_properties.nature; }
    bool inner() const { return m_properties.inner; }

protected:
    Port(const Port&) = default;
    Port(Port&&) = default;
    Port& operator=(const Port&) = default;
    Port& operator=(Port&&) = default;

private:
    Properties m_properties;
};

} // namespace KR
