#include <pk/project/behavior_project.hpp>

namespace pk::project {

// NOLINTNEXTLINE(modernize-pass-by-value): the signature callers are built against
BehaviorProject::BehaviorProject(const Project& project) : m_project(project) {}

std::string BehaviorProject::name() const
{
    return m_project.getMetadata(a_nameKey);
}

void BehaviorProject::setName(const std::string& name)
{
    m_project.setMetadata(a_nameKey, name);
}

} // namespace pk::project
