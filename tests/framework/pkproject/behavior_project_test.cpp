#include "support.hpp"

#include <pk/project/behavior_project.hpp>

namespace pk::project::test {

TEST(BehaviorProject, HasNoNameAtFirst)
{
    const TemporaryDirectory directory;
    EXPECT_EQ(BehaviorProject(Project(directory.path().toStdString())).name(), "");
}

TEST(BehaviorProject, KeepsItsNameInTheMetadata)
{
    const TemporaryDirectory directory;
    const Project project(directory.path().toStdString());
    BehaviorProject behavior(project);
    behavior.setName("W\xc3\xa4lzer");
    EXPECT_EQ(behavior.name(), "W\xc3\xa4lzer");
    EXPECT_EQ(project.getMetadata("name"), "W\xc3\xa4lzer");
    EXPECT_EQ(ProjectModel(directory.path()).getMetadata(q("name")), q("W\xc3\xa4lzer"));
    EXPECT_EQ(BehaviorProject(Project(directory.path().toStdString())).name(), "W\xc3\xa4lzer");
}

TEST(BehaviorProject, ReportsDamagedMetadata)
{
    const TemporaryDirectory directory;
    BehaviorProject behavior{Project(directory.path().toStdString())};
    putLocal(directory.path(".kxproject"), "{");
    EXPECT_THROW(behavior.name(), FormatError);
    EXPECT_THROW(behavior.setName("x"), FormatError);
    EXPECT_EQ(getLocal(directory.path(".kxproject")), QByteArray("{"));
}

} // namespace pk::project::test
