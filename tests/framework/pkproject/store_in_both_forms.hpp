#pragma once

#include "support.hpp"

namespace pk::project::test {

/// A project of two files that is saved, in either form.
class StoreInBothForms : public testing::TestWithParam<Form>
{
protected:
    QString path() const { return m_directory.path("p"); }
    ArchiveFormat form() const { return formatOf(GetParam()); }
    ProjectModel make() const
    {
        ProjectModel model;
        model.writeFile(q("a"), "1");
        model.writeFile(q("d/b"), "2");
        model.save(path(), form(), true);
        return model;
    }
    static void saveInPlace(ProjectModel& model)
    {
        model.save(QString(), ArchiveFormat::Source, true);
    }

    TemporaryDirectory m_directory;
};

} // namespace pk::project::test
