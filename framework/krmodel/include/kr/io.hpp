#pragma once

#include <krmodel/export.hpp>

#include <string>

namespace KR {

/// Something by which a box exchanges values with its surroundings: an input, an output or a
/// parameter. A value that never changes once it is made; texts are UTF-8.
class KRMODEL_EXPORT IO
{
public:
    IO(int id, std::string name, std::string tooltip);
    virtual ~IO();

    /// The number by which links refer to it, unique among all inputs, outputs and parameters of
    /// one box.
    int id() const { return m_id; }
    /// Not empty for an IO that was read from a file.
    const std::string& name() const { return m_name; }
    /// Empty when there is none.
    const std::string& tooltip() const { return m_tooltip; }

protected:
    IO(const IO&) = default;
    IO(IO&&) = default;
    IO& operator=(const IO&) = default;
    IO& operator=(IO&&) = default;

private:
    int m_id;
    std::string m_name;
    std::string m_tooltip;
};

} // namespace KR
