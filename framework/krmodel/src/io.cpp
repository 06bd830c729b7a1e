#include <kr/io.hpp>

#include <utility>

namespace KR {

IO::IO(int id, std::string name, std::string tooltip)
    : m_id(id), m_name(std::move(name)), m_tooltip(std::move(tooltip))
{
}

IO::~IO() = default;

} // namespace KR
