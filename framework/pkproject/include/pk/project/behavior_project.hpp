#pragma once

#include <pk/project/project.hpp>

namespace pk::project {

/// A project directory seen as a behaviour: it has a name, which its metadata keep.
class PKPROJECT_EXPORT BehaviorProject
{
public:
    /// The key of the name.
    static constexpr const char* a_nameKey = "name";

    explicit BehaviorProject(const Project& project);

    /// The behaviour's name (UTF-8); empty when it has none. Throws as Project::getMetadata().
    std::string name() const;

    /// Names the behaviour; on disk when this returns. Throws as Project::setMetadata().
    void setName(const std::string& name);

private:
    Project m_project;
};

} // namespace pk::project
